// The replacement of SBIconView's layout: the shadow image and the layer shadow, once a view.
#include "record/operations.h"
#include "record/recorder.h"
#include "springboard_fixture.h"

#include <cstdint>

namespace velmoranth::hooks::icon_view_layout_test {
namespace {

using platform::Dictionary;
using tests::appearanceOf;
using tests::drawnPixels;
using tests::joined;
using tests::kBlue;
using tests::kReadPreferences;
using tests::kRed;
using tests::Lines;
using tests::solid;

constexpr const char* kLayout = "orig layoutSubviews";

// Tells when it is asked for its layer too.
class TestIconView final : public desktop::ViewImplementation<platform::SBIconView> {
  public:
    [[nodiscard]] std::string className() const override { return "SBIconView"; }

    [[nodiscard]] platform::SBIconRef icon() const override { return shown; }

    [[nodiscard]] platform::LayerRef layer() override {
        record::tell(*this, record::messageOf("View", "layer"));
        return hasLayer ? desktopLayer() : nullptr;
    }

    platform::SBIconRef shown;
    bool hasLayer = true;
};

// What those settings tell the layer.
const Lines kLayerLines{"-[UIView layer] SBIconView",
                        "-[CALayer setMasksToBounds:] SBIconView NO",
                        "-[CALayer setShadowColor:] SBIconView #000000",
                        "-[CALayer setShadowOpacity:] SBIconView 0.5",
                        "-[CALayer setShadowOffset:] SBIconView 1.5×-2.25",
                        "-[CALayer setShadowRadius:] SBIconView 7",
                        "-[CALayer setShadowPath:] SBIconView (0, 0) 61×62.5"};
const Dictionary kLayerShadow{{"enable", true},         {"dynamicShadow", true},
                              {"opacityVal", 0.5},      {"xAxisVal", 1.5},
                              {"yAxisVal", -2.25},      {"shadowRadiusVal", 7.0},
                              {"shadowWidthVal", 61.0}, {"shadowHeightVal", 62.5}};

Dictionary with(Dictionary values, const Dictionary& more) {
    for (const auto& [key, value] : more) {
        values.insert_or_assign(key, value);
    }
    return values;
}

class IconViewLayout : public tests::SpringBoardProcess {
  public:
    IconViewLayout() {
        addLayout<platform::SBIconView>("SBIconView");
        install();
        view->shown = icon;
    }

    void layout() { device.runtime.send<void>(*view, "layoutSubviews"); }

    // The lines of a search for the phone's shadow through theme A, which has none, and of the
    // insertion of the view.
    static Lines shadowLines() {
        return {
            "uname",
            "-[UIImageView init]",
            "-[UIView setFrame:] UIImageView (-10, -10) 80×80",
            kReadPreferences,
            "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/Velmoranth/iPhoneShadow.png",
            kReadPreferences,
            "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/AnemoneEffects/iPhoneShadow.png",
            "-[UIView setFrame:] UIImageView (-10, -10) 82×82",
            "-[UIImageView setImage:] UIImageView nil",
            "-[UIView setTag:] UIImageView 478",
            "-[UIView insertSubview:atIndex:] SBIconView UIImageView #478 0"};
    }

    platform::ViewRef subview(std::size_t index) const { return view->nodeSubviews().at(index); }

