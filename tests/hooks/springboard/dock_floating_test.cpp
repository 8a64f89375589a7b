// The replacements on the pad's floating dock: its platter, its icons and its divider.
#include "hooks/springboard/dock_hooks.h"
#include "theme/themed_icons.h"

#include "chrome_fixture.h"

#include <deque>

namespace velmoranth::hooks::dock_floating_test {
namespace {

using platform::Dictionary;
using platform::SBIconListViewRef;
using platform::ViewRef;
using tests::drawnPixels;
using tests::HomeScreenIcon;
using tests::kBlue;
using tests::kRed;
using tests::Lines;
using tests::NamedViewOf;
using tests::solid;

const Dictionary kDockRemoved{{"enable", true}, {"removeDock", true}};
// Whatever else is on.
const std::vector<Dictionary> kDockStays{
    {{"enableLogging", true}, {"removeFolderBG", true}, {"removePageDots", true}},
    {{"enable", true}, {"enableLogging", true}, {"removeFolderBG", true}},
    {{"removeDock", true}, {"enableLogging", true}, {"removeLabels", true}}};

struct IconList final : NamedViewOf<platform::SBIconListView> {
    IconList() : NamedViewOf<platform::SBIconListView>("SBIconListView", "list") {}

    [[nodiscard]] std::vector<platform::SBIconRef> icons() const override {
        record::tell(*this, record::messageOf("SBIconListView", "icons"));
        return shown;
    }

    std::vector<platform::SBIconRef> shown;
};

struct FloatingDock final : NamedViewOf<platform::SBFloatingDockView> {
    FloatingDock() : NamedViewOf<platform::SBFloatingDockView>("SBFloatingDockView", "dock") {}

    [[nodiscard]] ViewRef backgroundView() const override {
        record::tell(*this, record::messageOf("SBFloatingDockView", "backgroundView"));
        return background;
    }

    ViewRef background;
};

class FloatingDockPlatter : public tests::ChromeProcess {
  protected:
    using PlatterView = NamedViewOf<platform::SBFloatingDockPlatterView>;

    FloatingDockPlatter() {
        addLayout<platform::SBFloatingDockPlatterView>("SBFloatingDockPlatterView");
        using Receiver = platform::SBFloatingDockPlatterView;
        addViewVariable<Receiver>("SBFloatingDockPlatterView", "_backgroundView", background);
        addViewVariable<Receiver>("SBFloatingDockPlatterView", "_shadowView", shadow);
        install();
        for (const ViewRef& view : {background, shadow, other}) {
            platter->addSubview(view);
        }
        device.journal.clear();
    }

    void layout() { device.runtime.send<void>(*platter, "layoutSubviews"); }

    ViewRef background = plainView("background");
    ViewRef shadow = plainView("shadow");
    ViewRef other = plainView("other");
    std::shared_ptr<PlatterView> platter =
        std::make_shared<PlatterView>("SBFloatingDockPlatterView", "platter");
};

class FloatingDockTest : public tests::ChromeProcess {
  protected:
    FloatingDockTest() {
        device.idiom.idiom = platform::kUserInterfaceIdiomPad;
        device.screen.size = {1024, 768};
        addMethod("SBFloatingDockView", "userIconListView",
                  std::function<SBIconListViewRef(platform::SBFloatingDockView&)>(
                      [this](platform::SBFloatingDockView&) {
                          original("userIconListView");
                          return next(lists);
                      }));
        addMethod("SBFloatingDockView", "dividerView",
                  std::function<ViewRef(platform::SBFloatingDockView&)>(
                      [this](platform::SBFloatingDockView&) {
                          original("dividerView");
                          return next(dividers);
                      }));
        install();
        dock->background = plainView("background");
        dock->background->setFrame({{40, 50}, {600, 84}});
        dock->addSubview(plainView("platter"));
        device.journal.clear();
    }

    // A list of icons with these unique identifiers.
    std::shared_ptr<IconList> list(const std::vector<platform::NullableString>& identifiers) {
        auto made = std::make_shared<IconList>();
        for (const platform::NullableString& identifier : identifiers) {
            auto shown = std::make_shared<HomeScreenIcon>();
            shown->unique = identifier;
            made->shown.push_back(shown);
        }
        return made;
    }

    void themed(const std::string& identifier) {
        theme::storeThemedIcon(identifier, device.image(solid(3, 3, kRed)));
    }

    SBIconListViewRef userIconListView() {
        return device.runtime.send<SBIconListViewRef>(*dock, "userIconListView");
    }

    ViewRef dividerView() { return device.runtime.send<ViewRef>(*dock, "dividerView"); }

    void setBackgroundHeight(double height) {
        dock->background->setFrame({{0, 0}, {600, height}});
        device.journal.clear();
    }

