// The replacements on folder icons: the theme's picture in place of the plate, and the miniatures.
#include "device/library/rows_support.h"

namespace velmoranth::standins::folder_rows_test {
namespace {

constexpr const char* kInit = "-[SBFolderIconImageView initWithFrame:]";
constexpr const char* kInitCall =
    "-[SBFolderIconImageView initWithFrame:] SBFolderIconImageView (1, 2) 60×61";
constexpr const char* kLayout = "-[SBFolderIconImageView layoutSubviews]";
constexpr CGRect kFrame{{1, 2}, {60, 61}};

// The picture before a replacement does anything to it; theme A has the image.
Lines makesPicture() {
    return joined(
        {{"-[UIImageView init]"},
         asksForIdiom(),
         {"-[UIView setFrame:] UIImageView (0, 0) 60×60", "+[UIColor clearColor]",
          "-[UIView setBackgroundColor:] UIImageView #00000000",
          readsImage("A/Velmoranth/Folder.png"), "-[UIImageView setImage:] UIImageView 6×6 @1x",
          "-[UIImageView image] UIImageView", "-[UIImageView image] UIImageView",
          "-[UIImageView image] UIImageView", "-[UIView setTag:] UIImageView 2322"}});
}

class FolderIconInitialiser : public ReplacedMethods {
  protected:
    FolderIconInitialiser() { themePng("A/Velmoranth/Folder.png"); }

    // What the caller gets is let go again; what it gave is its own when nothing came.
    static void initialise() {
        SBFolderIconImageView* const made = [SBFolderIconImageView alloc];
        @try {
            [[made initWithFrame:kFrame] release];
        } @catch (id) {
            [made release];
            @throw;
        }
    }
};

TEST_F(FolderIconInitialiser, WithThemingOffIsThePlatformsOnce) {
    settings({"A"}, {"enableLogging", "removeFolderBG"});
    SBFolderIconImageView* const made = [SBFolderIconImageView alloc];
    SBFolderIconImageView* const result = [made initWithFrame:kFrame];
    EXPECT_EQ(address(result), address(made));
    EXPECT_EQ([result retainCount], 1U);
    EXPECT_EQ(taken(), Lines{kInitCall});
    EXPECT_EQ(result->_tag, 0);
    [result release];
    EXPECT_EQ(living("SBFolderIconImageView"), 0);
}

TEST_F(FolderIconInitialiser, PutsThePictureBehindEverythingAndTagsBoth) {
    settings({"A"}, {"enable"});
    SBFolderIconImageView* const made = [SBFolderIconImageView alloc];
    SBFolderIconImageView* result = nil;
    @autoreleasepool {
        result = [made initWithFrame:kFrame];
    }
    EXPECT_EQ(address(result), address(made));
    EXPECT_EQ([result retainCount], 1U);
    EXPECT_EQ(taken(),
              joined({{kInitCall},
                      makesPicture(),
                      {"-[UIView insertSubview:atIndex:] SBFolderIconImageView UIImageView #2322 0",
                       "-[UIView setAlpha:] UIImageView #2322 1",
                       "-[UIView setTag:] UIImageView #2322 1105",
                       "-[UIView setTag:] SBFolderIconImageView 329"}}));
    ASSERT_EQ([result->_subviews count], 1U);
    UIImageView* const picture = [result->_subviews objectAtIndex:0];
    EXPECT_EQ(pathOf(picture->_image), "/Library/Themes/A/Velmoranth/Folder.png");
    EXPECT_EQ(picture->_tag, 1105);
    EXPECT_EQ([picture retainCount], 1U);
    EXPECT_EQ(result->_tag, 329);
    [result release];
    EXPECT_EQ(living("SBFolderIconImageView"), 0);
    EXPECT_EQ(living("UIImageView"), 0);
}

TEST_F(FolderIconInitialiser, ResultIsTheViewThatThePlatformGives) {
    SBFolderIconImageView* const other = [[SBFolderIconImageView alloc] initWithFrame:kFrame];
    for (const char* const enable : {"enableLogging", "enable"}) {
        settings({"A"}, {enable});
        setAnswer(kInit, other);
        id result = nil;
        @autoreleasepool {
            result = [[SBFolderIconImageView alloc] initWithFrame:kFrame];
        }
        EXPECT_EQ(address(result), address(other));
        EXPECT_EQ([other retainCount], 3U);  // the test's, the answer's and the caller's
        [result release];
        // The one that it was sent to is gone.
        EXPECT_EQ(living("SBFolderIconImageView"), 1);

        setAnswer(kInit, static_cast<id>(nil));
        clearJournal();
        EXPECT_EQ(address([[SBFolderIconImageView alloc] initWithFrame:kFrame]), nullptr);
        EXPECT_EQ(taken(), Lines{kInitCall});
        EXPECT_EQ(living("SBFolderIconImageView"), 1);
        EXPECT_EQ([other retainCount], 1U);
    }
    EXPECT_EQ(other->_tag, 329);
    [other release];
}

TEST_F(FolderIconInitialiser, LeavesNothingBehindAndPassesExceptionsOn) {
    settings({"A"}, {});
    expectNothingLeft(&initialise);
    expectExceptionsToPass(kInit, &initialise);
    settings({"A"}, {"enable"});
    expectNothingLeft(&initialise);
    expectExceptionsToPass(kInit, &initialise);
}

class FolderIconLayout : public ReplacedMethods {
  protected:
    FolderIconLayout() {
        themePng("A/Velmoranth/Folder.png");
        setVariable(folder, "_backgroundView", plate);
        [folder addSubview:grid];
    }

