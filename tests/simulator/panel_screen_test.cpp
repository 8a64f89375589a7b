#include "simulator/screens/panel_screen.h"

#include "desktop/files/file_manager.h"
#include "desktop/views/spring_timing.h"
#include "platform/platform.h"
#include "simulator/process/process.h"
#include "simulator/screens/settings_screen.h"
#include "themed_device.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace velmoranth::simulator::panel_screen_test {
namespace {

using platform::NullableString;
using platform::Point;
using platform::Rect;
using platform::ViewRef;

constexpr const char* kClass = "VelmoranthFileManager";
constexpr const char* kSaved = "device/User/Library/VelMoranth/UserSettings/";

struct Device {
    std::string model;
    int system;

    friend void PrintTo(const Device& device, std::ostream* stream) {
        *stream << device.model << ' ' << device.system;
    }
};

// A panel in the test's own process.
class PanelProcess {
  public:
    PanelProcess(const Device& device, ScreenKind kind, bool engine = true,
                 const std::function<void(const ThemedDevice&)>& prepare = {}) {
        ScreenRequest request = files.request(device.model, device.system, {});
        request.screen = kind;
        request.loadEngine = engine;
        if (device.model == "pad") {
            EXPECT_TRUE(turnToLandscape(request.device));
        }
        if (prepare) {
            prepare(files);
        }
        configuration = request.device;
        auto started = SimulatedProcess::start(
            request, [this](const std::string& line) { log.push_back(line); });
        if (!started) {
            throw std::runtime_error(toLine(started.error()));
        }
        process = std::move(*started);
    }

    PanelScreen& screen() { return dynamic_cast<PanelScreen&>(process->screen()); }

    Picture picture() {
        screen().layoutViews();
        const auto drawn = screen().draw();
        const desktop::PixelView pixels = drawn->pixels();
        Picture picture{pixels.width, pixels.height, configuration.screen.scale, {}};
        for (std::size_t y = 0; y < pixels.height; ++y) {
            picture.pixels.insert(picture.pixels.end(), pixels.row(y),
                                  pixels.row(y) + pixels.width * 4);
        }
        return picture;
    }

    [[nodiscard]] const AlertView* alert() {
        screen().layoutViews();
        return screen().alert();
    }

    void tapRow(PanelTask task) { screen().tap(middleOf(panelRow(task, configuration))); }

    [[nodiscard]] static Point middleOf(const Rect& rect) {
        return {rect.origin.x + rect.size.width / 2, rect.origin.y + rect.size.height / 2};
    }

    // The engine's image view, in front of everything; nil when it is not there.
    [[nodiscard]] desktop::ViewNode* successView() {
        const std::vector<ViewRef> views = screen().view()->subviews();
        const bool isImage =
            std::dynamic_pointer_cast<platform::ImageView>(views.back()) != nullptr;
        return isImage ? desktop::ViewNode::of(views.back()) : nullptr;
    }

    [[nodiscard]] Rect grownFrame() const {
        return {{configuration.screen.width * 0.5 - 40, configuration.screen.height * 0.5 - 40},
                {200, 200}};
    }

    [[nodiscard]] bool hasTemporaryFile() const {
        return std::filesystem::exists(files.folder / "device/var/tmp/velmoranth-success.png");
    }

