// A folder that opens and closes on the platform's home screen, nothing replaced: which messages
// reach which objects, and what the screen shows.
#include "simulator/home_screen/open_folder.h"

#include "folder_process.h"
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace velmoranth::simulator::open_folder_test {
namespace {

using platform::GestureRecognizerRef;
using platform::ObjectRef;
using platform::Rect;
using platform::ViewRef;
using Calls = std::map<std::string, int>;

class OpenFolderOn : public testing::TestWithParam<std::tuple<std::string, int>> {
  public:
    void SetUp() override { process.emplace(std::get<0>(GetParam()), std::get<1>(GetParam())); }

    [[nodiscard]] bool isPad() const { return std::get<0>(GetParam()) == "pad"; }

    std::optional<FolderProcess> process;
};

INSTANTIATE_TEST_SUITE_P(Devices, OpenFolderOn,
                         testing::Combine(testing::Values("phone", "phone-667", "pad"),
                                          testing::Values(12, 13)));

TEST_P(OpenFolderOn, IsMadeTappedAndClosedByMessages) {
    FolderProcess& p = *process;
    p.watch<ViewRef, platform::SBFolderControllerBackgroundView, Rect>(
        "SBFolderControllerBackgroundView", "initWithFrame:");
    p.watch<ViewRef, platform::SBFloatyFolderView, ObjectRef, std::int64_t, ObjectRef, ObjectRef>(
        "SBFloatyFolderView", "initWithFolder:orientation:viewMap:context:");
    p.watch<bool, platform::SBFloatyFolderView>("SBFloatyFolderView", "_showsTitle");
    p.watch<bool, platform::SBFloatyFolderView, GestureRecognizerRef, ObjectRef>(
        "SBFloatyFolderView", "_tapToCloseGestureRecognizer:shouldReceiveTouch:");
    p.watch<void, platform::SBFloatyFolderView>("SBFloatyFolderView", "layoutSubviews");
    p.watch<void, platform::SBFolderBackgroundView>("SBFolderBackgroundView", "layoutSubviews");
    p.watch<void, IconController, ObjectRef, bool, FolderCompletion>(
        "SBIconController", "_closeFolderController:animated:withCompletion:");
    p.watchClass<platform::SBIconControllerRef>("SBIconController", "sharedInstance");

    ASSERT_TRUE(p.screen().openFolder("", Animated::yes));
    EXPECT_EQ(p.takeCalls(),
              (Calls{{"SBFolderControllerBackgroundView initWithFrame:", 1},
                     {"SBFloatyFolderView initWithFolder:orientation:viewMap:context:", 1}}));
    p.screen().layoutViews();
    EXPECT_EQ(p.takeCalls(), (Calls{{"SBFloatyFolderView _showsTitle", 1},
                                    {"SBFloatyFolderView layoutSubviews", 1},
                                    {"SBFolderBackgroundView layoutSubviews", 1}}));
    p.screen().tap(p.onPanel());
    EXPECT_EQ(p.takeCalls(),
              (Calls{{"SBFloatyFolderView _tapToCloseGestureRecognizer:shouldReceiveTouch:", 1}}));
    p.screen().tap(p.beside());
    EXPECT_EQ(p.takeCalls(),
              (Calls{{"SBFloatyFolderView _tapToCloseGestureRecognizer:shouldReceiveTouch:", 1},
                     {"SBIconController sharedInstance", 1},
                     {"SBIconController _closeFolderController:animated:withCompletion:", 1}}));
    // On its way it takes no more taps.
    p.screen().tap({1, 1});
    EXPECT_EQ(p.takeCalls(), Calls{});
}

TEST_P(OpenFolderOn, LiesInTheMiddleWithItsIconsInAGrid) {
    FolderProcess& p = *process;
    p.openFolder();
    const ShownFolder folder = p.screen().shownFolder().value();
    EXPECT_EQ(folder.identifier, "folder.utilities");
    EXPECT_EQ(folder.name, "Utilities");
    EXPECT_EQ(folder.pageCount, isPad() ? 1 : 2);
    ASSERT_EQ(folder.icons.size(), isPad() ? 10U : 9U);
    const Picture picture = p.picture();
    EXPECT_NEAR(folder.x + folder.width / 2, static_cast<double>(picture.width) / 2, 1);
    EXPECT_NEAR(folder.y + folder.height / 2, static_cast<double>(picture.height) / 2, 1);
    for (const ShownIcon& icon : folder.icons) {
        EXPECT_GT(icon.x, folder.x);
        EXPECT_LT(icon.x + icon.side, folder.x + folder.width);
        EXPECT_GT(icon.y, folder.y);
        EXPECT_LT(icon.y + icon.side, folder.y + folder.height);
        // Pixel for pixel, along the icon's middle row.
        const auto side = static_cast<int>(icon.side);
        const int middle = side / 2;
        const std::vector<std::uint8_t> stock = drawStockIcon(icon.bundleIdentifier, side);
        for (int x = side / 10; x < side - side / 10; ++x) {
            const Pixel shown =
                pixelAt(picture, {(icon.x + x) / picture.scale, (icon.y + middle) / picture.scale});
            ASSERT_TRUE(std::equal(shown.begin(), shown.end(),
                                   stock.begin() + std::ptrdiff_t{4} * (middle * side + x)))
                << icon.bundleIdentifier << " at " << x;
        }
    }
    if (!isPad()) {
        p.screen().folder()->view()->showPage(2);
        const ShownFolder second = p.screen().shownFolder().value();
        ASSERT_EQ(second.icons.size(), 1U);
        EXPECT_EQ(second.icons[0].bundleIdentifier, "com.saurik.Cydia");
        EXPECT_EQ(second.icons[0].x, folder.icons[0].x);
    }
}

TEST_P(OpenFolderOn, BeginsAndEndsAsTheClosedScreen) {
    FolderProcess& p = *process;
    const Picture closed = p.picture();
    ASSERT_TRUE(p.screen().openFolder("", Animated::yes));
    EXPECT_EQ(p.picture(), closed);
    p.screen().advance(kFolderDuration / 2);
    const Picture halfway = p.picture();
    EXPECT_NE(halfway, closed);
    p.screen().advance(kFolderDuration);
    const Picture open = p.picture();
    EXPECT_NE(open, halfway);
    p.screen().advance(1);
    EXPECT_EQ(p.picture(), open) << "it lies still";

    p.screen().tap(p.beside());
    EXPECT_EQ(p.picture(), open) << "it has not moved yet";
    p.screen().advance(kFolderDuration - 0.01);
    EXPECT_NE(p.screen().folder(), nullptr);
    EXPECT_NE(p.picture(), closed);
    p.screen().advance(0.02);
    EXPECT_EQ(p.screen().folder(), nullptr);
    EXPECT_EQ(p.picture(), closed);
    EXPECT_EQ(p.screen().shownFolder(), std::nullopt);
}

TEST_P(OpenFolderOn, WithoutAnimationItIsThereAtOnce) {
    FolderProcess& p = *process;
    ASSERT_TRUE(p.screen().openFolder("", Animated::yes));
    p.screen().settle();
    const Picture open = p.picture();
    ASSERT_TRUE(p.screen().openFolder("", Animated::no));
    EXPECT_EQ(p.picture(), open);
}

TEST_P(OpenFolderOn, BlursTheScreenBehindAndKeepsWhatIsInFront) {
    FolderProcess& p = *process;
    const Picture closed = p.picture();
    p.openFolder();
    const Picture open = p.picture();
    const HomeScreenMetrics& metrics = p.screen().context().metrics;
    // The status bar's clock, letter by letter.
    const double height = std::min(metrics.statusBarHeight, 20.0);
    int white = 0;
    for (double y = 0; y < height; ++y) {
        for (double x = metrics.statusTimeX - 20; x < metrics.statusTimeX + 20; ++x) {
            const Pixel before = pixelAt(closed, {x, y});
            white += before == kWhite ? 1 : 0;
            if (before == kWhite) {
                EXPECT_EQ(pixelAt(open, {x, y}), kWhite);
            }
        }
    }
    EXPECT_TRUE(white > 0 || metrics.statusBarHeight > 30);
    // The dock: a pad's stays, a phone's is blurred with the rest.
    const ShownIcon music = [&] {
        for (const ShownIcon& icon : p.screen().shownIcons()) {
            if (icon.bundleIdentifier == "com.apple.Music") {
                return icon;
            }
        }
        return ShownIcon{};
    }();
    const platform::Point inDock{(music.x + music.side / 2) / open.scale,
                                 (music.y + music.side / 2) / open.scale};
    EXPECT_EQ(pixelAt(open, inDock) == pixelAt(closed, inDock), isPad());
    // Neighbours far from the panel hardly differ: it is blurred all over.
    const platform::Rect& panel = p.screen().folder()->view()->folderLayout().panel;
    const double y = panel.origin.y + panel.size.height + 30;
    for (double x = 10; x + 2 < panel.origin.x + panel.size.width; ++x) {
        const Pixel here = pixelAt(open, {x, y});
        const Pixel next = pixelAt(open, {x + 1, y});
        for (std::size_t c = 0; c < 3; ++c) {
            EXPECT_LE(std::abs(here[c] - next[c]), 4) << x;
        }
    }
}

TEST_P(OpenFolderOn, FoldersIconKnowsWhileItMoves) {
    FolderProcess& p = *process;
    p.screen().layoutViews();
    std::vector<bool> animating;
    const auto original = std::make_shared<platform::Implementation>();
    p.runtime().hookMessageEx(
        p.runtime().getClass("SBFolderIconImageView"), "layoutSubviews",
        platform::makeImplementation(std::function<void(platform::SBFolderIconImageView&)>(
            [&animating, original](platform::SBFolderIconImageView& view) {
                if (view.icon()->nodeIdentifier() == "folder.utilities") {
                    animating.push_back(view.isAnimating());
                }
                (*original->as<void(platform::Object&)>())(view);
            })),
        original.get());
    ASSERT_TRUE(p.screen().openFolder("", Animated::yes));
    EXPECT_EQ(animating, std::vector<bool>{true});
    p.screen().advance(kFolderDuration);
    EXPECT_EQ(animating, (std::vector<bool>{true, false}));
    p.screen().tap({1, 1});
    p.screen().advance(kFolderDuration);
    EXPECT_EQ(animating, (std::vector<bool>{true, false, true, false}));
}

TEST_P(OpenFolderOn, HidesTheTitleThatIsNotToBeShown) {
    FolderProcess& p = *process;
    p.openFolder();
    EXPECT_FALSE(p.screen().folder()->view()->titleView()->isHidden());
    p.runtime().addInstanceMethod("SBFloatyFolderView", "_showsTitle",
                                  std::function<bool(platform::SBFloatyFolderView&)>(
                                      [](platform::SBFloatyFolderView&) { return false; }));
    p.screen().layoutViews();
    EXPECT_TRUE(p.screen().folder()->view()->titleView()->isHidden());
}

TEST_P(OpenFolderOn, MaterialsAreInstanceVariables) {
    FolderProcess& p = *process;
    p.openFolder();
    const bool is12 = std::get<1>(GetParam()) == 12;
    for (platform::Object* const view :
         {static_cast<platform::Object*>(p.screen().folder()->backgroundView().get()),
          static_cast<platform::Object*>(p.screen().folder()->view()->backgroundView().get())}) {
        const ObjectRef blur = p.runtime().instanceVariable(*view, "_blurView");
        ASSERT_NE(blur, nullptr) << view->className();
        EXPECT_EQ(blur->className(), is12 ? "UIVisualEffectView" : "MTMaterialView");
        EXPECT_NE(p.runtime().getClass(blur->className()), nullptr);
        EXPECT_NE(p.runtime().instanceVariable(*view, "_tintView"), nullptr);
    }
}

class OpenFolderTest : public testing::Test {
  public:
    FolderProcess p{"phone-667", 13};
};

TEST_F(OpenFolderTest, InitialiserStartsAnewButKeepsRecognizers) {
    p.openFolder();
    const std::shared_ptr<FloatyFolderView> view = p.screen().folder()->view();
    const auto recognizer = std::make_shared<desktop::TapGestureRecognizer>(*view, "unused");
    view->addGestureRecognizer(recognizer);
    const GestureRecognizerRef own = view->tapToClose();
    const std::size_t count = countViews(view);
    const ViewRef again = p.runtime().send<ViewRef, ObjectRef, std::int64_t, ObjectRef, ObjectRef>(
        *view, "initWithFolder:orientation:viewMap:context:",
        std::make_shared<FolderObject>(p.screen().folder()->folder()), 1, nullptr, nullptr);
    EXPECT_EQ(again, view);
    p.screen().layoutViews();  // makes the page dots
    EXPECT_EQ(countViews(view), count);
    EXPECT_EQ(view->recognizers(), std::vector<GestureRecognizerRef>{recognizer});
    EXPECT_EQ(view->tapToClose(), own);
}

TEST_F(OpenFolderTest, RecognizersOfTheFolderSendTheirActions) {
    p.openFolder();
    int taps = 0;
    p.runtime().addInstanceMethod("SBFloatyFolderView", "tapped",
                                  std::function<void(platform::SBFloatyFolderView&)>(
                                      [&taps](platform::SBFloatyFolderView&) { ++taps; }));
    const std::shared_ptr<FloatyFolderView> view = p.screen().folder()->view();
    for (int i = 0; i < 2; ++i) {
        view->addGestureRecognizer(
            std::make_shared<desktop::TapGestureRecognizer>(*view, "tapped"));
    }
    p.screen().tap(p.onPanel());
    EXPECT_EQ(taps, 2);
}

TEST_F(OpenFolderTest, InitialiserWithoutAViewOpensNothing) {
    p.runtime().addInstanceMethod(
        "SBFolderControllerBackgroundView", "initWithFrame:",
        std::function<ViewRef(platform::SBFolderControllerBackgroundView&, Rect)>(
            [](platform::SBFolderControllerBackgroundView&, const Rect&) -> ViewRef {
                return nullptr;
            }));
    const Picture closed = p.picture();
    const auto opened = p.screen().openFolder("", Animated::yes);
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error().message, "the folder came without a view");
    EXPECT_EQ(p.screen().folder(), nullptr);
    EXPECT_EQ(p.picture(), closed);
}

TEST_F(OpenFolderTest, ControllerClosesThatFolderOnlyAndTellsWhenItIsGone) {
    p.openFolder();
    int gone = 0;
    const auto close = [&](const ObjectRef& folder) {
        const auto controller = p.runtime().sendToClass<platform::SBIconControllerRef>(
            "SBIconController", "sharedInstance");
        p.runtime().send<void, ObjectRef, bool, FolderCompletion>(
            *controller, "_closeFolderController:animated:withCompletion:", folder, true,
            [&gone] { ++gone; });
    };
    close(nullptr);
    close(p.screen().folder()->backgroundView());
    p.screen().settle();
    ASSERT_NE(p.screen().folder(), nullptr);
    EXPECT_EQ(gone, 0);
    close(p.screen().folder()->view());
    close(p.screen().folder()->view());
    EXPECT_EQ(gone, 0);
    p.screen().settle();
    EXPECT_EQ(p.screen().folder(), nullptr);
    EXPECT_EQ(gone, 2) << "whoever asked is told";
}

TEST_F(OpenFolderTest, TheEngineSideOfTheControllerSendsTheMessage) {
    p.openFolder();
    p.watch<void, IconController, ObjectRef, bool, FolderCompletion>(
        "SBIconController", "_closeFolderController:animated:withCompletion:");
    const auto controller = p.runtime().sendToClass<platform::SBIconControllerRef>(
        "SBIconController", "sharedInstance");
    controller->_closeFolderControllerAnimatedWithCompletion(*p.screen().folder()->view(), true);
    EXPECT_EQ(p.takeCalls().size(), 1U);
    p.screen().settle();
    EXPECT_EQ(p.screen().folder(), nullptr);
}

TEST_F(OpenFolderTest, MayCloseBeforeItIsOpenAndOpenBeforeItIsClosed) {
    const Picture closed = p.picture();
    ASSERT_TRUE(p.screen().openFolder("", Animated::yes));
    p.screen().advance(0.1);
    p.screen().tap({1, 1});
    p.screen().advance(0.1);
    ASSERT_TRUE(p.screen().openFolder("folder.social", Animated::yes));
    EXPECT_EQ(p.screen().shownFolder()->identifier, "folder.social");
    p.screen().settle();
    EXPECT_EQ(p.screen().shownFolder()->identifier, "folder.social");
    p.screen().tap({1, 1});
    p.screen().settle();
    EXPECT_EQ(p.picture(), closed);
}

TEST_F(OpenFolderTest, AnotherPageClosesIt) {
    p.screen().showPage(2);
    const Picture second = p.picture();
    p.screen().showPage(1);
    p.openFolder();
    p.screen().showPage(2);
    EXPECT_EQ(p.screen().folder(), nullptr);
    EXPECT_EQ(p.picture(), second);
}

TEST_F(OpenFolderTest, FolderThatIsNotThereIsAProblem) {
    EXPECT_EQ(p.screen().openFolder("folder.games", Animated::yes).error().message,
              "there is no folder \"folder.games\"");
    EXPECT_EQ(p.screen().openFolder("com.apple.Maps", Animated::yes).error().message,
              "there is no folder \"com.apple.Maps\"");
    p.screen().showPage(2);
    EXPECT_EQ(p.screen().openFolder("", Animated::yes).error().message,
              "there is no folder on page 2");
    EXPECT_TRUE(p.screen().openFolder("folder.utilities", Animated::yes));
    EXPECT_EQ(p.screen().page(), 1);
}

TEST_F(OpenFolderTest, PressedIconIsDarkerInItsOwnShape) {
    const Picture plain = p.picture();
    ASSERT_TRUE(p.screen().pressIcon("com.apple.mobilemail"));
    const Picture pressed = p.picture();
    const auto mail = [&] {
        for (const ShownIcon& icon : p.screen().shownIcons()) {
            if (icon.bundleIdentifier == "com.apple.mobilemail") {
                return icon;
            }
        }
        return ShownIcon{};
    }();
    const double scale = plain.scale;
    const auto changed = [&](double x, double y) {
        const platform::Point at{mail.x / scale + x, mail.y / scale + y};
        return pixelAt(plain, at) != pixelAt(pressed, at);
    };
    EXPECT_TRUE(changed(30, 50));
    EXPECT_FALSE(changed(0, 0)) << "beyond the round corner";
    EXPECT_FALSE(changed(30, 62));
    EXPECT_TRUE(changed(58, -8)) << "the badge";
    // 40 % black over the icon, 20 % over the badge's red.
    const platform::Point inside{mail.x / scale + 30, mail.y / scale + 50};
    for (std::size_t c = 0; c < 3; ++c) {
        EXPECT_NEAR(pixelAt(pressed, inside)[c], 0.6 * pixelAt(plain, inside)[c], 1.5);
    }
    EXPECT_NEAR(pixelAt(pressed, {mail.x / scale + 56, mail.y / scale - 8})[2], 0.8 * 255, 1.5);

    ASSERT_TRUE(p.screen().pressIcon("com.apple.Music"));
    EXPECT_EQ(pixelAt(p.picture(), inside), pixelAt(plain, inside)) << "the finger has left it";
    EXPECT_EQ(p.screen().pressIcon("no.such").error().message, "there is no icon \"no.such\"");
    EXPECT_TRUE(p.screen().pressIcon(""));
}

}  // namespace
}  // namespace velmoranth::simulator::open_folder_test
