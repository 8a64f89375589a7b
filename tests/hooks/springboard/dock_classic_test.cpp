// The replacements of the classic dock's layout, one for each system.
#include "hooks/springboard/dock_hooks.h"

#include "chrome_fixture.h"

#include <cmath>

namespace velmoranth::hooks::dock_classic_test {
namespace {

using platform::Dictionary;
using platform::Rect;
using platform::ViewRef;
using tests::drawnPixels;
using tests::kRed;
using tests::Lines;
using tests::NamedViewOf;
using tests::solid;

const Dictionary kDockRemoved{{"enable", true}, {"removeDock", true}};
const std::vector<Dictionary> kDockStays{
    {{"removeFolderBG", true}, {"removePageDots", true}},
    {{"enable", true}, {"removeFolderBG", true}, {"removeLabels", true}},
    {{"removeDock", true}, {"removeLabels", true}}};

constexpr const char* kOniOS12 = "log kCFCoreFoundationVersionNumber Running ios 12 1575.170000";
constexpr const char* kOniOS13 = "log kCFCoreFoundationVersionNumber Running ios 13 1674.102000";

struct ClassicDock final : NamedViewOf<platform::SBDockView> {
    ClassicDock() : NamedViewOf<platform::SBDockView>("SBDockView", "dock") {}

    [[nodiscard]] Rect dockListViewFrame() const override { return {{4, 3}, {367, 92}}; }

    void setBackgroundView(const ViewRef& view) override {
        record::tell(*this, record::messageOf("SBDockView", "setBackgroundView"), view);
        background = view;
    }

    ViewRef background;
};

class ClassicDockTest : public tests::ChromeProcess {
  protected:
    explicit ClassicDockTest(double versionNumber = tests::kiOS12) {
        addLayout<platform::SBDockView>("SBDockView");
        addViewVariable<platform::SBDockView>("SBDockView", "_backgroundView", background);
        addViewVariable<platform::SBDockView>("SBDockView", "_highlightView", highlight);
        addViewVariable<platform::SBDockView>("SBDockView", "_iconListView", list);
        install(versionNumber);
        for (const ViewRef& view : {background, highlight, list}) {
            dock->addSubview(view);
        }
        list->addSubview(plainView("icon"));
        device.journal.clear();
    }

    void layout() { device.runtime.send<void>(*dock, "layoutSubviews"); }

    ViewRef background = plainView("background");
    ViewRef highlight = plainView("highlight");
    ViewRef list = plainView("list");
    std::shared_ptr<ClassicDock> dock = std::make_shared<ClassicDock>();
};

using DockOniOS12 = ClassicDockTest;

class DockOniOS13 : public ClassicDockTest {
  protected:
    DockOniOS13() : ClassicDockTest(tests::kiOS13) {}
};

// Which replacement answers a layout on a system of that version: what the log says.
class DockVersions : public ClassicDockTest {
  protected:
    DockVersions() : ClassicDockTest(1600) {}