    std::shared_ptr<TestIconView> view = std::make_shared<TestIconView>();
};

TEST_F(IconViewLayout, WithThemingOffRunsThePlatformsLayoutAlone) {
    Dictionary values = with(kLayerShadow, {{"enable", false}, {"enableShadow", true}});
    settings({"A"}, values);
    layout();
    layout();
    EXPECT_EQ(taken(), (Lines{kLayout, kLayout}));
    EXPECT_EQ(view->tag(), 0);
    EXPECT_TRUE(view->nodeSubviews().empty());
}

TEST_F(IconViewLayout, WithoutSettingsRunsThePlatformsLayoutAlone) {
    layout();
    EXPECT_EQ(taken(), Lines{kLayout});
}

TEST_F(IconViewLayout, AViewWithoutAnIconIsLeftAlone) {
    settings({"A"}, with(kLayerShadow, {{"enableShadow", true}}));
    view->shown = nullptr;
    layout();
    EXPECT_EQ(taken(), Lines{kLayout});
    EXPECT_EQ(view->tag(), 0);
    EXPECT_TRUE(view->nodeSubviews().empty());
    EXPECT_EQ(appearanceOf(*view).shadow.opacity, 0);
    // It is treated when it has one.
    view->shown = icon;
    layout();
    EXPECT_EQ(view->tag(), 546);
    EXPECT_EQ(view->nodeSubviews().size(), 1U);
}

TEST_F(IconViewLayout, WithBothShadowsOffIsMarkedAllTheSame) {
    settings({"A"}, {{"enable", true}});
    layout();
    EXPECT_EQ(taken(), (Lines{kLayout, "-[UIView setTag:] SBIconView 546"}));
    EXPECT_TRUE(view->nodeSubviews().empty());
    EXPECT_EQ(appearanceOf(*view).shadow.opacity, 0);
    EXPECT_FALSE(appearanceOf(*view).shadowPath.has_value());
}

TEST_F(IconViewLayout, InsertsTheShadowBehindEverythingElse) {
    themePng("A/Velmoranth/iPhoneShadow.png", kRed, 9);
    settings({"A"}, {{"enable", true}, {"enableShadow", true}});
    const auto label = std::make_shared<tests::HomeScreenView<platform::View>>("UILabel");
    const auto badge = std::make_shared<tests::HomeScreenView<platform::View>>("UIView");
    view->addSubview(label);
    view->addSubview(badge);
    taken();
    layout();
    EXPECT_EQ(
        taken(),
        (Lines{kLayout, "uname", "-[UIImageView init]",
               "-[UIView setFrame:] UIImageView (-10, -10) 80×80", kReadPreferences,
               "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/Velmoranth/iPhoneShadow.png",
               "-[UIImageView setImage:] UIImageView 9×9 @1x", "-[UIView setTag:] UIImageView 478",
               "-[UIView insertSubview:atIndex:] SBIconView UIImageView #478 0",
               "-[UIView setTag:] SBIconView 546"}));
    ASSERT_EQ(view->nodeSubviews().size(), 3U);
    const auto shadow = std::dynamic_pointer_cast<platform::ImageView>(subview(0));
    ASSERT_NE(shadow, nullptr);
    EXPECT_EQ(shadow->tag(), 478);
    EXPECT_EQ(shadow->frame(), (platform::Rect{{-10, -10}, {80, 80}}));
    EXPECT_EQ(drawnPixels(shadow->image()), solid(9, 9, kRed));
    EXPECT_EQ(subview(1), label);
    EXPECT_EQ(subview(2), badge);
    EXPECT_EQ(view->tag(), 546);
}

TEST_F(IconViewLayout, AThemeWithoutAShadowStillGivesAnEmptyView) {
    settings({"A"}, {{"enable", true}, {"enableShadow", true}});
    layout();
    EXPECT_EQ(taken(), joined({{kLayout}, shadowLines(), {"-[UIView setTag:] SBIconView 546"}}));
    ASSERT_EQ(view->nodeSubviews().size(), 1U);
    const auto shadow = std::dynamic_pointer_cast<platform::ImageView>(subview(0));
    ASSERT_NE(shadow, nullptr);
    EXPECT_EQ(shadow->image(), nullptr);
    EXPECT_EQ(shadow->tag(), 478);
    // A phone's frame after a search of both folders, found or not.
    EXPECT_EQ(shadow->frame(), (platform::Rect{{-10, -10}, {82, 82}}));
}

TEST_F(IconViewLayout, TheShadowImageAloneLeavesTheLayerAlone) {
    settings({"A"}, with(kLayerShadow, {{"enableShadow", true}, {"dynamicShadow", false}}));
    view->setClipsToBounds(true);
    layout();
    EXPECT_EQ(device.journal.count("-[UIView layer]"), 0U);
    EXPECT_TRUE(appearanceOf(*view).masksToBounds);
    EXPECT_EQ(appearanceOf(*view).shadow.opacity, 0);
}

TEST_F(IconViewLayout, ConfiguresTheLayerFromTheSettings) {
    settings({"A"}, kLayerShadow);
    view->setClipsToBounds(true);
    view->desktopLayer()->setShadowColor({1, 1, 1, 0.5});
    taken();
    layout();
    EXPECT_EQ(taken(), joined({{kLayout}, kLayerLines, {"-[UIView setTag:] SBIconView 546"}}));
    const desktop::DesktopLayer::Appearance& layer = appearanceOf(*view);
    EXPECT_FALSE(layer.masksToBounds);
    EXPECT_EQ(layer.shadow.color, (platform::Color{0, 0, 0, 1}));
    EXPECT_EQ(layer.shadow.opacity, 0.5);
    EXPECT_EQ(layer.shadow.offset, (platform::Point{1.5, -2.25}));
    EXPECT_EQ(layer.shadow.radius, 7);
    EXPECT_EQ(layer.shadowPath, (platform::Rect{{0, 0}, {61, 62.5}}));
    EXPECT_EQ(layer.opacity, 1);
    EXPECT_EQ(view->alpha(), 1);
    EXPECT_TRUE(view->nodeSubviews().empty());
}

TEST_F(IconViewLayout, SettingsThatAreMissingMakeAShadowOfNothing) {
    settings({"A"}, {{"enable", true}, {"dynamicShadow", true}});
    layout();
    const desktop::DesktopLayer::Appearance& layer = appearanceOf(*view);
    EXPECT_EQ(layer.shadow.opacity, 0);
    EXPECT_EQ(layer.shadow.offset, (platform::Point{0, 0}));
    EXPECT_EQ(layer.shadow.radius, 0);
    EXPECT_EQ(layer.shadowPath, (platform::Rect{{0, 0}, {0, 0}}));
}

TEST_F(IconViewLayout, SettingsAreSinglesWidened) {
    settings({"A"}, with(kLayerShadow, {{"opacityVal", "0.1"},
                                        {"xAxisVal", 0.1},
                                        {"shadowRadiusVal", "3.3px"},
                                        {"shadowWidthVal", std::int64_t{16777217}}}));
    layout();
    const desktop::DesktopLayer::Appearance& layer = appearanceOf(*view);
    EXPECT_EQ(layer.shadow.opacity, static_cast<double>(0.1F));
    EXPECT_EQ(layer.shadow.offset.x, static_cast<double>(0.1F));
    EXPECT_EQ(layer.shadow.radius, static_cast<double>(3.3F));
    EXPECT_EQ(layer.shadowPath->size.width, 16777216);
}

TEST_F(IconViewLayout, BothShadowsInOrder) {
    settings({"A"}, with(kLayerShadow, {{"enableShadow", true}}));
    layout();
    EXPECT_EQ(
        taken(),
        joined({{kLayout}, shadowLines(), kLayerLines, {"-[UIView setTag:] SBIconView 546"}}));
    EXPECT_EQ(view->nodeSubviews().size(), 1U);
    EXPECT_EQ(appearanceOf(*view).shadow.opacity, 0.5);
}

TEST_F(IconViewLayout, ASecondLayoutAddsNothing) {
    settings({"A"}, with(kLayerShadow, {{"enableShadow", true}}));
    layout();
    taken();
    layout();
    layout();
    EXPECT_EQ(taken(), (Lines{kLayout, "-[UIView setTag:] SBIconView #546 546", kLayout,
                              "-[UIView setTag:] SBIconView #546 546"}));
    EXPECT_EQ(view->nodeSubviews().size(), 1U);
}

TEST_F(IconViewLayout, SettingsThatChangeDoNotReachATreatedView) {
    settings({"A"}, {{"enable", true}});
    layout();
    settings({"A"}, with(kLayerShadow, {{"enableShadow", true}}));
    layout();
    EXPECT_EQ(taken(), (Lines{kLayout, "-[UIView setTag:] SBIconView #546 546"}));
    EXPECT_TRUE(view->nodeSubviews().empty());
    EXPECT_EQ(appearanceOf(*view).shadow.opacity, 0);

    const auto fresh = std::make_shared<TestIconView>();
    fresh->shown = icon;
    device.runtime.send<void>(*fresh, "layoutSubviews");
    EXPECT_EQ(fresh->nodeSubviews().size(), 1U);
    EXPECT_EQ(appearanceOf(*fresh).shadow.opacity, 0.5);

    settings({"A"}, {{"enable", false}});
    device.runtime.send<void>(*fresh, "layoutSubviews");
    EXPECT_EQ(taken(), Lines{kLayout});
    EXPECT_EQ(fresh->nodeSubviews().size(), 1U);
    EXPECT_EQ(appearanceOf(*fresh).shadow.opacity, 0.5);
    EXPECT_EQ(fresh->tag(), 546);
}

TEST_F(IconViewLayout, ATagOfThePlatformsOwnIsOverwritten) {
    settings({"A"}, {{"enable", true}, {"enableShadow", true}});
    view->setNodeTag(478);
    layout();
    EXPECT_EQ(view->tag(), 546);
    EXPECT_EQ(view->nodeSubviews().size(), 1U);
}

TEST_F(IconViewLayout, EachViewHasAShadowViewOfItsOwn) {
    themePng("A/Velmoranth/iPhoneShadow.png");
    settings({"A"}, {{"enable", true}, {"enableShadow", true}});
    const auto second = std::make_shared<TestIconView>();
    second->shown = icon;
    layout();
    device.runtime.send<void>(*second, "layoutSubviews");
    ASSERT_EQ(view->nodeSubviews().size(), 1U);
    ASSERT_EQ(second->nodeSubviews().size(), 1U);
    EXPECT_NE(view->nodeSubviews()[0], second->nodeSubviews()[0]);
    EXPECT_EQ(device.journal.log(),
              Lines{"VELMORANTH LOADSHADOW hasShadow stop no need to search "});
}

TEST_F(IconViewLayout, APadsShadowIsLarger) {
    device.idiom.idiom = platform::kUserInterfaceIdiomPad;
    themePng("A/Velmoranth/iPadShadow~ipad.png", kBlue);
    settings({"A"}, {{"enable", true}, {"enableShadow", true}});
    layout();
    EXPECT_EQ(subview(0)->frame(), (platform::Rect{{-10, -10}, {96, 96}}));
}

TEST_F(IconViewLayout, AViewWithoutALayerIsMarked) {
    settings({"A"}, kLayerShadow);
    view->hasLayer = false;
    layout();
    EXPECT_EQ(view->tag(), 546);
}

TEST_F(IconViewLayout, LogsNothing) {
    settings({"A"}, with(kLayerShadow, {{"enableShadow", true}, {"enableLogging", true}}));
    layout();
    layout();
    EXPECT_TRUE(device.journal.log().empty());
}

}  // namespace
}  // namespace velmoranth::hooks::icon_view_layout_test
