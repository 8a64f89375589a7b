// The settings file manager, by message: what it does with files, and what it shows of that.
#include "device/library/device_process.h"
#include "device/library/ownership.h"
#import "device/standins/controllers.h"
#import "device/standins/images.h"

namespace velmoranth::standins::file_manager_test {
namespace {

using Lines = std::vector<std::string>;

const std::string kLive = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
const std::string kSavedFolder = "/User/Library/VelMoranth/UserSettings";

class FileManagerByMessage : public DeviceProcess {
  protected:
    FileManagerByMessage() {
        loaded();
        class_ = fileManager();
        UIView* const view = [[[UIView alloc] initWithFrame:{{0, 0}, {400, 600}}] autorelease];
        controller_ = [[[UIViewController alloc] init] autorelease];
        [controller_ setView:view];
        UIWindow* const window = [[[UIWindow alloc] init] autorelease];
        [window setRootViewController:controller_];
        setKeyWindow(window);
    }

    ~FileManagerByMessage() override { setKeyWindow(nil); }

    // The message of the alert that is up; "" without one.
    std::string alert() const {
        const id presented = controller_->_presentedViewController;
        if (![presented isKindOfClass:[UIAlertController class]]) {
            return "";
        }
        auto* const alert = static_cast<UIAlertController*>(presented);
        EXPECT_EQ(textOf(alert->_title), "ERROR");
        EXPECT_EQ([alert->_actions count], 1U);
        return textOf(alert->_message);
    }

    Class<VelmoranthFileManagerMessages> class_;
    UIViewController* controller_;
};

TEST_F(FileManagerByMessage, SavesThePreferencesUnderAName) {
    file(kLive, "live");
    folder(kSavedFolder);
    EXPECT_TRUE([class_ saveCurrentSettinginFolderWithName:@"Night"]);
    EXPECT_EQ(contents(kSavedFolder + "/ Night com.qor.velmoranthprefs.plist"), "live");
    EXPECT_EQ(alert(), "");
    EXPECT_FALSE([class_ saveCurrentSettinginFolderWithName:@"Night"]);
    EXPECT_NE(alert(), "");
}

TEST_F(FileManagerByMessage, SavesUnderNoNameAsItPrints) {
    file(kLive, "live");
    folder(kSavedFolder);
    EXPECT_TRUE([class_ saveCurrentSettinginFolderWithName:nil]);
    EXPECT_EQ(contents(kSavedFolder + "/ (null) com.qor.velmoranthprefs.plist"), "live");
}

TEST_F(FileManagerByMessage, RenamesFromTheFirstToTheSecond) {
    file("/Library/a", "x");
    EXPECT_TRUE([class_ renameFileFrom:@"/Library/a" to:@"/Library/b"]);
    EXPECT_EQ(contents("/Library/b"), "x");
    EXPECT_FALSE(exists("/Library/a"));
    EXPECT_EQ(journalOf("set"), (Lines{"setuid 0", "setgid 0"}));
    EXPECT_FALSE([class_ renameFileFrom:@"/Library/a" to:@"/Library/b"]);
    EXPECT_NE(alert(), "");
    EXPECT_FALSE([class_ renameFileFrom:nil to:nil]);
}

TEST_F(FileManagerByMessage, DeletesTheFirstAndLogsBoth) {
    file("/Library/a", "x");
    EXPECT_TRUE([class_ deleteFileFromDevice:@"/Library/a" fromDir:@"/Library"]);
    EXPECT_FALSE(exists("/Library/a"));
    EXPECT_EQ(logLines(),
              (Lines{"VELMORANTH FILE MANAGER: deleteFileFromDevice: /Library/a fromThemeDir: "
                     "/Library"}));
    EXPECT_FALSE([class_ deleteFileFromDevice:@"/Library/a" fromDir:nil]);
    EXPECT_EQ(alert(), "“a” couldn’t be removed.");
    EXPECT_FALSE([class_ deleteFileFromDevice:nil fromDir:nil]);
    EXPECT_EQ(logLines().back(),
              "VELMORANTH FILE MANAGER: deleteFileFromDevice: (null) fromThemeDir: (null)");
}

TEST_F(FileManagerByMessage, CopiesFontsFromTheSecondToTheFirst) {
    file("/Library/theirs/a.ttf", "x");
    EXPECT_TRUE([class_ overwriteFontFilesInDir:@"/Library/place" fromTheme:@"/Library/theirs"]);
    EXPECT_EQ(contents("/Library/place/a.ttf"), "x");
    EXPECT_EQ([[controller_->_view subviews] count], 1U);
    EXPECT_FALSE([class_ overwriteFontFilesInDir:@"/Library/place" fromTheme:@"/Library/theirs"]);
    EXPECT_NE(alert(), "");
}

TEST_F(FileManagerByMessage, RestoresTheFactoryPreferences) {
    file("/User/Library/VelMoranth/DefaultSettings/com.qor.velmoranthprefs.plist", "factory");
    [class_ NoUserSettingCreateThemeNow];
    EXPECT_EQ(contents(kLive), "factory");
}

TEST_F(FileManagerByMessage, ShowsTheImageForAWhile) {
    png("/Library/done.png", 17);
    [class_ ShowSuccesView:@"/Library/done.png"];
    ASSERT_EQ([[controller_->_view subviews] count], 1U);
    UIImageView* const shownView = [[controller_->_view subviews] objectAtIndex:0];
    EXPECT_EQ([[shownView image] size].width, 17);
    EXPECT_EQ(wordsOf([shownView frame]), "(160, 260) 200×200");
    advanceClock(0.59);
    EXPECT_EQ([[controller_->_view subviews] count], 1U);
    advanceClock(0.02);
    EXPECT_EQ([[controller_->_view subviews] count], 0U);
}

TEST_F(FileManagerByMessage, ShowsAnEmptyViewForNoImage) {
    [class_ ShowSuccesView:nil];
    ASSERT_EQ([[controller_->_view subviews] count], 1U);
    EXPECT_EQ([[[controller_->_view subviews] objectAtIndex:0] image], nil);
    [class_ finshedSelfAlert];
    EXPECT_EQ([[controller_->_view subviews] count], 0U);
}

TEST_F(FileManagerByMessage, WorksWithoutAWindow) {
    setKeyWindow(nil);
    [class_ finshedSelfAlert];
    EXPECT_FALSE([class_ deleteFileFromDevice:@"/Library/none" fromDir:nil]);
    [class_ ShowSuccesView:nil];
    advanceClock(1);
    EXPECT_EQ(pendingOnMainQueue(), 0U);
}

TEST_F(FileManagerByMessage, KeepsNothingOfWhatItShows) {
    const Living living = livingAround([&] {
        [class_ deleteFileFromDevice:@"/Library/none" fromDir:nil];
        [class_ ShowSuccesView:nil];
        advanceClock(1);
        finishAnimations(true);
    });
    EXPECT_EQ(living.after, living.before);
}

}  // namespace
}  // namespace velmoranth::standins::file_manager_test