    std::shared_ptr<FloatingDock> dock = std::make_shared<FloatingDock>();
    // What the calls of the platform's methods give, the last one for ever.
    std::deque<SBIconListViewRef> lists{list({})};
    std::deque<ViewRef> dividers{plainView("divider")};

  private:
    template <class T>
    static T next(std::deque<T>& answers) {
        T answer = answers.front();
        if (answers.size() > 1) {
            answers.pop_front();
        }
        return answer;
    }
};

using FloatingDockIcons = FloatingDockTest;
using FloatingDockDivider = FloatingDockTest;

TEST_F(FloatingDockPlatter, LosesItsBackgroundAndThenItsShadow) {
    settings({"A"}, kDockRemoved);
    layout();
    EXPECT_EQ(taken(),
              (Lines{"orig layoutSubviews", "-[NSObject valueForKey:] platter _backgroundView",
                     "-[UIView removeFromSuperview] background",
                     "-[NSObject valueForKey:] platter _shadowView",
                     "-[UIView removeFromSuperview] shadow"}));
    EXPECT_EQ(namesOf(platter->subviews()), Lines{"other"});
}

TEST_F(FloatingDockPlatter, IsAskedAnewAtEveryLayout) {
    settings({}, kDockRemoved);
    layout();
    background = plainView("newBackground");
    platter->addSubview(background);
    device.journal.clear();
    layout();
    EXPECT_EQ(device.journal.count("-[UIView removeFromSuperview] newBackground"), 1U);
    EXPECT_EQ(namesOf(platter->subviews()), Lines{"other"});
}

TEST_F(FloatingDockPlatter, StaysUnlessBothSwitchesAreOn) {
    for (const Dictionary& stays : kDockStays) {
        settings({"A"}, stays);
        layout();
        EXPECT_EQ(taken(), Lines{"orig layoutSubviews"});
    }
    EXPECT_EQ(platter->subviews().size(), 3U);
}

TEST_F(FloatingDockPlatter, WithoutABackgroundStillLosesItsShadow) {
    settings({}, kDockRemoved);
    background = nullptr;
    layout();
    EXPECT_EQ(device.journal.lines().back(), "-[UIView removeFromSuperview] shadow");
    shadow = nullptr;
    layout();
}

TEST_F(FloatingDockIcons, WithThemingOffThePlatformIsAskedTwiceForItsList) {
    settings({"A"}, {{"removeDock", true}, {"enableLogging", true}});
    themed("com.a");
    const auto second = list({"com.a"});
    lists = {list({"com.a"}), second, list({"com.a"})};
    EXPECT_EQ(userIconListView(), second);
    EXPECT_EQ(taken(), (Lines{"orig userIconListView", "orig userIconListView"}));
    EXPECT_TRUE(DockIconIdentifiers().empty());
}

TEST_F(FloatingDockIcons, SecondListIsWalkedAndTheThirdReturned) {
    settings({"A"}, {{"enable", true}, {"enableLogging", true}});
    for (const std::string identifier : {"com.a", "com.b", "com.c"}) {
        themed(identifier);
    }
    const auto third = list({"com.c"});
    lists = {list({"com.a"}), list({"com.b"}), third, list({"com.a"})};
    EXPECT_EQ(userIconListView(), third);
    EXPECT_EQ(taken(), (Lines{"orig userIconListView", "orig userIconListView",
                              "-[SBIconListView icons] list", "orig userIconListView"}));
    EXPECT_EQ(DockIconIdentifiers(), Lines{"com.b"});
}

TEST_F(FloatingDockIcons, ThemedOnesAreKeptInTheOrderOfTheDock) {
    settings({}, kDockRemoved);
    themed("com.a");
    themed("com.b");
    lists = {list({"com.b", "com.plain", std::nullopt, "com.a"})};
    userIconListView();
    EXPECT_EQ(DockIconIdentifiers(), (Lines{"com.b", "com.a"}));
    EXPECT_EQ(theme::ThemedIconIdentifiers(), (Lines{"com.a", "com.b"}));
}

TEST_F(FloatingDockIcons, UniqueIdentifierIsTheOneThatCounts) {
    settings({}, {{"enable", true}});
    themed("com.leaf");
    themed("com.node");
    lists = {list({"com.unique"})};
    userIconListView();
    EXPECT_TRUE(DockIconIdentifiers().empty());
    themed("com.unique");
    userIconListView();
    EXPECT_EQ(DockIconIdentifiers(), Lines{"com.unique"});
}

TEST_F(FloatingDockIcons, DuplicatesAreKeptWithinACallAndOverCalls) {
    settings({}, {{"enable", true}});
    themed("com.a");
    themed("com.b");
    lists = {list({"com.a", "com.b", "com.a"})};
    userIconListView();
    EXPECT_EQ(DockIconIdentifiers(), (Lines{"com.a", "com.b", "com.a"}));
    userIconListView();
    EXPECT_EQ(DockIconIdentifiers(), (Lines{"com.a", "com.b", "com.a", "com.a", "com.b", "com.a"}));
}

TEST_F(FloatingDockIcons, ListStaysWhenTheThemeChanges) {
    settings({}, {{"enable", true}});
    themed("com.a");
    lists = {list({"com.a"})};
    userIconListView();
    theme::dropThemedIcons();
    userIconListView();
    EXPECT_EQ(DockIconIdentifiers(), Lines{"com.a"});
    EXPECT_FALSE(theme::themedIconsExist());  // looking at the dock makes none
}

TEST_F(FloatingDockIcons, NoListIsPassedThrough) {
    settings({}, {{"enable", true}});
    lists = {nullptr};
    EXPECT_EQ(userIconListView(), nullptr);
    EXPECT_EQ(takenCalls().size(), 3U);
}

TEST_F(FloatingDockDivider, StaysUnlessBothSwitchesAreOn) {
    for (const Dictionary& stays : kDockStays) {
        settings({"A"}, stays);
        const ViewRef second = plainView("second");
        dividers = {plainView("first"), second, plainView("third")};
        EXPECT_EQ(dividerView(), second);
        EXPECT_EQ(taken(), (Lines{"orig dividerView", "orig dividerView"}));
    }
    EXPECT_FALSE(DockImageInserted());
    EXPECT_EQ(namesOf(dock->subviews()), Lines{"platter"});
}

TEST_F(FloatingDockDivider, MakesWayForTheThemesDock) {
    settings({"A"}, kDockRemoved);
    themePng("A/Velmoranth/SBDockBGipad.png", kBlue);
    bool wasMarked = false;
    views.whenAnImageViewIsMade = [&] { wasMarked = DockImageInserted(); };
    EXPECT_EQ(dividerView(), nullptr);
    EXPECT_TRUE(wasMarked);
    // As wide as the screen, as high as the platform's background, 10 points lower.
    EXPECT_EQ(steps(), (Lines{"orig dividerView", "-[SBFloatingDockView backgroundView] dock",
                              "-[UIImageView init]", "-[UIView setFrame:] picture (0, 10) 1024×84",
                              "-[UIView insertSubview:atIndex:] dock picture 0"}));
    EXPECT_EQ(namesOf(dock->subviews()), (Lines{"picture", "platter"}));
    const auto picture = std::dynamic_pointer_cast<platform::ImageView>(dock->subviews().front());
    EXPECT_EQ(drawnPixels(picture->image()), solid(6, 6, kBlue));
}

TEST_F(FloatingDockDivider, ThemesDockIsInsertedWithoutAnImageToo) {
    settings({}, kDockRemoved);
    EXPECT_EQ(dividerView(), nullptr);
    EXPECT_EQ(namesOf(dock->subviews()), (Lines{"picture", "platter"}));
    EXPECT_TRUE(DockImageInserted());
}

TEST_F(FloatingDockDivider, ThemesDockWaitsForAHeight) {
    settings({"A"}, kDockRemoved);
    setBackgroundHeight(0);
    for (int call = 0; call < 2; ++call) {
        EXPECT_EQ(dividerView(), nullptr);
        EXPECT_EQ(taken(),
                  (Lines{"orig dividerView", "-[SBFloatingDockView backgroundView] dock"}));
        EXPECT_FALSE(DockImageInserted());
    }
    dock->background = nullptr;
    EXPECT_EQ(dividerView(), nullptr);
    EXPECT_FALSE(DockImageInserted());

    dock->background = plainView("background");
    setBackgroundHeight(0.5);
    EXPECT_EQ(dividerView(), nullptr);
    EXPECT_TRUE(DockImageInserted());
    EXPECT_EQ(dock->subviews().front()->frame(), (platform::Rect{{0, 10}, {1024, 0.5}}));
}

TEST_F(FloatingDockDivider, ThemesDockIsInsertedOnceForEver) {
    settings({"A"}, kDockRemoved);
    dividerView();
    setBackgroundHeight(99);
    EXPECT_EQ(dividerView(), nullptr);
    EXPECT_EQ(taken(), Lines{"orig dividerView"});
    EXPECT_EQ(dock->subviews().size(), 2U);

    settings({"A"}, {});
    EXPECT_NE(dividerView(), nullptr);
    settings({"A"}, kDockRemoved);
    auto rebuilt = std::make_shared<FloatingDock>();
    rebuilt->background = dock->background;
    EXPECT_EQ(device.runtime.send<ViewRef>(*rebuilt, "dividerView"), nullptr);
    EXPECT_TRUE(rebuilt->subviews().empty());
    EXPECT_TRUE(DockImageInserted());
}

}  // namespace
}  // namespace velmoranth::hooks::dock_floating_test