    ThemedDevice files;
    DeviceConfiguration configuration;
    std::vector<std::string> log;
    std::unique_ptr<SimulatedProcess> process;
};

Pixel pixelOf(const Picture& picture, std::size_t column, std::size_t row) {
    Pixel pixel{};
    std::copy_n(
        picture.pixels.begin() + static_cast<std::ptrdiff_t>((row * picture.width + column) * 4), 4,
        pixel.begin());
    return pixel;
}

Pixel pixelOf(const Picture& picture, const Point& point) {
    return pixelOf(picture, static_cast<std::size_t>(std::lround(point.x * picture.scale)),
                   static_cast<std::size_t>(std::lround(point.y * picture.scale)));
}

// In that part of the screen, points.
std::size_t countIn(const Picture& picture, const Rect& rect,
                    const std::function<bool(const Pixel&)>& counts) {
    std::size_t found = 0;
    const double step = 1 / picture.scale;
    for (double y = rect.origin.y; y < rect.origin.y + rect.size.height; y += step) {
        for (double x = rect.origin.x; x < rect.origin.x + rect.size.width; x += step) {
            found += counts(pixelOf(picture, {x, y})) ? 1 : 0;
        }
    }
    return found;
}

bool isTint(const Pixel& pixel) {
    return pixel[0] > 230 && pixel[2] < 60;
}

bool isInk(const Pixel& pixel) {
    return pixel[0] < 80 && pixel[1] < 80 && pixel[2] < 80;
}

// The pixels in which two pictures differ: the rectangle around them, in pixels.
struct Difference {
    std::size_t left = SIZE_MAX, top = SIZE_MAX, right = 0, bottom = 0;

