// velmoranth device init and velmoranth notify
#include "tests/cli/command.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace velmoranth::cli::device_commands_test {
namespace {

using tests::TemporaryFolder;

namespace fs = std::filesystem;

TEST(DeviceInit, LaysOutADeviceAndSaysSo) {
    const TemporaryFolder folder;
    const CommandResult result = runCommand({"device", "init", "new"}, {.folder = folder.path()});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output, "new: a fresh device\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(fs::is_directory(folder / "new/Library/Themes"));
    EXPECT_TRUE(fs::is_directory(folder / "new/User/Library/Preferences"));
}

TEST(DeviceInit, TakesAnEmptyFolder) {
    const TemporaryFolder folder;
    EXPECT_EQ(runCommand({"device", "init", folder.path()}).code, 0);
}

TEST(DeviceInit, RefusesAFolderThatHoldsSomething) {
    const TemporaryFolder folder;
    folder.file("mine", "text");
    const CommandResult result = runCommand({"device", "init", folder.path()});
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "velmoranth: error: " + folder.path() +
                                 ": the folder is not empty; a new device needs an empty one\n");
    EXPECT_EQ(folder.names("."), "mine");
}

TEST(DeviceInit, NamesTheFolderThatCannotBeMade) {
    const CommandResult result = runCommand({"device", "init", "/no/such/place"});
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.errors, "velmoranth: error: /no/such/place: no such file or directory\n");
}

TEST(Notify, ExitCodeIs1WhenNobodyListens) {
    const TemporaryFolder folder;
    ASSERT_EQ(runCommand({"device", "init", folder.path()}).code, 0);
    const CommandResult result = runCommand({"notify", "themechanged", "--root", folder.path()});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.output, "com.qor.velmoranththemechanged.prefs: 0 processes told\n");
    EXPECT_EQ(result.errors, "");
}

TEST(Notify, ShortNamesStandForTheFullOnes) {
    const TemporaryFolder folder;
    ASSERT_EQ(runCommand({"device", "init", folder.path()}).code, 0);
    const auto told = [&](const char* name) {
        return runCommand({"notify", name, "--root", folder.path()}).output;
    };
    EXPECT_EQ(told("prefs"), "com.qor.velmoranthprefs.prefs: 0 processes told\n");
    EXPECT_EQ(told("developingprefs"),
              "com.qor.velmoranthdevelopingprefs.prefs: 0 processes told\n");
    EXPECT_EQ(told("compileassets"), "com.qor.velmoranthcompileassets.prefs: 0 processes told\n");
    EXPECT_EQ(told("org.example.other"), "org.example.other: 0 processes told\n");
}

TEST(Notify, MissingDeviceIsBadInput) {
    const CommandResult result = runCommand({"notify", "prefs", "--root", "/no/such/device"});
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.errors, "velmoranth: error: /no/such/device: no such file or directory\n");
}

}  // namespace
}  // namespace velmoranth::cli::device_commands_test
