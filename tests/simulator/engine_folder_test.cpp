// An open folder with the engine's library: what its replacements change.
#include "folder_process.h"
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <tuple>
#include <vector>

namespace velmoranth::simulator::engine_folder_test {
namespace {

using platform::ObjectRef;
using platform::ViewRef;

constexpr const char* kBackdrop = "Bundles/com.apple.springboard/ANEMFolderBackground.png";

class EngineFolder : public testing::TestWithParam<std::tuple<std::string, int>> {
  public:
    void start(const platform::Dictionary& preferences = {}) {
        process.emplace(std::get<0>(GetParam()), std::get<1>(GetParam()), preferences,
                        [](const ThemedDevice& device) {
                            device.png(kBackdrop, 12, 20, kMagenta);
                            device.png("IconBundles/com.apple.calculator-large.png", 120, 120,
                                       kGreen);
                        });
    }

    [[nodiscard]] double panelBlur() {
        const ObjectRef blur = process->runtime().instanceVariable(
            *process->screen().folder()->view()->backgroundView(), "_blurView");
        return desktop::ViewNode::of(std::dynamic_pointer_cast<platform::View>(blur))->alpha();
    }

    // The theme's picture behind the folder; null when there is none.
    [[nodiscard]] desktop::ViewNode* backdrop() {
        for (const ViewRef& view : process->screen().folder()->backgroundView()->subviews()) {
            if (std::dynamic_pointer_cast<platform::ImageView>(view) != nullptr) {
                return desktop::ViewNode::of(view);
            }
        }
        return nullptr;
    }

    std::optional<FolderProcess> process;
};

INSTANTIATE_TEST_SUITE_P(Devices, EngineFolder,
                         testing::Combine(testing::Values("phone-667", "pad"),
                                          testing::Values(12, 13)));

TEST_P(EngineFolder, BlurOfThePanelIsGoneWithTheming) {
    start();
    process->openFolder();
    EXPECT_EQ(panelBlur(), 0);
}

TEST_P(EngineFolder, ThemingOffIsTheStockFolder) {
    start({{"enable", false}, {"removeFolderBG", true}});
    process->openFolder();
    EXPECT_EQ(panelBlur(), 1);
    EXPECT_EQ(backdrop(), nullptr);
    EXPECT_TRUE(process->screen().folder()->view()->recognizers().empty());
    ScreenRequest request =
        process->device.request(std::get<0>(GetParam()), std::get<1>(GetParam()), {});
    request.loadEngine = false;
    request.screen = ScreenKind::folder;
    EXPECT_EQ(process->picture(), renderScreen(request).value().picture);
}

TEST_P(EngineFolder, ThemedIconsShowInTheFolder) {
    start();
    process->openFolder();
    const ShownFolder folder = process->screen().shownFolder().value();
    const Picture picture = process->picture();
    for (const ShownIcon& icon : folder.icons) {
        const Pixel middle = pixelAt(picture, {(icon.x + icon.side / 2) / picture.scale,
                                               (icon.y + icon.side / 2) / picture.scale});
        EXPECT_EQ(middle == kGreen, icon.bundleIdentifier == "com.apple.calculator")
            << icon.bundleIdentifier;
    }
}

TEST_P(EngineFolder, ThemesBackdropFadesInAndOut) {
    start();
    FolderProcess& p = *process;
    p.screen().layoutViews();
    ASSERT_TRUE(p.screen().openFolder("", Animated::yes));
    desktop::ViewNode* const picture = backdrop();
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->nodeFrame(), p.screen().context().bounds());
    EXPECT_EQ(picture->shownAlpha(), 0);
    p.screen().advance(0.15);
    EXPECT_NEAR(picture->shownAlpha(), 0.5, 0.01);
    const platform::Point corner{4, 300};
    EXPECT_NE(pixelAt(p.picture(), corner), kMagenta);
    p.screen().advance(0.1501);
    EXPECT_EQ(picture->shownAlpha(), 1);
    EXPECT_EQ(pixelAt(p.picture(), corner), kMagenta);
    p.screen().settle();

    p.screen().tap(p.beside());
    EXPECT_EQ(picture->shownAlpha(), 1);
    p.screen().advance(0.15);
    EXPECT_NEAR(picture->shownAlpha(), 0.5, 0.01);
    p.screen().advance(0.1501);
    EXPECT_EQ(picture->superview(), nullptr) << "the picture goes before the folder has";
    EXPECT_NE(p.screen().folder(), nullptr);
    p.screen().settle();
    EXPECT_EQ(p.screen().folder(), nullptr);

