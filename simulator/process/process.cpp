#include "simulator/process/process.h"

#include "desktop/files/device_root.h"
#include "desktop/services/services.h"
#include "simulator/app_context.h"
#include "simulator/artwork/artwork.h"
#include "simulator/home_screen/folder_classes.h"
#include "simulator/home_screen/icon_controller.h"
#include "simulator/home_screen/platform_classes.h"
#include "simulator/process/loader.h"
#include "simulator/screens/notification_screen.h"
#include "simulator/screens/screens.h"
#include "simulator/screens/settings_screen.h"
#include "simulator/screens/switcher_screen.h"
#include "simulator/screens/today_screen.h"
#include "simulator/screens/weather_screen.h"
#include "simulator/toolkit/base_classes.h"
#include "simulator/toolkit/feedback_classes.h"
#include "simulator/toolkit/stock_images.h"
#include "simulator/toolkit/toolkit_classes.h"

#include <cmath>
#include <fstream>
#include <string_view>
#include <utility>

namespace velmoranth::simulator {
namespace {

desktop::DeviceDescription descriptionOf(const DeviceConfiguration& device) {
    const SystemVersion& system = device.system;
    return {
        .system = {system.major, system.minor, system.patch},
        .coreFoundationVersion = system.coreFoundationVersion,
        .machine = device.machine,
        .idiom = device.kind == DeviceKind::pad ? desktop::InterfaceIdiom::pad
                                                : desktop::InterfaceIdiom::phone,
        .orientation = static_cast<int>(device.orientation),
        .screenScale = device.screen.scale,
        .screenSize = {device.screen.width, device.screen.height},
        .siblings = device.exactFiles ? desktop::ScaledSiblings::off : desktop::ScaledSiblings::on,
        .dates = {.locale = device.locale, .date = device.date}};
}

std::string_view mainBundleOf(ProcessKind process) {
    switch (process) {
        case ProcessKind::homeScreen:
            return kHomeScreenBundle;
        case ProcessKind::settings:
            return kPreferencesBundle;
        case ProcessKind::weather:
            return kWeatherAppBundle;
        case ProcessKind::app:
        case ProcessKind::everything:
            break;
    }
    return kAppBundle;
}

desktop::Result<void> showOnHomeScreen(HomeScreen& screen, const ScreenRequest& request) {
    screen.showPage(request.page);
    if (request.screen == ScreenKind::folder) {
        auto opened = screen.openFolder(request.item, Animated::no);
        if (opened) {
            screen.folder()->view()->showPage(request.folderPage);
            // What others animate with it.
            screen.settle();
        }
        return opened;
    }
    if (request.screen == ScreenKind::pressed) {
        // Views have been laid out before a finger reaches them.
        screen.layoutViews();
        return screen.pressIcon(request.item);
    }
    return {};
}

// Sizes and times that no arithmetic of a screen goes wrong with.
desktop::Result<void> checkDrawable(const DeviceConfiguration& device) {
    constexpr double kGreatestScale = 4;
    constexpr double kFarthestDate = 1e11;  // seconds: three thousand years
    const ScreenDescription& screen = device.screen;
    const auto isLength = [&](double points) {
        return points >= 1 && points * screen.scale <= kMaximumWallpaperPixels;
    };
    if (!(screen.scale >= 1 && screen.scale <= kGreatestScale) || !isLength(screen.width) ||
        !isLength(screen.height)) {
        return tl::unexpected(desktop::Problem{"a screen of this size or scale cannot be drawn"});
    }
    if (device.date && !(std::abs(device.date->secondsSinceReferenceDate) <= kFarthestDate)) {
        return tl::unexpected(desktop::Problem{"the date is out of range"});
    }
    return {};
}

}  // namespace

// In the order in which the members need each other.
struct SimulatedProcess::State {
    State(const ScreenRequest& request, LogLine logLine,
          const std::shared_ptr<const desktop::DeviceRoot>& root);

    // The classes that such a process has.
    void registerClasses(ProcessKind process);
    [[nodiscard]] AppContext appContext();
    [[nodiscard]] std::unique_ptr<HomeScreen> makeHomeScreen();
    // The screen asked for, when it is none of the home screen itself.
    [[nodiscard]] std::unique_ptr<Screen> makeScreen(ScreenKind kind);
    // Makes the screen's view the key window's.
    void showScreen();