    UIView* plate = named([[UIView alloc] init], "plate");
    UIView* grid = named([[UIView alloc] init], "grid");
    SBFolderIconImageView* folder = named([[SBFolderIconImageView alloc] init], "folder");
    // As often as it is made: a folder that has no picture yet.
    Call layout = [this] {
        folder->_tag = 0;
        [folder->_subviews removeAllObjects];
        [folder layoutSubviews];
        [folder->_subviews removeAllObjects];
    };
};

const Lines kHidesPlate{sentTo("folder", kLayout), "-[UIView layer] plate",
                        "-[CALayer setOpacity:] plate 0",
                        "-[SBFolderIconImageView isAnimating] folder"};

TEST_F(FolderIconLayout, WithThemingOffIsThePlatforms) {
    settings({"A"}, {"enableLogging", "removeFolderBG"});
    for (const double isAnimating : {0, 1}) {
        setAnswer("-[SBFolderIconImageView isAnimating]", isAnimating);
        [folder layoutSubviews];
        EXPECT_EQ(taken(), Lines{sentTo("folder", kLayout)});
    }
    EXPECT_EQ(plate->_layer->_opacity, 1);
}

TEST_F(FolderIconLayout, PutsThePictureBehindEverythingOnce) {
    settings({"A"}, {"enable"});
    [folder layoutSubviews];
    EXPECT_EQ(taken(), joined({kHidesPlate,
                               {"-[UIView tag] folder"},
                               makesPicture(),
                               {"-[UIView insertSubview:atIndex:] folder UIImageView #2322 0",
                                "-[UIView setAlpha:] UIImageView #2322 1",
                                "-[UIView setTag:] folder 329"}}));
    EXPECT_EQ(plate->_layer->_opacity, 0);
    ASSERT_EQ([folder->_subviews count], 2U);
    UIImageView* const picture = [folder->_subviews objectAtIndex:0];
    EXPECT_EQ(pathOf(picture->_image), "/Library/Themes/A/Velmoranth/Folder.png");
    EXPECT_EQ(picture->_tag, 2322);
    [folder layoutSubviews];
    EXPECT_EQ(taken(), joined({kHidesPlate, {"-[UIView tag] folder"}}));
    EXPECT_EQ([folder->_subviews count], 2U);
}

TEST_F(FolderIconLayout, AnimatingLosesItsImageViewsEachAskedTwice) {
    settings({"A"}, {"enable"});
    setAnswer("-[SBFolderIconImageView isAnimating]", 1.0);
    folder->_tag = 329;
    [folder addSubview:named([[UIImageView alloc] init], "image")];
    [folder->_subviews addObject:@"no view"];
    clearJournal();
    [folder layoutSubviews];
    EXPECT_EQ(taken(), joined({kHidesPlate,
                               {"-[UIView tag] folder", "-[UIView subviews] folder",
                                "-[UIView removeFromSuperview] image",
                                "-[UIView removeFromSuperview] image"}}));
    ASSERT_EQ([folder->_subviews count], 2U);
    EXPECT_EQ(address([folder->_subviews objectAtIndex:0]), address(grid));
    // Without the tag all stay.
    folder->_tag = 0;
    [folder addSubview:named([[UIImageView alloc] init], "image")];
    clearJournal();
    [folder layoutSubviews];
    EXPECT_EQ(taken(), joined({kHidesPlate, {"-[UIView tag] folder"}}));
    EXPECT_EQ([folder->_subviews count], 3U);
}

TEST_F(FolderIconLayout, PlateThatIsNoViewIsLeftAlone) {
    settings({"A"}, {"enable"});
    folder->_tag = 329;
    for (const id other : {static_cast<id>(nil), static_cast<id>(@"plate")}) {
        setVariable(folder, "_backgroundView", other);
        clearJournal();
        [folder layoutSubviews];
        EXPECT_EQ(taken(),
                  (Lines{sentTo("folder", kLayout), "-[SBFolderIconImageView isAnimating] folder",
                         "-[UIView tag] folder"}));
    }
}

TEST_F(FolderIconLayout, VariableMayBeAParents) {
    settings({"A"}, {"enable"});
    const Class heir = classWithMethodOf("SBHeirFolderView", [SBFolderIconImageView class],
                                         "isAnimating", [SBFolderIconImageView class]);
    SBFolderIconImageView* const view = [[[heir alloc] init] autorelease];
    setVariable(view, "_backgroundView", plate);
    [view layoutSubviews];
    EXPECT_EQ(plate->_layer->_opacity, 0);
}

TEST_F(FolderIconLayout, ClassWithoutThatVariableIsLeftAlone) {
    settings({"A"}, {"enable"});
    const Class plain = classWithMethodOf("SBPlainFolderView", [UIView class], "layoutSubviews",
                                          [SBFolderIconImageView class]);
    const Class other =
        classWithMethodOf("SBOtherFolderView", plain, "isAnimating", [SBFolderIconImageView class]);
    UIView* const view = [[[other alloc] init] autorelease];
    clearJournal();
    [view layoutSubviews];
    const Lines messages = taken();
    ASSERT_GT(messages.size(), 2U);
    EXPECT_EQ(messages[0], "-[SBOtherFolderView layoutSubviews] SBOtherFolderView");
    EXPECT_EQ(messages[1], "-[SBOtherFolderView isAnimating] SBOtherFolderView");
    EXPECT_EQ([view->_subviews count], 1U);
    // A class without that message is not sent it, and is laid out as one at rest.
    UIView* const silent = [[[plain alloc] init] autorelease];
    EXPECT_EQ(address(thrownBy([silent] { [silent layoutSubviews]; })), nullptr);
    EXPECT_EQ([silent->_subviews count], 1U);
    EXPECT_EQ(silent->_tag, 329);
}

TEST_F(FolderIconLayout, LeavesNothingBehindAndPassesExceptionsOn) {
    settings({"A"}, {});
    expectNothingLeft(layout);
    expectExceptionsToPass(kLayout, layout);
    settings({"A"}, {"enable"});
    expectNothingLeft(layout);
    expectExceptionsToPass(kLayout, layout);
    expectExceptionsToPass("-[SBFolderIconImageView isAnimating]", layout);
    // The animation's way.
    const Call animate = [this] {
        folder->_tag = 329;
        [folder layoutSubviews];
    };
    setAnswer("-[SBFolderIconImageView isAnimating]", 1.0);
    expectNothingLeft(animate);
    expectExceptionsToPass(kLayout, animate);
    expectExceptionsToPass("-[UIView subviews]", animate);
}

constexpr const char* kCell = "-[SBFolderIconImageCache gridCellImageForIcon:]";
constexpr const char* kCellCall = "-[SBFolderIconImageCache gridCellImageForIcon:] cache icon";
constexpr const char* kNode = "-[SBIcon nodeIdentifier]";
constexpr const char* kFile = "A/IconBundles/com.node-large.png";

class Miniatures : public ReplacedMethods {
  protected:
    Miniatures() { setVariable(icon, "_nodeIdentifier", @"com.node"); }