    // The same picture behind the next folder.
    ASSERT_TRUE(p.screen().openFolder("", Animated::yes));
    EXPECT_EQ(backdrop(), picture);
}

TEST_P(EngineFolder, TapOnThePanelClosesWithTheBackgroundRemoved) {
    start({{"removeFolderBG", true}});
    FolderProcess& p = *process;
    p.openFolder();
    EXPECT_EQ(p.screen().folder()->view()->recognizers().size(), 1U);
    p.watch<void, IconController, ObjectRef, bool, FolderCompletion>(
        "SBIconController", "_closeFolderController:animated:withCompletion:");
    p.screen().tap(p.onPanel());
    EXPECT_EQ(p.takeCalls().size(), 1U);
    p.screen().settle();
    EXPECT_EQ(p.screen().folder(), nullptr);
    // Beside the panel both the platform and the added recognizer close it.
    p.openFolder();
    p.screen().tap(p.beside());
    EXPECT_EQ(p.takeCalls().begin()->second, 2);
    p.screen().settle();
    EXPECT_EQ(p.screen().folder(), nullptr);
}

TEST_P(EngineFolder, TapOnThePanelLeavesItOpenOtherwise) {
    start({{"removeFolderBG", false}});
    FolderProcess& p = *process;
    p.openFolder();
    EXPECT_TRUE(p.screen().folder()->view()->recognizers().empty());
    p.screen().tap(p.onPanel());
    p.screen().settle();
    ASSERT_NE(p.screen().folder(), nullptr);
    p.screen().tap(p.beside());
    p.screen().settle();
    EXPECT_EQ(p.screen().folder(), nullptr);
}

TEST_P(EngineFolder, PreferencesReachTheIconsOfTheFolder) {
    start({{"removeLabels", true}, {"removePageDots", true}});
    process->openFolder();
    for (const auto& icon : process->screen().folder()->view()->iconListView()->iconViews()) {
        EXPECT_TRUE(icon->labelView()->isHidden());
    }
}

// Of this process now, bytes.
std::size_t residentMemory() {
    std::ifstream file("/proc/self/statm");
    std::size_t all = 0;
    std::size_t resident = 0;
    file >> all >> resident;
    return resident * 4096;
}

platform::ViewRef windowOf(const HomeScreen& screen) {
    desktop::ViewNode* node = screen.iconView("com.apple.Maps").get();
    platform::ViewRef window;
    while (const ViewRef above = node->superview()) {
        window = above;
        node = desktop::ViewNode::of(above);
    }
    return window;
}

constexpr std::size_t kMostGrowth = std::size_t{12} * 1024 * 1024;

TEST_P(EngineFolder, ThousandLayoutsAddNothing) {
    start({{"enableShadow", true}, {"enableOverlay", true}});
    FolderProcess& p = *process;
    p.openFolder();
    p.screen().layoutViews();
    const std::size_t views = countViews(windowOf(p.screen()));
    for (int i = 0; i < 50; ++i) {
        p.screen().layoutViews();
    }
    const std::size_t before = residentMemory();
    for (int i = 0; i < 1000; ++i) {
        p.screen().layoutViews();
    }
    EXPECT_EQ(countViews(windowOf(p.screen())), views);
    EXPECT_LE(residentMemory(), before + kMostGrowth);
}

TEST_P(EngineFolder, HundredFoldersAddNothing) {
    start({{"removeFolderBG", true}});
    FolderProcess& p = *process;
    const auto round = [&](int i) {
        p.openFolder();
        p.screen().tap(i % 2 == 0 ? p.onPanel() : p.beside());
        p.screen().settle();
        ASSERT_EQ(p.screen().folder(), nullptr);
    };
    for (int i = 0; i < 10; ++i) {
        round(i);
    }
    const std::size_t views = countViews(windowOf(p.screen()));
    const std::size_t before = residentMemory();
    for (int i = 0; i < 100; ++i) {
        round(i);
    }
    EXPECT_EQ(countViews(windowOf(p.screen())), views);
    EXPECT_LE(residentMemory(), before + kMostGrowth);
}

TEST_P(EngineFolder, LauncherOpensTapsAndMovesIt) {
    const ThemedDevice device;
    device.png(kBackdrop, 12, 20, kMagenta);
    const auto [model, system] = GetParam();
    const auto running = RunningScreen::start(device.request(model, system, {}));
    ASSERT_TRUE(running);
    RunningScreen& screen = **running;
    ASSERT_TRUE(screen.act(OpenFolderAction{"folder.utilities"}));
    ASSERT_TRUE(screen.act(AdvanceAction{1}));
    const RenderedScreen open = screen.render().value();
    ASSERT_TRUE(open.folder);
    EXPECT_EQ(open.folder->name, "Utilities");
    EXPECT_EQ(pixelAt(open.picture, {4, 300}), kMagenta);
    EXPECT_EQ(screen.act(TurnFolderPageAction{2}).has_value(), true);
    EXPECT_EQ(screen.render()->folder->page, model == "pad" ? 1 : 2);
    ASSERT_TRUE(screen.act(TapAction{{4, 300}}));
    ASSERT_TRUE(screen.act(AdvanceAction{1}));
    EXPECT_FALSE(screen.render()->folder);
    // What cannot be done is said, and the screen goes on.
    EXPECT_EQ(screen.act(OpenFolderAction{"x"}).error().message, "there is no folder \"x\"");
    EXPECT_EQ(screen.act(PressIconAction{"x"}).error().message, "there is no icon \"x\"");
    EXPECT_EQ(screen.act(TurnFolderPageAction{1}).error().message, "no folder is open");
    EXPECT_TRUE(screen.act(PressIconAction{""}));
    EXPECT_TRUE(screen.render());
    screen.stop();
    EXPECT_FALSE(screen.act(AdvanceAction{1}));
}

TEST_P(EngineFolder, LauncherShowsTheScreenAskedFor) {
    const ThemedDevice device;
    const auto [model, system] = GetParam();
    ScreenRequest request = device.request(model, system, {});
    request.screen = ScreenKind::folder;
    request.item = "folder.social";
    const RenderedScreen folder = renderScreen(request).value();
    ASSERT_TRUE(folder.folder);
    EXPECT_EQ(folder.folder->identifier, "folder.social");
    EXPECT_EQ(folder.page, model == "pad" ? 2 : 1);
    EXPECT_EQ(folder.folder->icons.size(), 5U);
    request.screen = ScreenKind::pressed;
    request.item = "com.apple.Maps";
    const RenderedScreen pressed = renderScreen(request).value();
    EXPECT_FALSE(pressed.folder);
    request.item = "no.such";
    const auto missing = renderScreen(request);
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().message, "there is no icon \"no.such\"");
}

}  // namespace
}  // namespace velmoranth::simulator::engine_folder_test