    const DeviceConfiguration device;
    desktop::Services services;
    StockImages stockImages;
    ToolkitImages toolkit;
    const std::shared_ptr<IconController> iconController;
    // After the classes and the engine.
    std::unique_ptr<Screen> screen;
    HomeScreen* homeScreen = nullptr;  // the screen, when it is that
};

SimulatedProcess::State::State(const ScreenRequest& request, LogLine logLine,
                               const std::shared_ptr<const desktop::DeviceRoot>& root)
    : device(request.device),
      services(root, descriptionOf(device), std::move(logLine)),
      stockImages(services.images()),
      toolkit(device, services.images(), root, mainBundleOf(definitionOf(request.screen).process)),
      iconController(std::make_shared<IconController>(services.runtime())) {}

void SimulatedProcess::State::registerClasses(ProcessKind process) {
    desktop::Runtime& runtime = services.runtime();
    const HomeScreenMetrics& metrics = homeScreenMetrics(device.kind, device.screen);
    registerBaseClasses(device.system, {.runtime = runtime,
                                        .stockImages = stockImages,
                                        .iconSide = metrics.iconSide,
                                        .screenScale = device.screen.scale});
    registerToolkitClasses(device.system, {.runtime = runtime, .images = toolkit});
    const auto is = [process](ProcessKind kind) {
        return process == kind || process == ProcessKind::everything;
    };
    // The platform's own sounds are not ours to play, so nobody is told of them.
    registerFeedbackClasses(
        runtime, nullptr,
        is(ProcessKind::homeScreen) ? FeedbackProcess::homeScreen : FeedbackProcess::other);
    if (is(ProcessKind::homeScreen)) {
        registerPlatformClasses(device.system,
                                {.runtime = runtime,
                                 .stockImages = stockImages,
                                 .iconImageCache = std::make_shared<IconImageCache>(),
                                 .iconSide = metrics.iconSide,
                                 .pageDotSide = metrics.pageDotSide,
                                 .screenScale = device.screen.scale,
                                 .images = services.images(),
                                 .toolkit = toolkit,
                                 .dates = services.dates(),
                                 .date = device.date});
        registerFolderClasses(device.system, runtime, iconController);
        registerTodayClasses(appContext());
        registerSwitcherClasses(appContext());
        registerNotificationClasses(appContext());
    }
    if (is(ProcessKind::settings)) {
        registerSettingsClasses(appContext());
    }
    if (is(ProcessKind::weather)) {
        registerWeatherClasses(appContext());
    }
}

AppContext SimulatedProcess::State::appContext() {
    return {device,  services.runtime(),    services.images(), stockImages, services.views(),
            toolkit, services.application()};
}

std::unique_ptr<HomeScreen> SimulatedProcess::State::makeHomeScreen() {
    return std::make_unique<HomeScreen>(
        device, HomeScreen::Services{services.runtime(), services.images(), stockImages,
                                     services.views(), *iconController});
}

std::unique_ptr<Screen> SimulatedProcess::State::makeScreen(ScreenKind kind) {
    switch (kind) {
        case ScreenKind::controls:
            return makeControlsScreen(appContext());
        case ScreenKind::gallery:
            return makeGalleryScreen(appContext());
        case ScreenKind::settings:
            return makeSettingsScreen(appContext());
        case ScreenKind::panelError:
        case ScreenKind::panelSuccess:
            return makePanelScreen(appContext(), kind);
        case ScreenKind::weather:
            return makeWeatherScreen(appContext());
        case ScreenKind::today:
            return makeTodayScreen(appContext(), makeHomeScreen());
        case ScreenKind::switcher:
            return makeSwitcherScreen(appContext(), makeHomeScreen());
        case ScreenKind::notification:
            return makeNotificationScreen(appContext(), makeHomeScreen());
        default:
            return nullptr;
    }
}

void SimulatedProcess::State::showScreen() {
    const auto window = std::make_shared<desktop::DesktopWindow>(services.screen().bounds());
    window->setRootViewController(std::make_shared<desktop::DesktopViewController>(screen->view()));
    services.application().setKeyWindow(window);
    screen->didAppear();
}

desktop::Result<std::unique_ptr<SimulatedProcess>> SimulatedProcess::start(
    const ScreenRequest& request, LogLine logLine) {
    if (auto drawable = checkDrawable(request.device); !drawable) {
        return tl::unexpected(std::move(drawable.error()));
    }
    auto root = desktop::DeviceRoot::open(request.rootFolder);
    if (!root) {
        return tl::unexpected(std::move(root.error()));
    }
    auto state = std::make_unique<State>(request, std::move(logLine), std::move(*root));
    if (auto listening = state->services.listenForNotifications(); !listening) {
        return tl::unexpected(std::move(listening.error()));
    }
    state->services.becomePlatform();
    state->registerClasses(definitionOf(request.screen).process);
    if (request.loadEngine) {
        auto path = request.enginePath.empty() ? findEngine()
                                               : desktop::Result<std::string>(request.enginePath);
        if (!path) {
            return tl::unexpected(std::move(path.error()));
        }
        if (auto loaded = simulator::loadEngine(*path); !loaded) {
            return tl::unexpected(std::move(loaded.error()));
        }
    }
    state->screen = state->makeScreen(request.screen);
    if (state->screen == nullptr) {
        std::unique_ptr<HomeScreen> home = state->makeHomeScreen();
        if (auto shown = showOnHomeScreen(*home, request); !shown) {
            return tl::unexpected(std::move(shown.error()));
        }
        state->homeScreen = home.get();
        state->screen = std::move(home);
    } else {
        state->screen->showPage(request.page);
    }
    state->showScreen();
    return std::unique_ptr<SimulatedProcess>(new SimulatedProcess(std::move(state)));
}

SimulatedProcess::SimulatedProcess(std::unique_ptr<State> state) : state_(std::move(state)) {}

SimulatedProcess::~SimulatedProcess() = default;

Screen& SimulatedProcess::screen() {
    return *state_->screen;
}

HomeScreen* SimulatedProcess::homeScreen() {
    return state_->homeScreen;
}

desktop::Runtime& SimulatedProcess::runtime() {
    return state_->services.runtime();
}

int SimulatedProcess::notificationDescriptor() const {
    return state_->services.notifications().descriptor();
}

bool SimulatedProcess::deliverNotifications() {
    const bool any = state_->services.notifications().deliverPending() > 0;
    if (any) {
        state_->screen->notificationsWereDelivered();
    }
    return any;
}

std::size_t peakMemoryBytes() {
    // Not getrusage: its figure starts with that of the program that started this one.
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        std::size_t kibibytes = 0;
        if (word == "VmHWM:" && status >> kibibytes) {
            return kibibytes * 1024;
        }
    }
    return 0;
}

}  // namespace velmoranth::simulator