    UIImage* first = namedImage("first", 4, 4);
    UIImage* second = namedImage("second", 4, 4);
    UIImage* third = namedImage("third", 4, 4);
    SBIcon* icon = named([[SBIcon alloc] init], "icon");
    SBFolderIconImageCache* cache = named([[SBFolderIconImageCache alloc] init], "cache");
    Call ask = [this] { [cache gridCellImageForIcon:icon]; };
};

TEST_F(Miniatures, WithThemingOffAreThePlatformsSecondImage) {
    themePng(kFile);
    settings({"A"}, {"enableLogging", "enableIconMask", "enableOverlay"});
    for (const id answer : {static_cast<id>(second), static_cast<id>(nil)}) {
        setAnswers(kCell, {first, answer, third});
        EXPECT_EQ(address([cache gridCellImageForIcon:icon]), address(answer));
        EXPECT_EQ(taken(), (Lines{kCellCall, kCellCall}));
    }
    // Whatever is asked for reaches the platform.
    const id stranger = named([[UIView alloc] init], "stranger");
    clearJournal();
    setAnswers(kCell, {first, second});
    EXPECT_EQ(address([cache gridCellImageForIcon:stranger]), address(second));
    const Lines call{"-[SBFolderIconImageCache gridCellImageForIcon:] cache stranger"};
    EXPECT_EQ(taken(), joined({call, call}));
}

TEST_F(Miniatures, NilIconIsThePlatforms) {
    settings({"A"}, {"enable"});
    setAnswers(kCell, {first, second, third});
    EXPECT_EQ(address([cache gridCellImageForIcon:nil]), address(second));
    const Lines call{"-[SBFolderIconImageCache gridCellImageForIcon:] cache nil"};
    EXPECT_EQ(taken(), joined({call, call}));
}

TEST_F(Miniatures, AreTheThemesEachTimeAnew) {
    themePng(kFile);
    settings({"A"}, {"enable"});
    setAnswer(kCell, first);
    for (int time = 0; time < 2; ++time) {
        UIImage* const image = [cache gridCellImageForIcon:icon];
        EXPECT_EQ(pathOf(image), "/Library/Themes/" + std::string(kFile));
        EXPECT_EQ(taken(), (Lines{kCellCall, sentTo("icon", kNode), kCellCall, readsImage(kFile)}));
    }
}

TEST_F(Miniatures, WithoutAFileAreThePlatformsSecondImage) {
    settings({"A"}, {"enable"});
    setAnswers(kCell, {first, second, third});
    EXPECT_EQ(address([cache gridCellImageForIcon:icon]), address(second));
    EXPECT_EQ(taken(), (Lines{kCellCall, sentTo("icon", kNode), kCellCall}));
    // An unreadable file: the third.
    file("/Library/Themes/" + std::string(kFile), "no picture");
    setAnswers(kCell, {first, second, third});
    EXPECT_EQ(address([cache gridCellImageForIcon:icon]), address(third));
    EXPECT_EQ(taken(),
              (Lines{kCellCall, sentTo("icon", kNode), kCellCall, readsImage(kFile), kCellCall}));
}

TEST_F(Miniatures, AreLoggedWithAFreshImage) {
    settings({"A"}, {"enable", "enableLogging"});
    setAnswers(kCell, {first, second, third, first});
    EXPECT_EQ(address([cache gridCellImageForIcon:icon]), address(third));
    EXPECT_EQ(taken(), (Lines{kCellCall, kCellCall, sentTo("icon", kNode), sentTo("icon", kNode),
                              kCellCall}));
    EXPECT_EQ(logLines().front(),
              "VELMORANTH MainIcons, " + describe(second) + "  With Identifier: com.node");
}

TEST_F(Miniatures, IdentifierThatIsNoStringIsNone) {
    themePng("A/IconBundles/(null)-large.png");
    settings({"A"}, {"enable"});
    setAnswer(kCell, first);
    for (const id other : { static_cast<id>(nil), static_cast<id>(@5) }) {
        setVariable(icon, "_nodeIdentifier", other);
        EXPECT_EQ(pathOf([cache gridCellImageForIcon:icon]),
                  "/Library/Themes/A/IconBundles/(null)-large.png");
    }
}

TEST_F(Miniatures, LeaveNothingBehindAndPassExceptionsOn) {
    themePng(kFile);
    themePng("A/com.apple.mobileicons.framework/AppIconMask.png");
    themePng("A/Velmoranth/iPhoneOverlay.png");
    setAnswer(kCell, first);
    for (const char* const enable : {"enableLogging", "enable"}) {
        settings({"A"}, {enable, "enableIconMask", "enableOverlay"});
        expectNothingLeft(ask);
        expectExceptionsToPass(kCell, ask);
        EXPECT_EQ([icon retainCount], 1U);
    }
    expectExceptionsToPass(kNode, ask);
    // An icon that does not understand what it is asked has no identifier.
    UIView* const stranger = named([[UIView alloc] init], "stranger");
    themePng("A/IconBundles/(null)-large.png");
    settings({"A"}, {"enable"});
    @autoreleasepool {
        EXPECT_EQ(pathOf([cache gridCellImageForIcon:static_cast<id>(stranger)]),
                  "/Library/Themes/A/IconBundles/(null)-large.png");
    }
    EXPECT_EQ([stranger retainCount], 1U);
}

}  // namespace
}  // namespace velmoranth::standins::folder_rows_test
