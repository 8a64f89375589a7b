// The command is a small program that becomes a large one: whichever answers, the answer is the
// same.
#include "cli/command_tables.h"
#include "cli/commands.h"
#include "tests/cli/command.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
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
    const Command command{.name = "eat",
                          .summary = "Eat.",
                          .positionalNames = "THING",
                          .description = "a\nb",
                          .options = kOptions,
                          .examples = {"one", "two"},
                          .leastPositionals = 1,
                          .mostPositionals = 2,
                          .run = nullptr,
                          .moreHelp = [] { return std::string("more\n"); }};
    const std::string text = commandTables(std::span(&command, 1));
    EXPECT_NE(text.find("constexpr std::array<Option, 1> kOptions0{{\n"
                        "    {\"--a\\\"b\", \"-a\", \"N\", "
                        "\"back\\\\slash, what\\077\\077/ and \\303\\2511\", Repeat::often},\n"
                        "}};\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("Command{\"eat\", \"Eat.\", \"THING\", \"a\\012b\", kOptions0, "
                        "{\"one\", \"two\", }, 1, 2, &becomeDevice, "
                        "+[] { return std::string(\"more\\012\"); }},\n"),
              std::string::npos)
        << text;
}

}  // namespace
}  // namespace velmoranth::cli::two_programs_test
