// Processes that the library is loaded into though they lack the toolkit's classes, or some of
// them.
#include "device/library/ownership.h"
#include "device/library/rows_support.h"
#include "device/standins/images.h"

namespace velmoranth::standins::bare_process_test {
namespace {

class BareProcess : public DeviceProcess {
  protected:
    BareProcess() {
        for (const char* const name :
             {"IconBundles/com.a.b-large.png", "UIImages/wheel@3x.png",
              "Bundles/com.apple.mobileicons.framework/AppIconMask.png",
              "Bundles/com.apple.springboard/SBBadgeBG.png", "Velmoranth/iPhoneOverlay.png"}) {
            png("/Library/Themes/A/" + std::string(name), 6);
        }
        activeThemes({"A"}, {"enable", "enableIconMask", "enableOverlay", "enableShadow"});
    }

    static void hideToolkit() {
        // The runtime finds the parents of all classes at the first message, and by their names.
        [UIView class];
        for (const char* const name :
             {"UIImage", "UIImageView", "UIView", "UILabel", "UIColor", "UIFont", "UIBezierPath",
              "UIDevice", "UIScreen", "UIApplication", "UIAlertController", "UIAlertAction",
              "UITapGestureRecognizer", "_UIImageContent", "_UIFeedback", "AVAudioPlayer",
              "AVAudioSession", "CUICatalog"}) {
            hideClass(name);
        }
    }

    static constexpr CGRect kFrame{{0, 0}, {9, 9}};

    // All that makes something of the toolkit's.
    static void askForEverything() {
        EXPECT_EQ([velMoranth() iconMask], nil);
        EXPECT_EQ([velMoranth() iconOverlay], nil);
        EXPECT_EQ([velMoranth() addShadowToIcon], nil);
        EXPECT_EQ([velMoranth() FolderImage], nil);
        EXPECT_EQ([velMoranth() badgeImage], nil);
        EXPECT_EQ([velMoranth() pageDots:YES], nil);
        EXPECT_EQ([velMoranth() spotlightPageDot], nil);
        EXPECT_EQ([velMoranth() SBDockImgWithFrame:kFrame], nil);
        EXPECT_EQ([velMoranth() colorWithHexString:@"#102030"], nil);
        EXPECT_EQ([velMoranth() imageFromBundlePath:@"/none.car" extract:NO extractionPath:nil],
                  nil);
        const id manager = [velMoranth() sharedIconManager];
        [manager playUISound:1];
        [manager playsystemSound:1];
        EXPECT_EQ([manager audiosession], nil);
        EXPECT_EQ([manager soundToPlay], nil);
        [fileManager() ShowSuccesView:@"/Library/Themes/A/Velmoranth/iPhoneOverlay.png"];
        [fileManager() finshedSelfAlert];
        runMainQueue();
        advanceClock(10);
    }
};

TEST_F(BareProcess, WithoutTheToolkitIsGivenNil) {
    hideToolkit();
    loaded();
    askForEverything();
    EXPECT_EQ(journalOf("-[UI"), Lines{});
    EXPECT_EQ(journalOf("+[UI"), Lines{});
}

TEST_F(BareProcess, WithoutTheToolkitHasNothingReplacedInIt) {
    hideToolkit();
    load();
    EXPECT_FALSE(journalOf("MSHookMessageEx nil imageNamed:inBundle:").empty());
    EXPECT_EQ(journalOf("MSHookMessageEx +[UIImage"), Lines{});
    // One of the classes that there are is replaced as ever.
    SBIconListPageControl* const dots = [[[SBIconListPageControl alloc] init] autorelease];
    clearJournal();
    [dots layoutSubviews];
    EXPECT_EQ(journal(), Lines(2, "-[SBIconListPageControl layoutSubviews] SBIconListPageControl"));
}

TEST_F(BareProcess, WithoutTheToolkitGivesImagesBackAsTheyCame) {
    UIImage* const image = imageOfPixels(8, 8);
    hideToolkit();
    loaded();
    // The file is there, and nothing to make an image of it.
    EXPECT_EQ(address([velMoranth() searchforIconInIconBundlesWithLeafIdentifier:@"com.none"
                                                                          forImg:image]),
              address(image));
    EXPECT_EQ(address([velMoranth() deviceUIImageNamed:@"none" originalUIImage:image]),
              address(image));
    EXPECT_EQ([velMoranth() searchforIconInIconBundlesWithLeafIdentifier:@"com.a.b" forImg:image],
              nil);
    static_cast<void>([velMoranth() maskImage:image withMask:image]);
    static_cast<void>([velMoranth() redrawIconWithOverlay:image]);
    static_cast<void>([velMoranth() imageWithImage:image scaledToSize:CGSize{4, 4}]);
    EXPECT_EQ(openImageContexts(), 0U);
}

TEST_F(BareProcess, LeavesNothingBehind) {
    hideToolkit();
    loaded();
    const Living living = livingAround(&askForEverything);
    EXPECT_EQ(living.after, living.before);
}

}  // namespace
}  // namespace velmoranth::standins::bare_process_test
