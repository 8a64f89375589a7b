#include "filemanager/velmoranth_file_manager.h"

#include "tests/support/test_device.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <vector>

namespace velmoranth::filemanager::velmoranth_file_manager_test {
namespace {

using Lines = std::vector<std::string>;

const std::string kFactory =
    "/User/Library/VelMoranth/DefaultSettings/com.qor.velmoranthprefs.plist";
const std::string kLive = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
const std::string kFolder = "/User/Library/Preferences";

const std::string kPermissions = tests::kSetMode + kFolder + " 0777";
const std::string kChmod = "chmod " + kFolder + " 0777";
const std::string kCopy = tests::copyLine(kFactory, kLive);
const std::string kMove = tests::moveLine(kLive, kLive);

std::string failure(const std::string& reason) {
    return "log Velmoranth Failed to move '" + kFactory + "' to '" + kLive + "': " + reason;
}

const std::string kCopyOverExisting = failure(
    "“com.qor.velmoranthprefs.plist” couldn’t be copied to “Preferences” because an item with the "
    "same name already exists.");
const std::string kCopyOfNone = failure(
    "The file “com.qor.velmoranthprefs.plist” couldn’t be opened because there is no such file.");
const std::string kMoveOntoItself = failure(
    "“com.qor.velmoranthprefs.plist” couldn’t be moved to “Preferences” because an item with the "
    "same name already exists.");

class FactorySettings : public ::testing::Test {
  protected:
    // Runs it with nothing before it in the journal.
    void restore() {
        device.journal.clear();
        VelmoranthFileManager::NoUserSettingCreateThemeNow();
    }

    void closeFolder() const {
        ASSERT_EQ(::chmod((device.hostFolder() + kFolder).c_str(), 0700), 0);
    }

    tests::TestDevice device;
};

TEST_F(FactorySettings, BecomeTheLiveOnesWhereThereAreNone) {
    device.file(kFactory, "{ enable = YES; }");
    closeFolder();
    restore();
    EXPECT_EQ(device.contents(kLive), "{ enable = YES; }");
    EXPECT_EQ(device.contents(kFactory), "{ enable = YES; }");
    EXPECT_EQ(device.mode(kFolder), 0777U);
    // The move of the file onto itself fails, and is logged under the factory's path.
    EXPECT_EQ(device.journal.lines(), (Lines{kPermissions, kChmod, kCopy, kMove, kMoveOntoItself}));
}

TEST_F(FactorySettings, LeaveLivePreferencesAsTheyAre) {
    device.file(kFactory, "{ enable = YES; }");
    device.file(kLive, "{ mine = 1; }");
    closeFolder();
    restore();
    EXPECT_EQ(device.contents(kLive), "{ mine = 1; }");
    EXPECT_EQ(device.contents(kFactory), "{ enable = YES; }");
    EXPECT_EQ(device.mode(kFolder), 0777U);
    EXPECT_EQ(device.journal.lines(), (Lines{kPermissions, kChmod, kCopy, kCopyOverExisting}));
}

TEST_F(FactorySettings, ThatAreMissingMakeNoFile) {
    closeFolder();
    restore();
    EXPECT_FALSE(device.exists(kLive));
    EXPECT_EQ(device.mode(kFolder), 0777U);
    EXPECT_EQ(device.journal.lines(), (Lines{kPermissions, kChmod, kCopy, kCopyOfNone}));
}

TEST_F(FactorySettings, TwiceInARowTheSecondTimeChangesNothing) {
    device.file(kFactory, "{ enable = YES; }");
    restore();
    device.file(kFactory, "{ changed = 1; }");
    restore();
    EXPECT_EQ(device.contents(kLive), "{ enable = YES; }");
    EXPECT_EQ(device.mode(kFolder), 0777U);
    EXPECT_EQ(device.journal.lines(), (Lines{kPermissions, kChmod, kCopy, kCopyOverExisting}));
}

TEST_F(FactorySettings, LogTheMovesOwnError) {
    device.file(kFactory, "{}");
    device.fileManager().nextMoveFailure = platform::Error{.localizedDescription = "No %@ today."};
    restore();
    EXPECT_EQ(device.journal.lines(),
              (Lines{kPermissions, kChmod, kCopy, kMove, failure("No %@ today.")}));
    EXPECT_EQ(device.contents(kLive), "{}");
}

TEST_F(FactorySettings, LogNothingWhenTheMoveSucceeds) {
    device.file(kFactory, "{}");
    device.fileManager().nextMoveSucceeds = true;
    restore();
    EXPECT_EQ(device.journal.lines(), (Lines{kPermissions, kChmod, kCopy, kMove}));
    EXPECT_EQ(device.contents(kLive), "{}");
}

TEST_F(FactorySettings, GoOnWhenTheFolderIsMissing) {
    device.file(kFactory, "{}");
    device.remove(kFolder);
    restore();
    EXPECT_FALSE(device.exists(kFolder));
    const Lines& lines = device.journal.lines();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ((Lines{lines[0], lines[1], lines[2]}), (Lines{kPermissions, kChmod, kCopy}));
    EXPECT_TRUE(lines[3].starts_with(failure(""))) << lines[3];
    EXPECT_GT(lines[3].size(), failure("").size());
}

TEST_F(FactorySettings, AFolderOfThemIsCopiedWhole) {
    device.file(kFactory + "/inner", "x");
    restore();
    EXPECT_EQ(device.contents(kLive + "/inner"), "x");
}

}  // namespace
}  // namespace velmoranth::filemanager::velmoranth_file_manager_test
