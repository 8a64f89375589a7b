// The replacements on icon views, their images and their badges.
#include "device/library/rows_support.h"
#include <objc/runtime.h>

namespace velmoranth::standins::icon_view_rows_test {
namespace {

constexpr const char* kLayout = "-[SBIconView layoutSubviews]";

class IconViewLayout : public ReplacedMethods {
  protected:
    static SBIconView* viewWithIcon() {
        SBIconView* const view = named([[SBIconView alloc] init], "view");
        setVariable(view, "_icon", named([[SBIcon alloc] init], "icon"));
        clearJournal();
        return view;
    }

    static void layout() { [viewWithIcon() layoutSubviews]; }
};

TEST_F(IconViewLayout, WithThemingOffIsThePlatformsAlone) {
    settings({"A"}, {"enableShadow", "dynamicShadow"});
    layout();
    EXPECT_EQ(taken(), Lines{sentTo("view", kLayout)});
}

TEST_F(IconViewLayout, MarksTheView) {
    settings({"A"}, {"enable"});
    SBIconView* const view = viewWithIcon();
    [view layoutSubviews];
    EXPECT_EQ(taken(), (Lines{sentTo("view", kLayout), "-[SBIconView icon] view",
                              "-[UIView setTag:] view 546"}));
    EXPECT_EQ(view->_tag, 546);
}

TEST_F(IconViewLayout, WithoutAnIconIsThePlatformsAlone) {
    settings({"A"}, {"enable", "enableShadow", "dynamicShadow"});
    SBIconView* const view = viewWithIcon();
    setVariable(view, "_icon", nil);
    [view layoutSubviews];
    EXPECT_EQ(taken(), (Lines{sentTo("view", kLayout), "-[SBIconView icon] view"}));
    EXPECT_EQ(view->_tag, 0);
}

TEST_F(IconViewLayout, PutsTheThemesShadowBehindAllElse) {
    themePng("A/Velmoranth/iPhoneShadow.png", 9);
    settings({"A"}, {"enable", "enableShadow"});
    SBIconView* const view = viewWithIcon();
    [view addSubview:named([[UIView alloc] init], "label")];
    clearJournal();
    [view layoutSubviews];
    EXPECT_EQ(taken(), joined({{sentTo("view", kLayout), "-[SBIconView icon] view",
                                "-[UIView tag] view", "-[UIImageView init]"},
                               asksForIdiom(),
                               {"-[UIView setFrame:] UIImageView (-10, -10) 80×80",
                                readsImage("A/Velmoranth/iPhoneShadow.png"),
                                "-[UIImageView setImage:] UIImageView 9×9 @1x",
                                "-[UIView setTag:] UIImageView 478",
                                "-[UIView insertSubview:atIndex:] view UIImageView #478 0",
                                "-[UIView setTag:] view 546"}}));
    ASSERT_EQ([view->_subviews count], 2U);
    UIImageView* const shadow = [view->_subviews objectAtIndex:0];
    EXPECT_EQ(pathOf(shadow->_image), "/Library/Themes/A/Velmoranth/iPhoneShadow.png");
    EXPECT_EQ(shadow->_tag, 478);
    // Once a view.
    [view layoutSubviews];
    EXPECT_EQ([view->_subviews count], 2U);
}

TEST_F(IconViewLayout, GivesTheLayerItsShadow) {
    settings([NSDictionary
        dictionaryWithObjectsAndKeys:@1, @"enable", @1, @"dynamicShadow", @0.5, @"opacityVal", @1.5,
                                     @"xAxisVal", @-2.25, @"yAxisVal", @7, @"shadowRadiusVal", @61,
                                     @"shadowWidthVal", @62.5, @"shadowHeightVal", nil]);
    SBIconView* const view = viewWithIcon();
    [view layoutSubviews];
    EXPECT_EQ(
        taken(),
        (Lines{sentTo("view", kLayout), "-[SBIconView icon] view", "-[UIView tag] view",
               "-[UIView layer] view", "-[CALayer setMasksToBounds:] view NO",
               "+[UIColor blackColor]", "-[CALayer setShadowColor:] view #000000",
               "-[CALayer setShadowOpacity:] view 0.5",
               "-[CALayer setShadowOffset:] view 1.5×-2.25", "-[CALayer setShadowRadius:] view 7",
               "+[UIBezierPath bezierPathWithRect:] (0, 0) 61×62.5",
               "-[CALayer setShadowPath:] view (0, 0) 61×62.5", "-[UIView setTag:] view 546"}));
}

TEST_F(IconViewLayout, LeavesNothingElseBehind) {
    themePng("A/Velmoranth/iPhoneShadow.png");
    settings({"A"}, {"enable", "enableShadow", "dynamicShadow"});
    // The engine keeps the newest shadow view and the theme's image.
    EXPECT_EQ(leftBy(&layout),
              (Lines{"CALayer +1", "UIDevice +1", "UIImage +1", "UIImageView +1"}));
    expectNothingLeft(&layout);
}

TEST_F(IconViewLayout, PassesExceptionsOn) {
    settings({"A"}, {});
    expectExceptionsToPass(kLayout, &layout);
    themePng("A/Velmoranth/iPhoneShadow.png");
    settings({"A"}, {"enable", "enableShadow", "dynamicShadow"});
    for (const char* const method :
         {kLayout, "-[SBIconView icon]", "-[UIView tag]", "-[UIImageView setImage:]",
          "-[UIView insertSubview:atIndex:]", "-[CALayer setShadowPath:]", "-[UIView setTag:]"}) {
        SCOPED_TRACE(method);
        expectExceptionsToPass(method, &layout);
    }
}

constexpr const char* kContents = "-[SBIconImageView contentsImage]";
constexpr const char* kDarkening = "-[SBIconImageView darkeningOverlayImage]";
constexpr const char* kMask = "A/Bundles/com.apple.mobileicons.framework/AppIconMask.png";
constexpr const char* kOtherMask = "A/com.apple.mobileicons.framework/AppIconMask.png";

class IconImage : public ReplacedMethods {
  protected:
    IconImage() {
        setDevice(kPad, 1);
        setVariable(icon, "_uniqueIdentifier", @"com.unique");
        setVariable(view, "_icon", icon);
    }

