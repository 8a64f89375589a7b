// Whole processes: this program starts itself again as a simulated process.
#include "simulator/process/launcher.h"

#include "desktop/files/create_device_root.h"
#include "desktop/notifications/notification_center.h"
#include "simulator/artwork/artwork.h"
#include "simulator/home_screen/apps.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): kill() is POSIX's
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): mkdtemp() is POSIX's

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace velmoranth::simulator::launcher_test {
namespace {

using namespace std::chrono_literals;

class LauncherTest : public testing::Test {
  public:
    void SetUp() override {
        std::string pattern = std::filesystem::temp_directory_path() / "velmoranth-XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        ASSERT_TRUE(desktop::createDeviceRoot(folder + "/device"));
    }

    ~LauncherTest() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    [[nodiscard]] ScreenRequest stock(std::string_view model = "phone", int system = 13) const {
        ScreenRequest request;
        request.device = deviceConfiguration(model, system).value();
        request.deviceFiles = folder + "/device";
        request.loadEngine = false;
        return request;
    }

    [[nodiscard]] ScreenRequest with(const std::string& library, std::string_view model = "phone",
                                     int system = 13) const {
        ScreenRequest request = stock(model, system);
        request.loadEngine = true;
        request.enginePath = library;
        return request;
    }

    std::string folder;
};

std::array<std::uint8_t, 4> pixelAt(const Picture& picture, double x, double y) {
    const std::size_t at =
        (static_cast<std::size_t>(y) * picture.width + static_cast<std::size_t>(x)) * 4;
    std::array<std::uint8_t, 4> pixel{};
    std::copy_n(picture.pixels.begin() + static_cast<std::ptrdiff_t>(at), 4, pixel.begin());
    return pixel;
}

const ShownIcon& iconOf(const RenderedScreen& screen, const std::string& identifier) {
    const auto found =
        std::find_if(screen.icons.begin(), screen.icons.end(),
                     [&](const ShownIcon& icon) { return icon.bundleIdentifier == identifier; });
    EXPECT_NE(found, screen.icons.end()) << identifier;
    return *found;
}

bool isFolder(const ShownIcon& icon) {
    return std::any_of(
        homeScreenItems().begin(), homeScreenItems().end(), [&](const HomeScreenItem& item) {
            return item.folder != nullptr && item.folder->identifier == icon.bundleIdentifier;
        });
}

constexpr std::array<std::uint8_t, 4> kRed{0, 0, 255, 255};
constexpr std::array<std::uint8_t, 4> kBlue{255, 0, 0, 255};

TEST_F(LauncherTest, StockScreenOfEveryDeviceAndSystem) {
    for (const DeviceModel& model : deviceModels()) {
        for (const int system : {12, 13}) {
            const auto screen = renderScreen(stock(model.name, system));
            ASSERT_TRUE(screen) << toLine(screen.error());
            const Picture& picture = screen->picture;
            EXPECT_EQ(picture.width, model.screen.width * model.screen.scale);
            EXPECT_EQ(picture.height, model.screen.height * model.screen.scale);
            ASSERT_EQ(picture.pixels.size(), picture.width * picture.height * 4);
            for (std::size_t i = 3; i < picture.pixels.size(); i += 4) {
                ASSERT_EQ(picture.pixels[i], 255);  // nothing shines through a screen
            }
            EXPECT_EQ(screen->page, 1);
            EXPECT_GT(screen->pageCount, 1);
            EXPECT_TRUE(screen->log.empty()) << screen->log.front();
        }
    }
}

TEST_F(LauncherTest, EveryIconIsAskedForOnceAndDrawnWhereItIsSaidToBe) {
    const auto screen = renderScreen(stock());
    ASSERT_TRUE(screen);
    EXPECT_EQ(screen->icons.size(), 28U);
    for (const ShownIcon& icon : screen->icons) {
        if (isFolder(icon)) {
            continue;
        }
        EXPECT_EQ(icon.stockImageRequests, 1) << icon.bundleIdentifier;
        constexpr int kSide = 180;
        constexpr int kMiddle = kSide / 2;
        ASSERT_EQ(icon.side, kSide);
        if (icon.bundleIdentifier == "com.apple.mobilecal" ||
            icon.bundleIdentifier == "com.apple.mobiletimer") {
            continue;  // shows the day; is put together of a face and hands
        }
        // The icon's middle row, pixel by pixel: 1:1, neither moved nor scaled.
        const std::vector<std::uint8_t> stockIcon = drawStockIcon(icon.bundleIdentifier, kSide);
        for (int x = 8; x < kSide - 8; ++x) {
            const std::size_t at = static_cast<std::size_t>(kMiddle * kSide + x) * 4;
            const auto shown = pixelAt(screen->picture, icon.x + x, icon.y + kMiddle);
            ASSERT_TRUE(std::equal(shown.begin(), shown.end(),
                                   stockIcon.begin() + static_cast<std::ptrdiff_t>(at)))
                << icon.bundleIdentifier << " at " << x;
        }
    }
}

TEST_F(LauncherTest, DockHasLabelsOnTheClassicPhoneOnly) {
    EXPECT_EQ(iconOf(renderScreen(stock("phone-667")).value(), "com.apple.Music").label, "Music");
    EXPECT_EQ(iconOf(renderScreen(stock("phone")).value(), "com.apple.Music").label, "");
}

TEST_F(LauncherTest, PagesShowOtherAppsOverTheSameDock) {
    ScreenRequest request = stock();
    request.page = 2;
    const auto second = renderScreen(request);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->page, 2);
    EXPECT_EQ(iconOf(*second, "com.netflix.Netflix").label, "Netflix");
    EXPECT_EQ(iconOf(*second, "com.apple.Music").stockImageRequests, 1);
    request.page = 99;
    EXPECT_EQ(renderScreen(request)->page, second->pageCount);
    request.page = -1;
    EXPECT_EQ(renderScreen(request)->page, 1);
}

TEST_F(LauncherTest, FolderOpensOnThePageWhereItLies) {
    ScreenRequest request = stock("pad");
    request.screen = ScreenKind::folder;
    request.item = "folder.social";
    const auto screen = renderScreen(request);
    ASSERT_TRUE(screen) << toLine(screen.error());
    EXPECT_EQ(screen->page, 2);
    ASSERT_TRUE(screen->folder);
    EXPECT_EQ(screen->folder->identifier, "folder.social");
}

TEST_F(LauncherTest, SameRequestGivesTheSamePicture) {
    EXPECT_EQ(renderScreen(stock())->picture, renderScreen(stock())->picture);
}

TEST_F(LauncherTest, FreshProcessTakesLittleMemory) {
    const auto screen = renderScreen(stock());
    ASSERT_TRUE(screen);
    EXPECT_GT(screen->peakMemoryBytes, std::size_t{10} * 1024 * 1024);
#if !defined(__SANITIZE_ADDRESS__)
    EXPECT_LE(screen->peakMemoryBytes, std::size_t{200} * 1024 * 1024);
#endif
}

TEST_F(LauncherTest, LibraryReplacesWhatIconsShow) {
    for (const int system : {12, 13}) {
        for (const char* const model : {"phone", "pad"}) {
            const auto screen =
                renderScreen(with(tests::standInLibrary("painting"), model, system));
            ASSERT_TRUE(screen) << toLine(screen.error());
            for (const ShownIcon& icon : screen->icons) {
                // The clock's view does not ask the cache on iOS 13.
                if (isFolder(icon) ||
                    (system == 13 && icon.bundleIdentifier == "com.apple.mobiletimer")) {
                    continue;
                }
                EXPECT_EQ(pixelAt(screen->picture, icon.x, icon.y), kRed);
                EXPECT_EQ(pixelAt(screen->picture, icon.x + icon.side - 1, icon.y + icon.side - 1),
                          kRed);
                // The library asks twice for each view; a pad's dock suggests some apps again.
                const auto views = std::count_if(
                    screen->icons.begin(), screen->icons.end(), [&](const ShownIcon& other) {
                        return other.bundleIdentifier == icon.bundleIdentifier;
                    });
                EXPECT_EQ(icon.stockImageRequests, 2 * views) << icon.bundleIdentifier;
            }
            ASSERT_EQ(screen->log.size(), 1U);
            EXPECT_EQ(screen->log[0].rfind("painting 1", 0), 0U);
        }
    }
}

TEST_F(LauncherTest, LogLinesGoWhereTheyAreWanted) {
    ScreenRequest request = with(tests::standInLibrary("painting"));
    request.logDestination = folder + "/log.txt";
    ASSERT_TRUE(renderScreen(request));
    std::ifstream file(request.logDestination);
    std::string line;
    ASSERT_TRUE(std::getline(file, line));
    EXPECT_EQ(line.rfind("painting", 0), 0U);
    request.logDestination = folder + "/no/such/folder";
    const auto failed = renderScreen(request);
    ASSERT_FALSE(failed);
    EXPECT_EQ(failed.error().path, request.logDestination);
}

TEST_F(LauncherTest, ScreenThatCannotBeDrawnIsAProblem) {
    const std::vector<ScreenDescription> sizes{
        {1e300, 812, 3}, {375, 812, 0}, {375, 812, -1},        {375, 812, 1e6},
        {9000, 812, 1},  {0, 0, 1},     {375, std::nan(""), 3}};
    for (const ScreenDescription& size : sizes) {
        ScreenRequest request = stock();
        request.device.screen = size;
        const auto screen = renderScreen(request);
        ASSERT_FALSE(screen) << size.width << " " << size.height << " " << size.scale;
    }
    ScreenRequest request = stock();
    request.device.screen.width = 9000;
    EXPECT_EQ(toLine(renderScreen(request).error()),
              "a screen of this size or scale cannot be drawn");
    request = stock();
    request.device.date = platform::Date{1e300};
    EXPECT_EQ(toLine(renderScreen(request).error()), "the date is out of range");
}

TEST_F(LauncherTest, FingerLeavesTheDockWhenThePageTurns) {
    const auto running = RunningScreen::start(stock());
    ASSERT_TRUE(running);
    const auto before = (*running)->render();
    ASSERT_TRUE(before);
    ASSERT_TRUE((*running)->act(PressIconAction{"com.apple.Music"}));
    const auto pressed = (*running)->render();
    ASSERT_TRUE(pressed);
    EXPECT_NE(pressed->picture, before->picture);
    (*running)->showPage(2);
    (*running)->showPage(1);
    const auto after = (*running)->render();
    ASSERT_TRUE(after);
    EXPECT_EQ(after->picture, before->picture);
}

TEST_F(LauncherTest, MissingLibraryIsAProblemThatNamesIt) {
    const auto named = renderScreen(with("/no/such/library.so"));
    ASSERT_FALSE(named);
    EXPECT_EQ(toLine(named.error()), "/no/such/library.so: the engine's library cannot be read");
    std::ofstream(folder + "/text.so") << "no library";
    const auto text = renderScreen(with((folder + "/text.so").c_str()));
    ASSERT_FALSE(text);
    EXPECT_NE(text.error().message.find("cannot be loaded"), std::string::npos);
}

TEST_F(LauncherTest, MissingDeviceFolderIsAProblem) {
    ScreenRequest request = stock();
    request.deviceFiles = folder + "/nowhere";
    const auto screen = renderScreen(request);
    ASSERT_FALSE(screen);
    EXPECT_EQ(screen.error().path, request.deviceFiles.folder);
}

TEST_F(LauncherTest, CrashIsOneClearProblem) {
    const auto screen = renderScreen(with(tests::standInLibrary("aborting")));
    ASSERT_FALSE(screen);
    EXPECT_EQ(toLine(screen.error()),
              "the simulated process crashed with SIGABRT after logging: about to break");
}

TEST_F(LauncherTest, EarlyEndIsOneClearProblem) {
    const auto screen = renderScreen(with(tests::standInLibrary("quitting")));
    ASSERT_FALSE(screen);
    EXPECT_EQ(toLine(screen.error()),
              "the simulated process ended early with status 7 before it logged anything");
}

TEST_F(LauncherTest, HangIsEndedAtTheTimeLimit) {
    ScreenRequest request = with(tests::standInLibrary("hanging"));
    request.timeLimit = 300ms;
    const auto begin = std::chrono::steady_clock::now();
    const auto screen = renderScreen(request);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
    ASSERT_FALSE(screen);
    EXPECT_EQ(toLine(screen.error()),
              "the simulated process did not answer within 0.3 s before it logged anything");
}

TEST_F(LauncherTest, RunningScreenIsDrawnAgainAndTurnsItsPages) {
    auto running = RunningScreen::start(stock());
    ASSERT_TRUE(running) << toLine(running.error());
    RunningScreen& screen = **running;
    const auto first = screen.render();
    ASSERT_TRUE(first);
    ASSERT_TRUE(screen.showPage(2));
    const auto second = screen.render();
    ASSERT_TRUE(second);
    EXPECT_EQ(second->page, 2);
    EXPECT_NE(first->picture, second->picture);
    ASSERT_TRUE(screen.showPage(1));
    const auto third = screen.render();
    ASSERT_TRUE(third);
    EXPECT_EQ(first->picture, third->picture);
    EXPECT_EQ(iconOf(*third, "com.apple.Music").stockImageRequests, 3);
}

TEST_F(LauncherTest, StoppedScreenLeavesNoProcessAndSaysSo) {
    auto running = RunningScreen::start(stock());
    ASSERT_TRUE(running);
    const int pid = (*running)->processId();
    ASSERT_GT(pid, 0);
    (*running)->stop();
    (*running)->stop();
    EXPECT_EQ((*running)->processId(), 0);
    EXPECT_EQ(kill(pid, 0), -1);
    EXPECT_FALSE((*running)->showPage(1));
    EXPECT_FALSE((*running)->render());
}

TEST_F(LauncherTest, ScreenKilledFromOutsideIsAProblem) {
    auto running = RunningScreen::start(stock());
    ASSERT_TRUE(running);
    kill((*running)->processId(), SIGKILL);
    const auto screen = (*running)->render();
    ASSERT_FALSE(screen);
    EXPECT_EQ(screen.error().message,
              "the simulated process crashed with SIGKILL before it logged anything");
}

TEST_F(LauncherTest, NoNoticeInTimeLeavesTheScreenRunning) {
    auto running = RunningScreen::start(stock());
    ASSERT_TRUE(running);
    EXPECT_FALSE((*running)->nextPicture(50ms));
    EXPECT_TRUE((*running)->render());
}

TEST_F(LauncherTest, NoticeReachesTheLibraryAndShowsInTheNextPicture) {
    auto running = RunningScreen::start(with(tests::standInLibrary("painting")));
    ASSERT_TRUE(running) << toLine(running.error());
    RunningScreen& screen = **running;
    const auto before = screen.render();
    ASSERT_TRUE(before);
    const ShownIcon icon = before->icons.front();
    EXPECT_EQ(pixelAt(before->picture, icon.x, icon.y), kRed);

    const auto root = desktop::DeviceRoot::open(folder + "/device");
    ASSERT_TRUE(root);
    ASSERT_EQ(desktop::postToProcesses(**root, "test.other").value(), 1);  // nobody listens
    ASSERT_EQ(desktop::postToProcesses(**root, "test.blue").value(), 1);
    const auto after = screen.nextPicture(5s);
    ASSERT_TRUE(after) << toLine(after.error());
    EXPECT_EQ(pixelAt(after->picture, icon.x, icon.y), kBlue);
    EXPECT_EQ(after->log, std::vector<std::string>{"heard test.blue"});
    // That notice has been shown.
    EXPECT_FALSE(screen.nextPicture(50ms));
}

TEST_F(LauncherTest, WhatAProcessNotesBeforeItEndsIsThere) {
    ScreenRequest request = with(tests::standInLibrary("painting"));
    request.isRecorded = true;
    auto running = RunningScreen::start(request);
    ASSERT_TRUE(running) << toLine(running.error());
    EXPECT_FALSE((*running)->takeRecord().empty());
    const auto root = desktop::DeviceRoot::open(folder + "/device");
    ASSERT_EQ(desktop::postToProcesses(**root, "test.end").value(), 1);
    const auto screen = (*running)->nextPicture(5s);
    ASSERT_FALSE(screen);
    EXPECT_EQ(screen.error().message.rfind("the simulated process crashed with SIGABRT", 0), 0U);
    const record::Record record = (*running)->takeRecord();
    ASSERT_FALSE(record.empty());
    EXPECT_EQ(record.back().subject, "/asked/last") << textOf(record);
    EXPECT_EQ(record.front().kind, record::EntryKind::callback) << textOf(record);
}

TEST(SimulatedProcess, ArgumentAloneStartsNothing) {
    std::array<char, 24> argument{"--simulated-process"};
    std::array<char, 8> name{"program"};
    std::array<char*, 2> arguments{name.data(), argument.data()};
    EXPECT_TRUE(isSimulatedProcess(2, arguments.data()));
    EXPECT_FALSE(isSimulatedProcess(1, arguments.data()));
    EXPECT_EQ(simulatedProcessMain(2, arguments.data()), 2);
}

}  // namespace
}  // namespace velmoranth::simulator::launcher_test
