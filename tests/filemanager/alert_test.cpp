// The alert of an operation that failed, and whose it is.
#include "success_view_fixture.h"

namespace velmoranth::filemanager::alert_test {
namespace {

const std::string kMessage = "“none” couldn’t be removed.";

class Alert : public PanelFiles {
  protected:
    // What a failing operation writes after its own lines.
    Lines fail() {
        device.journal.clear();
        EXPECT_FALSE(VelmoranthFileManager::deleteFileFromDeviceFromDir("/none", ""));
        const Lines lines = device.journal.lines();
        return {lines.begin() + 2, lines.end()};
    }
};

TEST_F(Alert, HasATitleTheMessageAndOneButton) {
    EXPECT_EQ(fail(), alertLines(kMessage));
    ASSERT_EQ(device.application.root->presented().size(), 1U);
    const auto alert = std::dynamic_pointer_cast<desktop::DesktopAlertController>(
        device.application.root->presented()[0]);
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->title(), "ERROR");
    EXPECT_EQ(alert->message(), kMessage);
    EXPECT_EQ(alert->style(), platform::AlertControllerStyle::alert);
    ASSERT_EQ(alert->actions().size(), 1U);
    const auto& button = alert->actions()[0];
    EXPECT_EQ(button->title(), "OK");
    EXPECT_EQ(button->style(), platform::AlertActionStyle::normal);
    device.journal.clear();
    button->choose();
    EXPECT_EQ(device.journal.lines(),
              Lines{"called +[UIAlertAction actionWithTitle:style:handler:]"});
}

TEST_F(Alert, EachFailureHasItsOwn) {
    fail();
    fail();
    const auto& presented = device.application.root->presented();
    ASSERT_EQ(presented.size(), 2U);
    EXPECT_NE(presented[0], presented[1]);
}

TEST_F(Alert, TheRootIsFetchedEachTime) {
    EXPECT_EQ(fail(), alertLines(kMessage));
    device.application.showRoot("other", device.application.rootView);
    EXPECT_EQ(fail(), alertLines(kMessage, "other"));
    const auto window =
        std::make_shared<desktop::DesktopWindow>(platform::Rect{{0, 0}, {320, 568}});
    device.application.window = window;
    device.application.showRoot("another", device.application.rootView);
    EXPECT_EQ(fail(), alertLines(kMessage, "another"));
    EXPECT_EQ(device.application.root->presented().size(), 1U);
}

TEST_F(Alert, WithoutAKeyWindowOrARootNobodyPresentsIt) {
    const auto root = device.application.root;
    fail();
    Lines expected = alertLines(kMessage);
    expected.pop_back();
    device.application.window = nullptr;
    EXPECT_EQ(fail(), expected);
    device.application.window =
        std::make_shared<desktop::DesktopWindow>(platform::Rect{{0, 0}, {320, 568}});
    EXPECT_EQ(fail(), expected);
    // Not the one of before either.
    EXPECT_EQ(root->presented().size(), 1U);
}

TEST_F(Alert, PercentSignsInTheMessageStandForNothing) {
    const std::string message = "100%@ %d %s %%, “ä” {X}";
    use(std::make_unique<FailingFiles>(message));
    EXPECT_EQ(fail(), alertLines(message));
    device.journal.clear();
    EXPECT_FALSE(VelmoranthFileManager::renameFileFromTo("/a", "/b"));
    EXPECT_EQ(device.journal.linesWith(kAlert), (Lines{alertLine(message)}));
    EXPECT_FALSE(VelmoranthFileManager::overwriteFontFilesInDirFromTheme("/a", "/b"));
    EXPECT_FALSE(VelmoranthFileManager::saveCurrentSettinginFolderWithName("Night"));
    EXPECT_EQ(device.journal.count(alertLine(message)), 3U);
}

TEST_F(Alert, AnErrorWithoutWords) {
    use(std::make_unique<FailingFiles>(""));
    EXPECT_EQ(fail(), alertLines(""));
}

// Restoring the factory settings logs instead.
TEST_F(Alert, TheFactorySettingsHaveNone) {
    device.journal.clear();
    VelmoranthFileManager::NoUserSettingCreateThemeNow();
    EXPECT_EQ(device.journal.count(kAlert), 0U);
    EXPECT_EQ(device.journal.count("-[UIApplication keyWindow]"), 0U);
}

TEST_F(Alert, ComesBeforeTheLogLineOfASave) {
    device.file(kLive, "live");
    device.folder(kSavedFolder);
    device.fileManager().nextMoveFailure = platform::Error{.localizedDescription = "No %@ today."};
    device.journal.clear();
    EXPECT_FALSE(VelmoranthFileManager::saveCurrentSettinginFolderWithName("Night"));
    const Lines lines = device.journal.lines();
    ASSERT_EQ(lines.size(), 10U);
    EXPECT_EQ((Lines{lines.begin() + 4, lines.end() - 1}), alertLines("No %@ today."));
    EXPECT_EQ(lines.back(), "log Velmoranth Failed to move '" + kLive + "' to '" + kSavedFolder +
                                "/" + kPreferencesFile + "': No %@ today.");
}

}  // namespace
}  // namespace velmoranth::filemanager::alert_test
