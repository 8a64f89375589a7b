// The replacements on badges: the theme's background, or no badge.
#include "desktop/views/views.h"

#include "springboard_fixture.h"

#include <deque>

namespace velmoranth::hooks::icon_view_badge_test {
namespace {

using platform::Dictionary;
using platform::ObjectRef;
using tests::appearanceOf;
using tests::drawnPixels;
using tests::kGreen;
using tests::kiOS12;
using tests::kReadPreferences;
using tests::kRed;
using tests::Lines;
using tests::solid;

constexpr const char* kBadgeFile = "A/Bundles/com.apple.springboard/SBBadgeBG.png";
constexpr const char* kLayout = "orig layoutSubviews";
constexpr const char* kVariable = "class_getInstanceVariable SBIconBadgeView _backgroundView";
const Dictionary kOn{{"enable", true}};

class TestBadgeView final : public desktop::ViewImplementation<platform::SBIconBadgeView> {
  public:
    [[nodiscard]] std::string className() const override { return cls; }

    std::string cls = "SBIconBadgeView";
    ObjectRef backgroundView;
};

class IconBadgeView : public tests::SpringBoardProcess {
  public:
    IconBadgeView() {
        addLayout<platform::SBIconBadgeView>("SBIconBadgeView");
        install();
        view->backgroundView = background;
        background->setImage(platformImage);
    }

    void addBackgroundVariable() {
        device.runtime.addInstanceVariable(
            "SBIconBadgeView", "_backgroundView",
            std::function<ObjectRef(platform::SBIconBadgeView&)>(
                [](const platform::SBIconBadgeView& self) {
                    return dynamic_cast<const TestBadgeView&>(self).backgroundView;
                }));
    }

    void layout() { device.runtime.send<void>(*view, "layoutSubviews"); }

    // Up to what is found, in words.
    static Lines searched(const std::string& found) {
        return {kLayout,
                "-[UIImageView init]",
                "-[UIView setFrame:] UIImageView (0, 0) 30×30",
                kReadPreferences,
                std::string("+[UIImage imageWithContentsOfFile:] /Library/Themes/") + kBadgeFile,
                "-[UIImageView setImage:] UIImageView " + found};
    }