    UIImage* first = namedImage("first", 4, 4);
    UIImage* second = namedImage("second", 4, 4);
    UIImage* third = namedImage("third", 4, 4);
    SBIcon* icon = named([[SBIcon alloc] init], "icon");
    SBIconImageView* view = named([[SBIconImageView alloc] init], "view");
};

using IconContents = IconImage;
using IconDarkening = IconImage;

TEST_F(IconContents, OfAPhoneArePlatformsSecondAnswer) {
    settings({"A"}, {"enable", "enableLogging"});
    themePng("A/IconBundles/com.unique-large.png");
    setDevice(kPhone, 1);
    setAnswers(kContents, {first, second, third});
    EXPECT_EQ(address([view contentsImage]), address(second));
    EXPECT_EQ(taken(),
              joined({{sentTo("view", kContents)}, asksForIdiom(), {sentTo("view", kContents)}}));
}

TEST_F(IconContents, OfADeviceWithoutAnIdiomArePlatformsSecondAnswer) {
    settings({"A"}, {"enable"});
    setDevice(std::nullopt, 1);
    setAnswers(kContents, {first, second, third});
    EXPECT_EQ(address([view contentsImage]), address(second));
    EXPECT_EQ(taken(), (Lines{sentTo("view", kContents), "+[UIDevice currentDevice]",
                              "-[UIDevice respondsToSelector:] userInterfaceIdiom",
                              sentTo("view", kContents)}));
}

TEST_F(IconContents, WithThemingOffArePlatformsSecondAnswer) {
    settings({"A"}, {});
    for (UIImage* const answer : {second, static_cast<UIImage*>(nil)}) {
        setAnswers(kContents, {first, answer, third});
        EXPECT_EQ(address([view contentsImage]), address(answer));
        EXPECT_EQ(
            taken(),
            joined({{sentTo("view", kContents)}, asksForIdiom(), {sentTo("view", kContents)}}));
    }
}

TEST_F(IconContents, NilOfThePlatformIsAskedForOnceMore) {
    settings({"A"}, {"enable"});
    setAnswers(kContents, {first, nil, third});
    EXPECT_EQ(address([view contentsImage]), address(third));
    EXPECT_EQ(taken(), joined({{sentTo("view", kContents)},
                               asksForIdiom(),
                               {sentTo("view", kContents), sentTo("view", kContents)}}));
}

TEST_F(IconContents, AreTheThemesAndKept) {
    themePng("A/IconBundles/com.unique-large.png");
    settings({"A"}, {"enable"});
    setAnswer(kContents, first);
    UIImage* const image = [view contentsImage];
    EXPECT_EQ(pathOf(image), "/Library/Themes/A/IconBundles/com.unique-large.png");
    EXPECT_EQ(taken(), joined({{sentTo("view", kContents)},
                               asksForIdiom(),
                               {sentTo("view", kContents), "-[SBIconImageView icon] view",
                                "-[SBIcon uniqueIdentifier] icon", sentTo("view", kContents),
                                readsImage("A/IconBundles/com.unique-large.png")}}));
    EXPECT_EQ(address([view contentsImage]), address(image));
    EXPECT_EQ(taken(), joined({{sentTo("view", kContents)},
                               asksForIdiom(),
                               {sentTo("view", kContents), "-[SBIconImageView icon] view",
                                "-[SBIcon uniqueIdentifier] icon"}}));
}

TEST_F(IconContents, WithoutAFileAreThePlatformsThirdAnswerAndKept) {
    settings({"A"}, {"enable"});
    setAnswers(kContents, {first, second, third, first});
    EXPECT_EQ(address([view contentsImage]), address(third));
    EXPECT_EQ(address([view contentsImage]), address(third));
}

TEST_F(IconContents, WithoutAnIconOrItsIdentifierAreThePlatformsFourthAnswer) {
    settings({"A"}, {"enable"});
    for (const char* const missing : {"_icon", "_uniqueIdentifier"}) {
        const id object = std::string(missing) == "_icon" ? static_cast<id>(view) : icon;
        const id before = [variable(object, missing) retain];
        setVariable(object, missing, nil);
        setAnswers(kContents, {first, second, third, first});
        EXPECT_EQ(address([view contentsImage]), address(first)) << missing;
        EXPECT_EQ(journalOf(kContents).size(), 4U) << missing;
        clearJournal();
        setVariable(object, missing, [before autorelease]);
    }
    // What is no string is none.
    setVariable(icon, "_uniqueIdentifier", @5);
    setAnswers(kContents, {first, second, third, first});
    EXPECT_EQ(address([view contentsImage]), address(first));
}

TEST_F(IconContents, LeaveNothingBehindAndPassExceptionsOn) {
    settings({"A"}, {"enable"});
    setAnswer(kContents, first);
    const Call contents = [this] { [view contentsImage]; };
    expectNothingLeft(contents);
    expectExceptionsToPass(kContents, contents);
    expectExceptionsToPass("-[SBIcon uniqueIdentifier]", contents);
    // Without an identifier nothing is kept.
    setVariable(icon, "_uniqueIdentifier", nil);
    expectNothingLeft(contents);
    expectExceptionsToPass(kContents, contents);
    settings({"A"}, {});
    expectNothingLeft(contents);
    expectExceptionsToPass(kContents, contents);
}

TEST_F(IconDarkening, WithThemingOffIsThePlatformsSecondAnswer) {
    themePng(kMask);
    settings({"A"}, {});
    for (UIImage* const answer : {second, static_cast<UIImage*>(nil)}) {
        setAnswers(kDarkening, {first, answer, third});
        EXPECT_EQ(address([view darkeningOverlayImage]), address(answer));
        EXPECT_EQ(taken(), (Lines{sentTo("view", kDarkening), sentTo("view", kDarkening)}));
    }
}

TEST_F(IconDarkening, WithLoggingIsThePlatformsThirdAnswer) {
    settings({"A"}, {"enableLogging"});
    for (UIImage* const answer : {second, static_cast<UIImage*>(nil)}) {
        setAnswers(kDarkening, {first, answer, third});
        clearLog();
        EXPECT_EQ(address([view darkeningOverlayImage]), address(third));
        EXPECT_EQ(taken(), (Lines{sentTo("view", kDarkening), sentTo("view", kDarkening),
                                  sentTo("view", kDarkening)}));
        EXPECT_EQ(logLines(),
                  Lines{"VELMORANTH SBIconImageView: darkeningOverlayImage " + describe(answer)});
    }
}

TEST_F(IconDarkening, WithoutAMaskIsNil) {
    settings({"A"}, {"enable"});
    setAnswer(kDarkening, first);
    EXPECT_EQ(address([view darkeningOverlayImage]), nullptr);
    EXPECT_EQ(taken(),
              (Lines{sentTo("view", kDarkening), readsImage(kMask), readsImage(kOtherMask)}));
}

TEST_F(IconDarkening, IsThePlatformsSecondAnswerMasked) {
    themePng(kOtherMask, 4);
    settings({"A"}, {"enable"});
    setAnswers(kDarkening, {first, imageOfPixels(8, 4), third});
    UIImage* const image = [view darkeningOverlayImage];
    ASSERT_NE(address(image), nullptr);
    EXPECT_NE(address(image), address(first));
    EXPECT_EQ(image->pixels_.width, 8);
    EXPECT_EQ(image->pixels_.height, 4);
    const Lines messages = taken();
    EXPECT_EQ(Lines(messages.begin(), messages.begin() + 4),
              (Lines{sentTo("view", kDarkening), readsImage(kMask), readsImage(kOtherMask),
                     sentTo("view", kDarkening)}));
    EXPECT_EQ(messages.back(), "+[UIImage imageWithCGImage:] 8×4 pixels");
    // Nil masked is nil.
    setAnswers(kDarkening, {first, nil, third});
    EXPECT_EQ(address([view darkeningOverlayImage]), nullptr);
}

TEST_F(IconDarkening, LeavesNothingBehindAndPassesExceptionsOn) {
    themePng(kMask);
    setAnswer(kDarkening, first);
    const Call darkening = [this] { [view darkeningOverlayImage]; };
    for (const bool isOn : {false, true}) {
        settings({"A"}, {isOn ? "enable" : "enableOverlay"});
        expectNothingLeft(darkening);
        expectExceptionsToPass(kDarkening, darkening);
    }
}

constexpr const char* kBadgeLayout = "-[SBIconBadgeView layoutSubviews]";
constexpr const char* kTextWidth = "+[SBIconBadgeView _maxTextWidth]";
constexpr const char* kBadge = "A/Bundles/com.apple.springboard/SBBadgeBG.png";

class Badge : public ReplacedMethods {
  protected:
    Badge() { setVariable(badge, "_backgroundView", background); }

