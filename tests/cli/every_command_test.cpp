// What holds for every command, whatever it does: colours, JSON, exit codes, and that an
// interruption leaves all as it was or as it was to become. A command that the tables here lack
// fails.
#include "cli/commands.h"
#include "cli/manual.h"
#include "desktop/image_io/image_io.h"
#include "tests/cli/command.h"
#include "tests/support/catalog/car_writer.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): SIGINT is POSIX's

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace velmoranth::cli::every_command_test {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

// Words behind each command's name.
using PerCommand = std::map<std::string, Words>;

// With which it takes its options, and fails for a reason of its own.
const PerCommand kFailing{
    {"preview", {"none"}},
    {"explain", {"none", "--color", "WHEN", "--", "icon", "com.apple.Maps"}},
    {"new", {"none/none"}},
    {"lint", {"none"}},
    {"convert", {"none", "-o", "out"}},
    {"pack", {"none"}},
    {"extract", {"none", "out"}},
    {"dump", {"-o", "out", "--from", "none"}},
    {"device init", {"/dev/null/none"}},
    {"device install", {"none", "--root", "none"}},
    {"device uninstall", {"none", "--root", "none"}},
    {"device respring", {"--root", "none"}},
    {"hooks", {"--version-number", "x"}},
    {"names", {"none"}},
    {"notify", {"none", "--root", "none"}},
    {"sound", {"none"}},
    {"settings list", {"--root", "none"}},
    {"settings get", {"enable", "--root", "none"}},
    {"settings set", {"enable=1", "--root", "none"}},
    {"settings unset", {"enable", "--root", "none"}},
    {"settings save", {"a", "--root", "none"}},
    {"settings rename", {"a", "b", "--root", "none"}},
    {"settings delete", {"a", "--root", "none"}},
    {"settings restore", {"--root", "none"}},
    {"completion", {"none"}},
    {"man", {"none"}},
};

// That write something, with which they write it.
const PerCommand kWriting{
    {"preview", {"Many.theme", "-o", "home.png"}},
    {"new", {"Fresh", "--author", "Ann <ann@example.com>"}},
    {"convert", {"Many.theme", "-o", "out"}},
    {"pack", {"Many.theme", "--no-lint", "--author", "Ann <ann@example.com>"}},
    {"extract", {"Many.car", "out", "--jobs", "2"}},
    {"dump", {"-o", "out", "--raw"}},
    {"device init", {"phone"}},
    {"device install", {"Many.theme", "--root", "device"}},
    {"device uninstall", {"Old.theme", "--root", "device"}},
    {"settings set", {"opacityVal=0.5", "--root", "device"}},
    {"settings unset", {"opacityVal", "--root", "device"}},
    {"settings save", {"kept", "--root", "device"}},
    {"settings rename", {"old", "new", "--root", "device"}},
    {"settings delete", {"old", "--root", "device"}},
    {"settings restore", {"--root", "device"}},
};

// That write nothing that stays.
const std::set<std::string> kReading{"explain",    "lint",  "hooks",          "names",
                                     "notify",     "sound", "settings list",  "settings get",
                                     "completion", "man",   "device respring"};

// With which a command prints JSON.
const PerCommand kJson{
    {"preview", {"Many.theme", "-o", "home.png", "--json"}},
    {"explain", {"Many.theme", "--json", "--", "icon", "com.apple.Maps"}},
    {"lint", {"Many.theme", "--json"}},
    {"convert", {"Many.theme", "-o", "out", "--json"}},
    {"pack", {"Many.theme", "--no-lint", "--author", "Ann <ann@example.com>", "--json"}},
    {"extract", {"Many.car", "--list", "--json"}},
    {"dump", {"-o", "out", "--raw", "--json"}},
    {"hooks", {"--json"}},
    {"names", {"--json"}},
    {"sound", {"lock", "Many.theme", "--json"}},
    {"settings list", {"--root", "device", "--json"}},
    {"settings get", {"enable", "--root", "device", "--json"}},
};

// The others, with which they print something, if they ever do.
const PerCommand kPrinting{
    {"notify", {"prefs", "--root", "device"}},
    {"device respring", {"--root", "device"}},
    {"completion", {"bash"}},
    {"man", {"preview"}},
};

Words wordsOf(const std::string& command, const Words& more) {
    Words words;
    const std::size_t blank = command.find(' ');
    words.push_back(command.substr(0, blank));
    if (blank != std::string::npos) {
        words.push_back(command.substr(blank + 1));
    }
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

// With "--color" and its word, where a request may follow.
Words colored(const std::string& command, const std::string& when) {
    Words words = wordsOf(command, kFailing.at(command));
    const auto place = std::ranges::find(words, "WHEN");
    if (place != words.end()) {
        *place = when;
    } else {
        words.insert(words.end(), {"--color", when});
    }
    return words;
}

using Tree = std::map<std::string, std::string>;

// The first few names of what only the first has, or has otherwise.
std::string differences(const Tree& one, const Tree& other) {
    std::string names;
    int left = 5;
    for (const auto& [name, contents] : one) {
        const auto found = other.find(name);
        if ((found == other.end() || found->second != contents) && left-- > 0) {
            names += (names.empty() ? "" : " ") + name;
        }
    }
    return names.empty() ? "nothing" : names;
}

class EveryCommand : public testing::Test {
  protected:
    tests::TemporaryFolder folder;
    tests::TemporaryFolder temporary;  // where the command may keep what does not stay

    // A theme and a catalog that take more than a moment, and a device.
    void SetUp() override {
        const std::vector<std::uint8_t> pixels(std::size_t{60} * 60 * 4, 255);
        const platform::Data png = desktop::encodePng(pixels, 60, 60, std::size_t{60} * 4);
        const std::string icon(reinterpret_cast<const char*>(png.data()), png.size());
        for (int number = 0; number < 60; ++number) {
            folder.file(
                "Many.theme/IconBundles/com.example.app" + std::to_string(number) + "-large.png",
                icon);
        }
        tests::CarWriter car;
        for (int number = 1; number <= 60; ++number) {
            const auto identifier = static_cast<std::uint16_t>(number);
            car.facet("Icon " + std::to_string(number), identifier);
            car.bitmap({.identifier = identifier}, tests::CarPixels::pattern(60, 60));
        }
        const tests::ByteVector bytes = car.build();
        folder.file("Many.car", std::string(bytes.begin(), bytes.end()));
        ASSERT_EQ(run(folder, {"device", "init", "device"}).code, 0);
        folder.folder("device/Library/Themes/Old.theme/IconBundles");
        ASSERT_EQ(run(folder, {"settings", "set", "enable=1", "--root", "device"}).code, 0);
        ASSERT_EQ(run(folder, {"settings", "save", "old", "--root", "device"}).code, 0);
    }

    [[nodiscard]] CommandSetting setting(const tests::TemporaryFolder& place) const {
        return {.folder = place.path(), .variables = {{"TMPDIR", temporary.path()}}};
    }

    [[nodiscard]] CommandResult run(const tests::TemporaryFolder& place, const Words& words) const {
        return runCommand(words, setting(place));
    }

    // What is below the folder, but for times: a folder as "", a file by what it holds.
    static Tree tree(const tests::TemporaryFolder& place) {
        Tree found;
        for (const auto& entry : fs::recursive_directory_iterator(place.path())) {
            const std::string name = fs::relative(entry.path(), place.path()).string();
            found[name] = entry.is_regular_file() ? place.contents(name) : "";
        }
        return found;
    }

    void copyInto(const tests::TemporaryFolder& place) const {
        fs::copy(folder.path(), place.path(),
                 fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    }
};

TEST_F(EveryCommand, IsInTheseTables) {
    for (const Command& command : commands()) {
        const std::string name(command.name);
        EXPECT_TRUE(kFailing.contains(name)) << name;
        EXPECT_NE(kWriting.contains(name), kReading.contains(name)) << name;
        const bool hasJson = std::ranges::any_of(
            command.options, [](const Option& option) { return option.name == "--json"; });
        EXPECT_EQ(kJson.contains(name), hasJson) << name;
    }
}

TEST_F(EveryCommand, SaysInItsPageHowAnInterruptionEnds) {
    for (const Command& command : commands()) {
        EXPECT_NE(commandManual(command).find("130 interrupted"), std::string::npos)
            << command.name;
    }
}

TEST_F(EveryCommand, HasTwoExamplesAtLeast) {
    for (const Command& command : commands()) {
        EXPECT_GE(command.examples.size(), 2U) << command.name;
    }
}

TEST_F(EveryCommand, ColorsAsItIsTold) {
    constexpr const char* kEscape = "\x1b[";
    for (const Command& command : commands()) {
        const std::string name(command.name);
        const CommandResult always = run(folder, colored(name, "always"));
        EXPECT_NE(always.code, 0) << name;
        EXPECT_NE(always.errors.find(kEscape), std::string::npos) << name << always.errors;
        // No terminal, so `auto` is none either.
        for (const char* const when : {"never", "auto"}) {
            const CommandResult plain = run(folder, colored(name, when));
            EXPECT_EQ(plain.errors.find(kEscape), std::string::npos) << name;
            EXPECT_EQ(plain.errors.rfind("velmoranth: error: ", 0), 0U) << name << plain.errors;
        }
        const CommandResult wrong = run(folder, colored(name, "sometimes"));
        EXPECT_EQ(wrong.code, 2) << name;
        EXPECT_EQ(wrong.errors,
                  "velmoranth: error: --color takes auto, always or never, not \"sometimes\"\n")
            << name;
    }
}

TEST_F(EveryCommand, PrintsSoundJson) {
    for (const auto& [name, words] : kJson) {
        const CommandResult result = run(folder, wordsOf(name, words));
        EXPECT_LE(result.code, 1) << name << result.errors;  // 1: nothing was found
        const auto parsed = nlohmann::json::parse(result.output, nullptr, false);
        EXPECT_FALSE(parsed.is_discarded()) << name << result.output.substr(0, 200);
    }
}

// With the words that have it print the most.
Words printing(const std::string& command) {
    for (const PerCommand* const table : {&kJson, &kWriting, &kPrinting}) {
        if (const auto found = table->find(command); found != table->end()) {
            return wordsOf(command, found->second);
        }
    }
    return {};
}

std::vector<std::string> everyName() {
    std::vector<std::string> names;
    for (const Command& command : commands()) {
        names.emplace_back(command.name);
    }
    return names;
}

class EveryCommandUnread : public EveryCommand, public testing::WithParamInterface<std::string> {};

// As behind "| head": what it was to do is done, nothing is said, and a shell sees what it sees of
// other programs.
TEST_P(EveryCommandUnread, EndsSilentlyOnceItsReaderHasGone) {
    const Words words = printing(GetParam());
    ASSERT_FALSE(words.empty()) << "no words are known for it";
    const tests::TemporaryFolder read;
    copyInto(read);
    const CommandResult whole = run(read, words);
    EXPECT_LE(whole.code, 1) << whole.errors;
    const tests::TemporaryFolder unread;
    copyInto(unread);
    CommandSetting unreadSetting = setting(unread);
    unreadSetting.isRead = false;
    const CommandResult result = runCommand(words, unreadSetting);
    if (whole.output.empty()) {
        EXPECT_EQ(result.code, whole.code);
    } else {
        EXPECT_EQ(result.signal, SIGPIPE) << result.code;
    }
    EXPECT_EQ(result.errors, whole.errors);
    EXPECT_TRUE(tree(unread) == tree(read)) << differences(tree(unread), tree(read));
    EXPECT_TRUE(fs::is_empty(temporary.path())) << temporary.names(".");

    Words help = wordsOf(GetParam(), {"--help"});
    EXPECT_EQ(runCommand(help, unreadSetting).signal, SIGPIPE);
}

INSTANTIATE_TEST_SUITE_P(All, EveryCommandUnread, testing::ValuesIn(everyName()),
                         [](const auto& tested) {
                             std::string name = tested.param;
                             std::ranges::replace(name, ' ', '_');
                             return name;
                         });

// A picture that was asked for and does not arrive is missing.
TEST_F(EveryCommand, ThatWritesToStandardOutputFailsWhereItCannot) {
    CommandSetting unread = setting(folder);
    unread.isRead = false;
    for (const Words& words : {Words{"preview", "Many.theme", "-o", "-"},
                               Words{"extract", "Many.car", "-", "--name", "Icon 1"}}) {
        const CommandResult result = runCommand(words, unread);
        EXPECT_EQ(result.code, 3) << words.front();
        EXPECT_NE(result.errors.find("error: standard output: the picture cannot be written: "),
                  std::string::npos)
            << result.errors;
    }
    const std::string command = "exec " + std::string(tests::kCommand) + " ";
    for (const char* const words :
         {"names chrome", "explain Many.theme -- dock", "lint Many.theme", "--help"}) {
        const CommandResult result = runCommand({"-c", command + words + " >/dev/full"},
                                                {.folder = folder.path(), .program = "/bin/sh"});
        EXPECT_EQ(result.code, 3) << words;
        EXPECT_EQ(result.errors,
                  "velmoranth: error: standard output cannot be written: no space left on device\n")
            << words;
    }
    // What is wrong besides stays what the exit code tells.
    const CommandResult group = runCommand({"-c", command + "settings >/dev/full"},
                                           {.folder = folder.path(), .program = "/bin/sh"});
    EXPECT_EQ(group.code, 2);
    EXPECT_EQ(group.errors,
              "velmoranth: error: velmoranth settings needs one of these commands\n"
              "velmoranth: error: standard output cannot be written: no space left on device\n");
}

// What is opened then does not take its place, and gets none of what is printed.
TEST_F(EveryCommand, ThatHasNoStandardOutputWritesTheSameFilesAndSaysSo) {
    const std::string command = "exec " + std::string(tests::kCommand) + " ";
    const auto run = [&](const std::string& words) {
        return runCommand({"-c", command + words}, {.folder = folder.path(), .program = "/bin/sh"});
    };
    const std::string pack = "pack Many.theme --no-lint --author Ann -o ";
    ASSERT_EQ(run(pack + "open.deb").code, 0);
    for (const std::string closed : {" >&-", " <&- >&-"}) {
        const CommandResult result = run(pack + "closed.deb --force" + closed);
        EXPECT_EQ(result.code, 3);
        EXPECT_EQ(result.errors,
                  "velmoranth: error: standard output cannot be written: bad file descriptor\n");
        EXPECT_EQ(folder.contents("closed.deb"), folder.contents("open.deb"));
    }
    EXPECT_EQ(run("lint - <&-").errors, "velmoranth: error: standard input: bad file descriptor\n");
    EXPECT_EQ(run("names chrome 2>&-").code, 0);
}

class EveryWritingCommand : public EveryCommand,
                            public testing::WithParamInterface<PerCommand::value_type> {};

// Interrupted at moments that go from the first to past the last: whatever it was in the middle of,
// what is there then is what was there, or all of what was to come; of an extraction, which says
// so, whole files. Nothing is left in the folder for what does not stay.
TEST_P(EveryWritingCommand, LeavesNothingHalfWhenInterrupted) {
    const auto& [name, more] = GetParam();
    const Words words = wordsOf(name, more);
    if (name == "device uninstall") {  // what takes a while to remove
        for (int number = 0; number < 3000; ++number) {
            folder.file("device/Library/Themes/Old.theme/IconBundles/" + std::to_string(number),
                        "");
        }
    }
    const tests::TemporaryFolder complete;
    copyInto(complete);
    const auto before = tree(complete);
    const auto start = std::chrono::steady_clock::now();
    const CommandResult whole = run(complete, words);
    const auto taken = std::chrono::steady_clock::now() - start;
    ASSERT_EQ(whole.code, 0) << whole.errors;
    const auto after = tree(complete);
    ASSERT_NE(before, after);
    for (int eighth = 1; eighth <= 8; ++eighth) {
        const tests::TemporaryFolder place;
        copyInto(place);
        RunningCommand running(words, setting(place));
        std::this_thread::sleep_for(taken * eighth / 8);
        running.signal(SIGINT);
        const CommandResult result = running.finish();
        // A shell says 130 for the one as for the other.
        EXPECT_TRUE(result.signal == SIGINT || result.code == 130 || result.code == 0)
            << result.code << result.errors;
        const auto left = tree(place);
        if (name == "extract") {
            for (const auto& [file, contents] : left) {
                EXPECT_TRUE(after.contains(file) && after.at(file) == contents) << file;
            }
        } else {
            EXPECT_TRUE(left == after || (result.code != 0 && left == before))
                << "at " << eighth << " of 8: " << differences(left, before)
                << " that was not there, " << differences(left, after)
                << " that is not to be there";
        }
        EXPECT_TRUE(fs::is_empty(temporary.path())) << temporary.names(".");
    }
}

INSTANTIATE_TEST_SUITE_P(All, EveryWritingCommand, testing::ValuesIn(kWriting),
                         [](const auto& tested) {
                             std::string name = tested.param.first;
                             std::ranges::replace(name, ' ', '_');
                             return name;
                         });

}  // namespace
}  // namespace velmoranth::cli::every_command_test