    friend bool operator==(const Difference&, const Difference&) = default;
};

Difference difference(const Picture& a, const Picture& b) {
    Difference result;
    for (std::size_t y = 0; y < a.height; ++y) {
        for (std::size_t x = 0; x < a.width; ++x) {
            if (pixelOf(a, x, y) != pixelOf(b, x, y)) {
                result.left = std::min(result.left, x);
                result.top = std::min(result.top, y);
                result.right = std::max(result.right, x + 1);
                result.bottom = std::max(result.bottom, y + 1);
            }
        }
    }
    return result;
}

class Panel : public testing::TestWithParam<Device> {};

INSTANTIATE_TEST_SUITE_P(Devices, Panel,
                         testing::Values(Device{"phone", 12}, Device{"phone-667", 13},
                                         Device{"pad", 13}),
                         [](const testing::TestParamInfo<Device>& each) {
                             std::string name =
                                 each.param.model + std::to_string(each.param.system);
                             std::erase(name, '-');
                             return name;
                         });

TEST_P(Panel, TheEnginesAlertLiesOverTheDimmedPanel) {
    PanelProcess panel(GetParam(), ScreenKind::panelError);
    const Picture picture = panel.picture();
    ASSERT_NE(panel.alert(), nullptr);
    const auto root = std::dynamic_pointer_cast<desktop::DesktopViewController>(
        platform::platform().application.keyWindow()->rootViewController());
    const auto presented =
        std::dynamic_pointer_cast<desktop::DesktopAlertController>(root->presented());
    EXPECT_EQ(presented->title(), "ERROR");
    EXPECT_EQ(presented->message(), "“ Night com.qor.velmoranthprefs.plist” couldn’t be removed.");
    ASSERT_EQ(panel.alert()->buttons().size(), 1U);
    EXPECT_EQ(panel.alert()->buttons()[0].action->title(), "OK");

    const Rect card = panel.alert()->card();
    const Point middle = PanelProcess::middleOf(card);
    EXPECT_NEAR(middle.x, panel.configuration.screen.width / 2, 0.5);
    EXPECT_NEAR(middle.y, panel.configuration.screen.height / 2, 0.5);
    // Title, a message of two lines, and the button.
    const Rect text{card.origin, {card.size.width, card.size.height - 44}};
    const Rect button = panel.alert()->buttons()[0].frame;
    EXPECT_EQ(button.size.width, 270);
    EXPECT_EQ(button.size.height, 44);
    EXPECT_GT(countIn(picture, text, isInk), 500U);
    EXPECT_EQ(countIn(picture, text, isTint), 0U);
    EXPECT_GT(countIn(picture, button, isTint), 100U);
    // The panel shows beside the card's corners.
    EXPECT_EQ(
        countIn(picture, {{button.origin.x + 15, button.origin.y}, {button.size.width - 30, 43}},
                isInk),
        0U);

    root->dismiss();
    const Picture clear = panel.picture();
    // Every pixel beside the card is darker than without the alert, by one share.
    const double share = GetParam().system < 13 ? 0.6 : 0.8;
    for (const Point& point : {Point{4, 60}, Point{30, 200}, Point{4, card.origin.y - 4}}) {
        EXPECT_NEAR(pixelOf(picture, point)[1], pixelOf(clear, point)[1] * share, 1);
    }
}

TEST_P(Panel, WithoutTheEngineNothingHappens) {
    PanelProcess error(GetParam(), ScreenKind::panelError, false);
    EXPECT_EQ(error.alert(), nullptr);
    error.tapRow(PanelTask::deleteSettings);
    error.tapRow(PanelTask::applySettings);
    EXPECT_EQ(error.alert(), nullptr);
    EXPECT_EQ(error.successView(), nullptr);
    EXPECT_FALSE(error.hasTemporaryFile());
    EXPECT_EQ(error.log, std::vector<std::string>{});
}

TEST_P(Panel, OkTakesTheAlertAwayAndRunsItsHandler) {
    PanelProcess panel(GetParam(), ScreenKind::panelError);
    ASSERT_NE(panel.alert(), nullptr);
    const Rect card = panel.alert()->card();
    const Point ok = PanelProcess::middleOf(panel.alert()->buttons()[0].frame);
    panel.screen().tap({card.origin.x - 2, ok.y});
    panel.screen().tap({ok.x, card.origin.y + 5});
    panel.tapRow(PanelTask::applySettings);
    EXPECT_NE(panel.alert(), nullptr);
    panel.screen().tap(ok);
    EXPECT_EQ(panel.alert(), nullptr);
    EXPECT_EQ(panel.successView(), nullptr);

    int chosen = 0;
    const auto alert = platform::platform().alerts.alertControllerWithTitleMessagePreferredStyle(
        "T", std::nullopt, platform::AlertControllerStyle::alert);
    alert->addAction(platform::platform().alerts.actionWithTitleStyleHandler(
        "One", platform::AlertActionStyle::cancel, [&] {
            ++chosen;
            // It has gone by now.
            EXPECT_EQ(panel.alert(), nullptr);
        }));
    const Picture before = panel.picture();
    platform::platform()
        .application.keyWindow()
        ->rootViewController()
        ->presentViewControllerAnimated(alert, true);
    ASSERT_NE(panel.alert(), nullptr);
    panel.screen().tap(PanelProcess::middleOf(panel.alert()->buttons()[0].frame));
    EXPECT_EQ(chosen, 1);
    EXPECT_EQ(panel.picture(), before);
}

TEST_P(Panel, RowsSendTheirMessages) {
    PanelProcess panel(GetParam(), ScreenKind::panelSuccess);
    desktop::Runtime& runtime = panel.process->runtime();
    std::vector<std::string> sent;
    const platform::ClassRef metaclass = runtime.getMetaclass(runtime.getClass(kClass));
    runtime.hookMessageEx(
        metaclass, "deleteFileFromDevice:fromDir:",
        platform::makeImplementation(
            std::function<bool(platform::Class&, NullableString, NullableString)>(
                [&](platform::Class&, const NullableString& path, const NullableString& folder) {
                    sent.push_back(path.value_or("nil") + " | " + folder.value_or("nil"));
                    return true;
                })),
        nullptr);
    runtime.hookMessageEx(
        metaclass, "ShowSuccesView:",
        platform::makeImplementation(std::function<void(platform::Class&, NullableString)>(
            [&](platform::Class&, const NullableString& path) {
                sent.push_back(path.value_or("nil"));
                EXPECT_TRUE(panel.hasTemporaryFile());
            })),
        nullptr);
    panel.tapRow(PanelTask::deleteSettings);
    panel.tapRow(PanelTask::applySettings);
    panel.screen().tap({5, panel.configuration.screen.height - 5});
    EXPECT_EQ(sent,
              (std::vector<std::string>{
                  "/User/Library/VelMoranth/UserSettings/ Night com.qor.velmoranthprefs.plist | "
                  "/User/Library/VelMoranth/UserSettings",
                  "/var/tmp/velmoranth-success.png"}));
    EXPECT_FALSE(panel.hasTemporaryFile());
}

TEST_P(Panel, TheSuccessImageGrowsFromItsCornerAndGoes) {
    PanelProcess panel(GetParam(), ScreenKind::panelSuccess);
    const Picture grown = panel.picture();
    ASSERT_NE(panel.successView(), nullptr);
    EXPECT_EQ(panel.successView()->shownFrame(), panel.grownFrame());
    EXPECT_NE(panel.successView()->contents(), nullptr);
    panel.screen().advance(0.299);
    EXPECT_NE(panel.successView(), nullptr);
    panel.screen().advance(0.002);
    EXPECT_EQ(panel.successView(), nullptr);
    const Picture gone = panel.picture();
    // To the pixel: 40 points left of and above the middle, 200 points a side.
    const Rect frame = panel.grownFrame();
    const auto first = [&](double points) {
        return static_cast<std::size_t>(std::floor(points * grown.scale));
    };
    const auto end = [&](double points) {
        return static_cast<std::size_t>(std::ceil((points + 200) * grown.scale));
    };
    EXPECT_EQ(difference(grown, gone), (Difference{first(frame.origin.x), first(frame.origin.y),
                                                   end(frame.origin.x), end(frame.origin.y)}));
    EXPECT_EQ(pixelOf(grown, {frame.origin.x + 100, frame.origin.y + 44}), kWhite);

    // Again, by its row: on its way it is wider than at its end.
    panel.tapRow(PanelTask::applySettings);
    const auto spring = desktop::SpringTiming::create(0.5, 0.5, 0.3);
    double widest = 0;
    for (int step = 1; step < 30; ++step) {
        panel.screen().advance(0.01);
        const Rect shown = panel.successView()->shownFrame();
        EXPECT_NEAR(shown.size.width, 200 * spring.at(step / 30.0), 1e-6);
        EXPECT_EQ(shown.origin, frame.origin);
        widest = std::max(widest, shown.size.width);
    }
    EXPECT_GT(widest, 230);
    panel.screen().advance(0.32);
    EXPECT_EQ(panel.picture(), gone);
    EXPECT_FALSE(panel.hasTemporaryFile());
}

TEST_P(Panel, SwitchesStandAsThePreferencesSay) {
    const auto pictureWith = [&](const platform::Dictionary& preferences) {
        ThemedDevice files;
        ScreenRequest request = files.request(GetParam().model, GetParam().system, preferences);
        request.screen = ScreenKind::panelError;
        request.loadEngine = false;
        auto process = SimulatedProcess::start(request, [](const std::string&) {});
        Screen& screen = (*process)->screen();
        screen.layoutViews();
        const auto drawn = screen.draw();
        // Beside the list, whose tiles are green too.
        const double left = settingsListWidth(request.device);
        return countIn(
            Picture{drawn->pixels().width, drawn->pixels().height, request.device.screen.scale,
                    platform::Data(drawn->pixels().row(0),
                                   drawn->pixels().row(0) +
                                       drawn->pixels().width * drawn->pixels().height * 4)},
            {{left, 0}, {request.device.screen.width - left - 1, 660}},
            [](const Pixel& pixel) { return pixel[1] > 190 && pixel[2] < 110; });
    };
    const std::size_t one = pictureWith({{"enable", true}});
    EXPECT_GT(one, 500U);
    EXPECT_EQ(pictureWith({{"enable", false}}), 0U);
    EXPECT_NEAR(static_cast<double>(
                    pictureWith({{"enable", true}, {"enableOverlay", 1}, {"removeDock", "YES"}})),
                static_cast<double>(3 * one), 30);
}

TEST(PanelScreen, SavedSettingsOfTheDeviceStay) {
    const std::string first = std::string(kSaved) + " Night com.qor.velmoranthprefs.plist";
    const std::string second = std::string(kSaved) + " Night 2 com.qor.velmoranthprefs.plist";
    PanelProcess panel({"phone-667", 13}, ScreenKind::panelError, true,
                       [&](const ThemedDevice& files) {
                           files.folder.file(first, "a");
                           files.folder.file(second, "b");
                       });
    ASSERT_NE(panel.alert(), nullptr);
    EXPECT_EQ(panel.files.folder.contents(first), "a");
    EXPECT_EQ(panel.files.folder.contents(second), "b");
}

TEST(PanelScreen, ATemporaryFolderThatCannotBeWrittenGivesAnEmptyImage) {
    PanelProcess panel({"phone-667", 13}, ScreenKind::panelSuccess, true,
                       [](const ThemedDevice& files) {
                           std::filesystem::remove_all(files.folder / "device/private/var/tmp");
                           files.folder.file("device/private/var/tmp", "a file");
                       });
    ASSERT_NE(panel.successView(), nullptr);
    EXPECT_EQ(panel.successView()->contents(), nullptr);
    EXPECT_EQ(panel.successView()->shownFrame(), panel.grownFrame());
    const Picture with = panel.picture();
    panel.screen().advance(1);
    EXPECT_EQ(panel.successView(), nullptr);
    EXPECT_EQ(panel.picture(), with);
}

TEST(PanelScreen, AFileOfTheDevicesOwnStays) {
    PanelProcess panel({"phone-667", 13}, ScreenKind::panelSuccess, true,
                       [](const ThemedDevice& files) {
                           files.folder.file("device/private/var/tmp/velmoranth-success.png", "x");
                       });
    EXPECT_EQ(panel.files.folder.contents("device/private/var/tmp/velmoranth-success.png"), "x");
    EXPECT_EQ(panel.successView()->contents(), nullptr);
}

TEST(MainQueue, ABlockRunsWhenTheScreensClockIsThere) {
    PanelProcess panel({"phone-667", 13}, ScreenKind::panelError, false);
    int ran = 0;
    platform::platform().libSystem.dispatchAfterOnMainQueue(600'000'000, [&ran] { ++ran; });
    EXPECT_EQ(ran, 0);
    panel.screen().advance(0.599);
    EXPECT_EQ(ran, 0);
    panel.screen().advance(0.0011);
    EXPECT_EQ(ran, 1);
    panel.screen().advance(10);
    EXPECT_EQ(ran, 1);
}

std::vector<std::string> screenNames() {
    std::vector<std::string> names;
    for (const ScreenDefinition& screen : screenDefinitions()) {
        names.emplace_back(screen.name);
    }
    return names;
}

class KeyWindow : public testing::TestWithParam<std::string> {};

INSTANTIATE_TEST_SUITE_P(Screens, KeyWindow, testing::ValuesIn(screenNames()),
                         [](const testing::TestParamInfo<std::string>& each) {
                             std::string name = each.param;
                             std::erase(name, '-');
                             return name;
                         });

TEST_P(KeyWindow, HasTheScreensViewInItsRootViewController) {
    const ThemedDevice files;
    ScreenRequest request = files.request("phone", 13, {});
    request.screen = screenKindNamed(GetParam()).value();
    request.loadEngine = false;
    const auto process = SimulatedProcess::start(request, [](const std::string&) {});
    ASSERT_TRUE(process);
    const platform::WindowRef window = platform::platform().application.keyWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->frame().size.width, 375);
    const platform::ViewControllerRef root = window->rootViewController();
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->view(), (*process)->screen().view());
    EXPECT_EQ(root->view()->frame().size.height, 812);
    // What is added to it is seen.
    (*process)->screen().layoutViews();
    const platform::ViewRef box = platform::platform().views.viewWithFrame({{100, 300}, {9, 9}});
    box->setBackgroundColor({1, 0, 1, 1});
    root->view()->addSubview(box);
    const auto drawn = (*process)->screen().draw();
    const std::uint8_t* const at = drawn->pixels().row(304 * 3) + std::size_t{104} * 3 * 4;
    EXPECT_EQ((Pixel{at[0], at[1], at[2], at[3]}), kMagenta);
}

}  // namespace
}  // namespace velmoranth::simulator::panel_screen_test