    platform::ImageRef platformImage = device.image(solid(3, 3, kGreen));
    std::shared_ptr<desktop::DesktopImageView> background =
        std::make_shared<desktop::DesktopImageView>(platform::Rect{{1, 2}, {26, 26}});
    std::shared_ptr<TestBadgeView> view = std::make_shared<TestBadgeView>();
};

TEST_F(IconBadgeView, WithThemingOffRunsThePlatformsLayoutAlone) {
    addBackgroundVariable();
    themePng(kBadgeFile);
    for (const bool isRemoved : {false, true}) {
        settings({"A"}, {{"enable", false}, {"removeIconBadges", isRemoved}});
        layout();
        EXPECT_EQ(taken(), Lines{kLayout});
        EXPECT_EQ(background->image(), platformImage);
        EXPECT_EQ(appearanceOf(*view).opacity, 1);
    }
}

TEST_F(IconBadgeView, ShowsTheThemesBackground) {
    addBackgroundVariable();
    themePng(kBadgeFile, kRed, 7);
    settings({"A"}, kOn);
    layout();
    Lines expected = searched("7×7 @1x");
    expected.emplace_back(kVariable);
    expected.emplace_back("-[UIImageView setImage:] UIImageView 7×7 @1x");
    EXPECT_EQ(taken(), expected);
    EXPECT_EQ(drawnPixels(background->image()), solid(7, 7, kRed));
    // The view itself is the platform's, where it stood.
    EXPECT_EQ(background->frame(), (platform::Rect{{1, 2}, {26, 26}}));
    EXPECT_EQ(background->tag(), 0);
    EXPECT_EQ(view->backgroundView, background);
    EXPECT_TRUE(view->nodeSubviews().empty());
    EXPECT_EQ(view->tag(), 0);
    EXPECT_EQ(appearanceOf(*view).opacity, 1);
}

TEST_F(IconBadgeView, SearchesAgainAtEveryLayout) {
    addBackgroundVariable();
    themePng(kBadgeFile, kRed, 7);
    settings({"A"}, kOn);
    layout();
    themePng(kBadgeFile, kRed, 8);
    layout();
    EXPECT_EQ(drawnPixels(background->image()).width, 8U);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 2U);
}

TEST_F(IconBadgeView, KeepsThePlatformsBackgroundWithoutAnImage) {
    addBackgroundVariable();
    settings({"A"}, kOn);
    layout();
    EXPECT_EQ(taken(), searched("nil"));
    EXPECT_EQ(background->image(), platformImage);
}

TEST_F(IconBadgeView, WithoutTheVariableIsLeftUnchanged) {
    themePng(kBadgeFile);
    settings({"A"}, kOn);
    layout();
    Lines expected = searched("6×6 @1x");
    expected.emplace_back(kVariable);
    EXPECT_EQ(taken(), expected);
    EXPECT_EQ(background->image(), platformImage);
    EXPECT_EQ(appearanceOf(*view).opacity, 1);
}

TEST_F(IconBadgeView, AViewOfASubclassHasTheVariableToo) {
    addBackgroundVariable();
    device.runtime.addClass("SBSmallBadgeView", "SBIconBadgeView");
    view->cls = "SBSmallBadgeView";
    themePng(kBadgeFile, kRed, 7);
    settings({"A"}, kOn);
    layout();
    EXPECT_EQ(drawnPixels(background->image()), solid(7, 7, kRed));
}

TEST_F(IconBadgeView, AVariableWithNilOrNoImageViewIsLeftUnchanged) {
    addBackgroundVariable();
    themePng(kBadgeFile);
    settings({"A"}, kOn);
    for (const ObjectRef& other :
         {ObjectRef(), ObjectRef(std::make_shared<desktop::DesktopView>())}) {
        view->backgroundView = other;
        layout();
        EXPECT_EQ(view->backgroundView, other);
    }
    EXPECT_EQ(device.journal.count("warning: "), 0U);
    EXPECT_EQ(device.journal.count("log "), 0U);
}

TEST_F(IconBadgeView, IsClearWhenBadgesAreRemoved) {
    addBackgroundVariable();
    themePng(kBadgeFile);
    settings({"A"}, {{"enable", true}, {"removeIconBadges", true}});
    const auto parent = std::make_shared<desktop::DesktopView>();
    parent->addSubview(view);
    taken();
    layout();
    EXPECT_EQ(taken(), (Lines{kLayout, "-[UIView setAlpha:] SBIconBadgeView 0"}));
    EXPECT_EQ(appearanceOf(*view).opacity, 0);
    EXPECT_EQ(background->image(), platformImage);
    // It stays in the tree, not hidden.
    EXPECT_EQ(view->superview(), parent);
    EXPECT_FALSE(view->isHidden());
}

TEST_F(IconBadgeView, StaysClearWhenBadgesComeBackUntilThePlatformShowsIt) {
    settings({"A"}, {{"enable", true}, {"removeIconBadges", true}});
    layout();
    settings({"A"}, kOn);
    layout();
    EXPECT_EQ(appearanceOf(*view).opacity, 0);
    EXPECT_EQ(device.journal.count("-[UIView setAlpha:]"), 0U);
}

TEST_F(IconBadgeView, IsNotRemovedWithTheLabels) {
    settings({}, {{"enable", true}, {"removeLabels", true}});
    layout();
    EXPECT_EQ(appearanceOf(*view).opacity, 1);
}

// The class side, which has a width of its own for every call.
class BadgeMaxTextWidth : public tests::SpringBoardProcess {
  public:
    BadgeMaxTextWidth() {
        device.runtime.addClass("SBIconBadgeView");
        device.runtime.addClassMethod(
            "SBIconBadgeView", "_maxTextWidth",
            std::function<double(platform::Class&)>([this](const platform::Class& self) {
                EXPECT_EQ(self.name(), "SBIconBadgeView");
                EXPECT_FALSE(self.isMetaclass());
                original("_maxTextWidth");
                return ++answered + 0.25;
            }));
    }

    double width() {
        return device.runtime.sendToClass<double>("SBIconBadgeView", "_maxTextWidth");
    }

    double answered = 40;
};

TEST_F(BadgeMaxTextWidth, IsThePlatformsSecondAnswerWhateverIsSet) {
    install();
    double last = 40;
    for (const Dictionary& values :
         {Dictionary(), kOn, Dictionary{{"enable", true}, {"removeIconBadges", true}},
          Dictionary{{"removeIconBadges", true}}}) {
        settings({"A"}, values);
        last += 2;
        EXPECT_EQ(width(), last + 0.25);
        EXPECT_EQ(taken(), (Lines{"orig _maxTextWidth", "orig _maxTextWidth"}));
    }
}

TEST_F(BadgeMaxTextWidth, IsReplacedOnTheClassSideAlone) {
    device.runtime.addInstanceMethod("SBIconBadgeView", "_maxTextWidth",
                                     std::function<double(platform::SBIconBadgeView&)>(
                                         [](platform::SBIconBadgeView&) { return 7.0; }));
    install(kiOS12);
    TestBadgeView view;
    EXPECT_EQ(device.runtime.send<double>(view, "_maxTextWidth"), 7);
    EXPECT_EQ(width(), 42.25);
}

}  // namespace
}  // namespace velmoranth::hooks::icon_view_badge_test