    [[nodiscard]] static Lines makesBadge() {
        return {sentTo("badge", kBadgeLayout), "-[UIImageView init]",
                "-[UIView setFrame:] UIImageView (0, 0) 30×30", readsImage(kBadge)};
    }

    UIImageView* background = named([[UIImageView alloc] init], "background");
    SBIconBadgeView* badge = named([[SBIconBadgeView alloc] init], "badge");
    Call layout = [this] { [badge layoutSubviews]; };
};

TEST_F(Badge, WithThemingOffIsThePlatforms) {
    themePng(kBadge);
    settings({"A"}, {"removeIconBadges"});
    layout();
    EXPECT_EQ(taken(), Lines{sentTo("badge", kBadgeLayout)});
}

TEST_F(Badge, IsInvisibleWhenBadgesAreRemoved) {
    themePng(kBadge);
    settings({"A"}, {"enable", "removeIconBadges"});
    layout();
    EXPECT_EQ(taken(), (Lines{sentTo("badge", kBadgeLayout), "-[UIView setAlpha:] badge 0"}));
    EXPECT_EQ(badge->_layer->_opacity, 0);
}

TEST_F(Badge, HasTheThemesImage) {
    themePng(kBadge);
    settings({"A"}, {"enable"});
    layout();
    EXPECT_EQ(taken(), joined({makesBadge(),
                               {"-[UIImageView setImage:] UIImageView 6×6 @1x",
                                "-[UIImageView image] UIImageView",
                                "-[UIImageView setImage:] background 6×6 @1x"}}));
    EXPECT_EQ(pathOf(background->_image), "/Library/Themes/" + std::string(kBadge));
}

TEST_F(Badge, WithoutTheThemesImageIsThePlatforms) {
    settings({"A"}, {"enable"});
    layout();
    EXPECT_EQ(
        taken(),
        joined({makesBadge(),
                {"-[UIImageView setImage:] UIImageView nil", "-[UIImageView image] UIImageView"}}));
}

TEST_F(Badge, BackgroundThatIsNoImageViewIsLeftAlone) {
    themePng(kBadge);
    settings({"A"}, {"enable"});
    const Lines messages = joined(
        {makesBadge(),
         {"-[UIImageView setImage:] UIImageView 6×6 @1x", "-[UIImageView image] UIImageView"}});
    for (const id other : {static_cast<id>(nil), static_cast<id>(@"background"),
                           static_cast<id>([[[UIView alloc] init] autorelease])}) {
        setVariable(badge, "_backgroundView", other);
        clearJournal();
        layout();
        EXPECT_EQ(taken(), messages);
    }
}

TEST_F(Badge, ClassWithoutThatVariableIsLeftAlone) {
    themePng(kBadge);
    settings({"A"}, {"enable"});
    const Class plain = classWithMethodOf("SBPlainBadgeView", [UIView class], "layoutSubviews",
                                          [SBIconBadgeView class]);
    UIView* const other = [[[plain alloc] init] autorelease];
    clearJournal();
    [other layoutSubviews];
    EXPECT_EQ(journal().back(), "-[UIImageView image] UIImageView");
}

TEST_F(Badge, LeavesNothingBehindAndPassesExceptionsOn) {
    themePng(kBadge);
    for (const char* const more : {"enableLogging", "removeIconBadges"}) {
        for (const char* const enable : {"enableOverlay", "enable"}) {
            settings({"A"}, {enable, more});
            expectNothingLeft(layout);
            expectExceptionsToPass(kBadgeLayout, layout);
        }
    }
    settings({"A"}, {"enable"});
    expectExceptionsToPass("-[UIImageView setImage:]", layout);
}

TEST_F(Badge, TextIsAsWideAsThePlatformSaysTheSecondTime) {
    for (const char* const enable : {"enableOverlay", "enable"}) {
        settings({"A"}, {enable});
        setAnswers(kTextWidth, {1, 16777217.25, 3});
        EXPECT_EQ([SBIconBadgeView _maxTextWidth], 16777217.25);
        EXPECT_EQ(taken(), (Lines{sentToClass(kTextWidth), sentToClass(kTextWidth)}));
        const Call width = [] { [SBIconBadgeView _maxTextWidth]; };
        expectNothingLeft(width);
        expectExceptionsToPass(kTextWidth, width);
    }
}

TEST_F(Badge, SubclassIsAskedForItsTextsWidth) {
    const Class heir = objc_allocateClassPair([SBIconBadgeView class], "SBHeirBadgeView", 0);
    objc_registerClassPair(heir);
    clearJournal();
    [heir _maxTextWidth];
    EXPECT_EQ(taken(), (Lines{"+[SBIconBadgeView _maxTextWidth] SBHeirBadgeView",
                              "+[SBIconBadgeView _maxTextWidth] SBHeirBadgeView"}));
}

}  // namespace
}  // namespace velmoranth::standins::icon_view_rows_test
