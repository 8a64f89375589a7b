// The command is a small program that becomes a large one: whichever answers, the answer is the
// same.
#include "cli/command_tables.h"
#include "cli/commands.h"
#include "tests/cli/command.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli::two_programs_test {
namespace {

using Words = std::vector<std::string>;

CommandResult runDevice(const Words& words) {
    return runCommand(words, {.program = std::string(tests::kCommand) + "-device"});
}

// What they say to these words, and whether it is the same.
CommandResult expectTheSame(const Words& words, const std::string& what) {
    CommandResult small = runCommand(words);
    const CommandResult large = runDevice(words);
    EXPECT_EQ(small.output, large.output) << what;
    EXPECT_EQ(small.errors, large.errors) << what;
    EXPECT_EQ(small.code, large.code) << what;
    return small;
}

// "device init" as two words.
Words wordsOf(std::string_view name, const Words& more) {
    Words words;
    const std::size_t blank = name.find(' ');
    words.emplace_back(name.substr(0, blank));
    if (blank != std::string_view::npos) {
        words.emplace_back(name.substr(blank + 1));
    }
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

TEST(TwoPrograms, HelpOfEveryCommandIsTheSame) {
    for (const Command& command : commands()) {
        const std::string name(command.name);
        const CommandResult help = expectTheSame(wordsOf(name, {"--help"}), name);
        EXPECT_EQ(help.code, 0) << name;
        EXPECT_NE(help.output.find("usage: velmoranth " + name), std::string::npos) << name;
    }
    for (const Words& words : {Words{"--help"}, Words{"help"}, Words{"help", "settings"},
                               Words{"device", "--help"}, Words{"--version"}}) {
        EXPECT_EQ(expectTheSame(words, words.back()).code, 0) << words.back();
    }
}

TEST(TwoPrograms, WordsThatAreWrongAreSaidTheSame) {
    for (const Command& command : commands()) {
        const std::string name(command.name);
        EXPECT_EQ(expectTheSame(wordsOf(name, {"--helpp"}), name).code, 2) << name;
        EXPECT_EQ(expectTheSame(wordsOf(name, {"--color", "red", "a", "b"}), name).code, 2) << name;
    }
    for (const Words& words :
         {Words{}, Words{"device"}, Words{"--libaries"}, Words{"prevew"}, Words{"settings", "x"}}) {
        EXPECT_EQ(expectTheSame(words, words.empty() ? "" : words.back()).code, 2);
    }
}

// Every list that a misuse is judged by came over whole.
TEST(TwoPrograms, TheLastOptionOfEveryCommandIsKnownToTheSmallOne) {
    for (const Command& command : commands()) {
        if (command.options.empty()) {
            continue;
        }
        const Option& last = command.options.back();
        const std::string name(last.name);
        const Words words = last.valueName.empty() ? Words{name + "=x"} : Words{name};
        EXPECT_EQ(runCommand(wordsOf(command.name, words)).errors,
                  "velmoranth: error: " + name +
                      (last.valueName.empty()
                           ? " takes no value"
                           : " needs a value: " + name + " " + std::string(last.valueName)) +
                      "\n");
    }
}

// The small one where there is no large one: it can only answer by itself.
class SmallProgram : public testing::Test {
  protected:
    SmallProgram() { std::filesystem::copy(tests::kCommand, folder / "velmoranth"); }

    [[nodiscard]] CommandResult run(const Words& words) const {
        return runCommand(words, {.program = folder / "velmoranth"});
    }

    tests::TemporaryFolder folder;
};

// The words that give what a table's row names: an option, with its value or some, or THEME.
Words given(const Command& command, std::string_view what) {
    if (!what.starts_with('-')) {
        EXPECT_TRUE(command.positionalNames.starts_with(what)) << what;
        return {"x"};
    }
    const std::string_view name = what.substr(0, what.find(' '));
    const auto option = std::ranges::find(command.options, name, &Option::name);
    if (option == command.options.end()) {
        ADD_FAILURE() << command.name << " has no option " << name;
        return {};
    }
    return name == what && !option->valueName.empty() ? Words{std::string(name), "x"}
           : name == what                             ? Words{std::string(name)}
                          : Words{std::string(name), std::string(what.substr(name.size() + 1))};
}

TEST_F(SmallProgram, KnowsWhatDoesNotGoTogether) {
    std::size_t pairs = 0;
    for (const Command& command : commands()) {
        for (const Apart& pair : command.apart) {
            Words words = given(command, pair.one);
            const Words others = given(command, pair.other);
            words.insert(words.end(), others.begin(), others.end());
            if (command.leastPositionals > 0) {
                words.emplace_back("x");
            }
            const CommandResult result = run(wordsOf(command.name, words));
            EXPECT_EQ(result.code, 2);
            EXPECT_EQ(result.errors, "velmoranth: error: " + std::string(pair.one) +
                                         " does not go with " + std::string(pair.other) + ": " +
                                         std::string(pair.why) + "\n");
            ++pairs;
        }
    }
    EXPECT_GT(pairs, 30U);
}

TEST_F(SmallProgram, KnowsWhatIsMissing) {
    std::set<std::string_view> known;
    for (const Command& command : commands()) {
        for (const Needed& needed : command.needed) {
            known.insert(command.name);
            const Words some(command.leastPositionals, "x");
            EXPECT_EQ(run(wordsOf(command.name, some)).errors,
                      "velmoranth: error: " + std::string(needed.what) + "; velmoranth " +
                          std::string(command.name) + " --help\n");
            for (const std::string_view what : needed.anyOf) {
                if (!what.empty()) {
                    Words words = given(command, what);
                    words.insert(words.end(), some.begin(), some.end());
                    EXPECT_NE(run(wordsOf(command.name, words))
                                  .errors.find("the program that draws was not found"),
                              std::string::npos)
                        << command.name << " " << what;
                }
            }
        }
    }
    EXPECT_EQ(known, (std::set<std::string_view>{"convert", "dump", "preview"}));
}

// Another value of the option than the one that a row names.
TEST_F(SmallProgram, LeavesAPairWithAnotherValueToTheLargeOne) {
    const std::string otherwise = "velmoranth: error: the program that draws was not found";
    EXPECT_TRUE(run({"preview", "x", "--json", "-o", "a.png"}).errors.starts_with(otherwise));
    EXPECT_TRUE(run({"preview", "x", "--json"}).errors.starts_with(otherwise));
    // Whoever asks for help is still at it.
    EXPECT_TRUE(run({"preview", "--before", "--compare", "--help"}).output.starts_with("usage: "));
    EXPECT_TRUE(run({"convert", "x", "--help"}).output.starts_with("usage: "));
}

// What the small one loads is what every program of its language does.
TEST(TwoPrograms, TheSmallOneLoadsNothingThatDraws) {
    const CommandSetting tracing{.variables = {{"LD_TRACE_LOADED_OBJECTS", "1"}}};
    const std::string small = runCommand({}, tracing).output;
    EXPECT_NE(small.find("libc.so"), std::string::npos);
    CommandSetting device = tracing;
    device.program = std::string(tests::kCommand) + "-device";
    const std::string large = runCommand({}, device).output;
    for (const std::string library : {"libcairo", "libpango", "libicu", "libarchive", "libpng",
                                      "libtiff", "libexpat", "libglib", "libfmt"}) {
        EXPECT_EQ(small.find(library), std::string::npos) << library;
        EXPECT_NE(large.find(library), std::string::npos) << library;
    }
}

// Nothing else of what it was started with is changed.
TEST(TwoPrograms, TheLargeOneIsAskedToTakeItsMemoryInLargePages) {
    const tests::TemporaryFolder folder;
    const std::string small = folder / "velmoranth";
    const std::string large = folder / "velmoranth-device";
    std::filesystem::copy_file(tests::kCommand, small);
    folder.file("velmoranth-device", "#!/bin/sh\necho \"$GLIBC_TUNABLES\" \"$TUNED\" \"$@\"\n");
    std::filesystem::permissions(large, std::filesystem::perms::owner_all);
    const Words words{"names", "a b"};

    EXPECT_EQ(runCommand(words, {.variables = {{"TUNED", "yes"}}, .program = small}).output,
              "glibc.malloc.hugetlb=1 yes names a b\n");
    EXPECT_EQ(runCommand(words, {.variables = {{"GLIBC_TUNABLES", "glibc.malloc.check=0"}},
                                 .program = small})
                  .output,
              "glibc.malloc.check=0  names a b\n");
    EXPECT_EQ(runCommand(words, {.variables = {{"GLIBC_TUNABLES", ""}}, .program = small}).output,
              "  names a b\n");
}

TEST(TwoPrograms, TablesAreWrittenAsTheCompilerReadsThem) {
    static constexpr std::array<Option, 1> kOptions{{{"--a\"b", "-a", "N",
                                                      "back\\slash, what?"
                                                      "?/ and \xC3\xA9"
                                                      "1",
                                                      Repeat::often}}};
    static constexpr std::array<Apart, 1> kApart{{{"--a", "THING -", "so"}}};
    static constexpr std::array<Needed, 1> kNeeded{{{"a spoon", {"THING", "--a"}}}};
    const Command command{.name = "eat",
                          .summary = "Eat.",
                          .positionalNames = "THING",
                          .description = "a\nb",
                          .options = kOptions,
                          .examples = {"one", "two"},
                          .leastPositionals = 1,
                          .mostPositionals = 2,
                          .run = nullptr,
                          .moreHelp = [] { return std::string("more\n"); },
                          .apart = kApart,
                          .needed = kNeeded};
    const std::string text = commandTables(std::span(&command, 1));
    EXPECT_NE(text.find("constexpr std::array<Option, 1> kOptions0{{\n"
                        "    {\"--a\\\"b\", \"-a\", \"N\", "
                        "\"back\\\\slash, what\\077\\077/ and \\303\\2511\", Repeat::often},\n"
                        "}};\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("Command{\"eat\", \"Eat.\", \"THING\", \"a\\012b\", kOptions0, "
                        "{\"one\", \"two\", }, 1, 2, &becomeDevice, "
                        "+[] { return std::string(\"more\\012\"); }, kApart0, kNeeded0},\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("constexpr std::array<Apart, 1> kApart0{{\n"
                        "    {\"--a\", \"THING -\", \"so\"},\n}};\n"
                        "constexpr std::array<Needed, 1> kNeeded0{{\n"
                        "    {\"a spoon\", {\"THING\", \"--a\", \"\"}},\n}};\n"),
              std::string::npos)
        << text;
}

}  // namespace
}  // namespace velmoranth::cli::two_programs_test