    Lines layoutOn(double versionNumber) {
        device.system.number = versionNumber;
        install(versionNumber);
        layout();
        return taken();
    }
};

TEST_F(DockVersions, BetweenTheSystemsTheLayoutIsThePlatforms) {
    settings({"A"}, kDockRemoved);
    layout();
    EXPECT_EQ(taken(), Lines{"orig layoutSubviews"});
    EXPECT_EQ(layoutOn(std::nextafter(1575.23, 2000)), Lines{"orig layoutSubviews"});
    EXPECT_EQ(layoutOn(std::nextafter(1665.15, 0)), Lines{"orig layoutSubviews"});
}

TEST_F(DockVersions, NewestiOS12HasTheReplacementOfiOS12) {
    EXPECT_EQ(layoutOn(1575.23),
              (Lines{"orig layoutSubviews",
                     "log kCFCoreFoundationVersionNumber Running ios 12 1575.230000"}));
}

TEST_F(DockVersions, OldestiOS13HasTheReplacementOfiOS13) {
    EXPECT_EQ(layoutOn(1665.15),
              (Lines{"orig layoutSubviews",
                     "log kCFCoreFoundationVersionNumber Running ios 13 1665.150000"}));
}

TEST_F(DockOniOS12, StaysUnlessBothSwitchesAreOnAndIsLoggedAllTheSame) {
    for (const bool isLogged : {false, true}) {
        for (Dictionary stays : kDockStays) {
            stays.insert_or_assign("enableLogging", isLogged);
            settings({"A"}, stays);
            layout();
            EXPECT_EQ(taken(), (Lines{"orig layoutSubviews", kOniOS12}));
        }
    }
    EXPECT_EQ(namesOf(dock->subviews()), (Lines{"background", "highlight", "list"}));
    EXPECT_EQ(namesOf(list->subviews()), Lines{"icon"});
}

TEST_F(DockOniOS12, ThemesDockLiesBehindTheIcons) {
    settings({"A"}, kDockRemoved);
    themePng("A/Velmoranth/SBDockBGiphone.png");
    layout();
    EXPECT_EQ(steps(), (Lines{"orig layoutSubviews", kOniOS12,
                              "-[NSObject valueForKey:] dock _backgroundView",
                              "-[UIView removeFromSuperview] background",
                              "-[NSObject valueForKey:] dock _highlightView",
                              "-[UIView removeFromSuperview] highlight",
                              "-[NSObject valueForKey:] dock _iconListView", "-[UIImageView init]",
                              "-[UIView setFrame:] picture (4, 13) 367×92",
                              "-[UIView insertSubview:atIndex:] list picture 0"}));
    EXPECT_EQ(namesOf(dock->subviews()), Lines{"list"});
    EXPECT_EQ(namesOf(list->subviews()), (Lines{"picture", "icon"}));
    EXPECT_EQ(dock->background, nullptr);
    const auto picture = std::dynamic_pointer_cast<platform::ImageView>(list->subviews().front());
    EXPECT_EQ(drawnPixels(picture->image()), solid(6, 6, kRed));
    EXPECT_EQ(picture->tag(), 0);
}

TEST_F(DockOniOS12, ThreeLayoutsInsertThreePictures) {
    settings({}, kDockRemoved);
    layout();
    const ViewRef first = list->subviews().front();
    layout();
    layout();
    EXPECT_EQ(namesOf(list->subviews()), (Lines{"picture", "picture", "picture", "icon"}));
    EXPECT_EQ(list->subviews().at(2), first);
    EXPECT_EQ(device.journal.count("log kCFCoreFoundationVersionNumber Running ios 12 "), 3U);
    EXPECT_EQ(device.journal.count("orig layoutSubviews"), 3U);
}

TEST_F(DockOniOS12, PicturesStayWhenTheDockIsBack) {
    settings({}, kDockRemoved);
    layout();
    settings({}, {{"enable", true}});
    layout();
    EXPECT_EQ(namesOf(list->subviews()), (Lines{"picture", "icon"}));
}

TEST_F(DockOniOS12, ViewsThatAreMissingHarmNothing) {
    settings({}, kDockRemoved);
    background = nullptr;
    layout();
    EXPECT_EQ(namesOf(dock->subviews()), (Lines{"background", "list"}));
    EXPECT_EQ(namesOf(list->subviews()), (Lines{"picture", "icon"}));
    highlight = nullptr;
    const ViewRef kept = std::exchange(list, nullptr);
    layout();
    EXPECT_EQ(namesOf(kept->subviews()), (Lines{"picture", "icon"}));
}

TEST_F(DockOniOS13, StaysUnlessBothSwitchesAreOnAndIsLoggedAllTheSame) {
    for (const bool isLogged : {false, true}) {
        for (Dictionary stays : kDockStays) {
            stays.insert_or_assign("enableLogging", isLogged);
            settings({"A"}, stays);
            layout();
            EXPECT_EQ(taken(), (Lines{"orig layoutSubviews", kOniOS13}));
        }
    }
    EXPECT_EQ(dock->background, nullptr);
}

TEST_F(DockOniOS13, ThemesDockBecomesTheBackgroundAndTheHighlightStays) {
    settings({"A"}, kDockRemoved);
    themePng("A/Velmoranth/SBDockBGiphone.png");
    layout();
    EXPECT_EQ(steps(), (Lines{"orig layoutSubviews", kOniOS13,
                              "-[NSObject valueForKey:] dock _highlightView", "-[UIImageView init]",
                              "-[UIView setFrame:] picture (4, 13) 367×92",
                              "-[SBDockView setBackgroundView:] dock picture"}));
    EXPECT_EQ(namesOf(dock->subviews()), (Lines{"background", "highlight", "list"}));
    EXPECT_EQ(namesOf(list->subviews()), Lines{"icon"});
    const auto picture = std::dynamic_pointer_cast<platform::ImageView>(dock->background);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(drawnPixels(picture->image()), solid(6, 6, kRed));
}

TEST_F(DockOniOS13, EveryLayoutSetsANewBackground) {
    settings({}, kDockRemoved);
    highlight = nullptr;
    layout();
    const ViewRef first = dock->background;
    layout();
    EXPECT_NE(first, nullptr);
    EXPECT_NE(dock->background, nullptr);
    EXPECT_NE(dock->background, first);
    EXPECT_EQ(device.journal.count("log kCFCoreFoundationVersionNumber Running ios 13 "), 2U);
}

}  // namespace
}  // namespace velmoranth::hooks::dock_classic_test
