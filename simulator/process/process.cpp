#include "simulator/process/process.h"

#include "desktop/files/device_root.h"
#include "desktop/services/services.h"
#include "simulator/artwork/artwork.h"
#include "simulator/home_screen/installed_apps.h"
#include "simulator/home_screen/platform_classes.h"
#include "simulator/home_screen/wallpaper.h"
#include "simulator/process/loader.h"
#include "simulator/process/protocol.h"
#include "simulator/process/recording.h"
#include "simulator/screen_context.h"
#include "simulator/screens/controls_screen.h"
#include "simulator/screens/gallery_screen.h"
#include "simulator/screens/icons_screen.h"
#include "simulator/screens/notification_screen.h"
#include "simulator/screens/panel_screen.h"
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

ProcessKind processOf(const ScreenRequest& request) {
    return request.withoutScreen.value_or(definitionOf(request.screen).process);
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
          const std::shared_ptr<const desktop::DeviceRoot>& root,
          std::shared_ptr<desktop::DesktopBitmapImage> wallpaper);

    // The classes that such a process has.
    void registerClasses(ProcessKind process);
    // The screen asked for, when it is none of the home screen itself.
    [[nodiscard]] std::unique_ptr<Screen> makeScreen(ScreenKind kind);
    // Makes the screen's view the key window's.
    void showScreen();

    const DeviceConfiguration device;
    desktop::Services services;
    StockImages stockImages;
    ToolkitImages toolkit;
    const InstalledApps apps;
    const ScreenContext context;
    std::unique_ptr<ProcessRecording> recording;
    // After the classes and the engine.
    std::unique_ptr<Screen> screen;
    HomeScreen* homeScreen = nullptr;  // the screen, when it is that
    bool isToStartAgain = false;
};

SimulatedProcess::State::State(const ScreenRequest& request, LogLine logLine,
                               const std::shared_ptr<const desktop::DeviceRoot>& root,
                               std::shared_ptr<desktop::DesktopBitmapImage> wallpaper)
    : device(request.device),
      services(root, descriptionOf(device), std::move(logLine)),
      stockImages(services.images(), timeOfDay(device.date)),
      toolkit(device, services.images(), root, mainBundleOf(processOf(request))),
      apps(request.apps),
      context{.device = device,
              .runtime = services.runtime(),
              .images = services.images(),
              .stockImages = stockImages,
              .toolkit = toolkit,
              .views = services.views(),
              .application = services.application(),
              .dates = services.dates(),
              .apps = apps.onHomeScreen(),
              .wallpaper = std::move(wallpaper)} {}

void SimulatedProcess::State::registerClasses(ProcessKind process) {
    desktop::Runtime& runtime = services.runtime();
    registerBaseClasses(context);
    registerToolkitClasses(context);
    const auto is = [process](ProcessKind kind) {
        return process == kind || process == ProcessKind::everything;
    };
    // The platform's own sounds are not ours to play, so nobody is told of them.
    registerFeedbackClasses(
        runtime, nullptr,
        is(ProcessKind::homeScreen) ? FeedbackProcess::homeScreen : FeedbackProcess::other);
    if (is(ProcessKind::homeScreen)) {
        registerPlatformClasses(context);
        registerTodayClasses(context);
        registerSwitcherClasses(context);
        registerNotificationClasses(context);
    }
    if (is(ProcessKind::settings)) {
        registerSettingsClasses(context);
    }
    if (is(ProcessKind::weather)) {
        registerWeatherClasses(context);
    }
}

std::unique_ptr<Screen> SimulatedProcess::State::makeScreen(ScreenKind kind) {
    switch (kind) {
        case ScreenKind::controls:
            return std::make_unique<ControlsScreen>(context);
        case ScreenKind::gallery:
            return std::make_unique<GalleryScreen>(context);
        case ScreenKind::icons:
            return std::make_unique<IconsScreen>(context);
        case ScreenKind::settings:
            return std::make_unique<SettingsScreen>(context);
        case ScreenKind::panelError:
            return std::make_unique<PanelScreen>(context, PanelTask::deleteSettings);
        case ScreenKind::panelSuccess:
            return std::make_unique<PanelScreen>(context, PanelTask::applySettings);
        case ScreenKind::weather:
            return std::make_unique<WeatherScreen>(context);
        case ScreenKind::today:
            return std::make_unique<TodayScreen>(context);
        case ScreenKind::switcher:
            return std::make_unique<SwitcherScreen>(context);
        case ScreenKind::notification:
            return std::make_unique<NotificationScreen>(context);
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
    const ScreenRequest& request, LogLine logLine, record::RecordListener* listener) {
    if (auto drawable = checkDrawable(request.device); !drawable) {
        return tl::unexpected(std::move(drawable.error()));
    }
    auto root = desktop::DeviceRoot::open(request.deviceFiles);
    if (!root) {
        return tl::unexpected(std::move(root.error()));
    }
    std::shared_ptr<desktop::DesktopBitmapImage> wallpaper;
    if (!request.wallpaperFile.empty()) {
        auto loaded = loadWallpaper(request.wallpaperFile, request.device.screen);
        if (!loaded) {
            return tl::unexpected(std::move(loaded.error()));
        }
        wallpaper = std::move(*loaded);
    }
    auto state = std::make_unique<State>(request, std::move(logLine), std::move(*root),
                                         std::move(wallpaper));
    if (auto listening = state->services.listenForNotifications(); !listening) {
        return tl::unexpected(std::move(listening.error()));
    }
    state->services.notifications().addObserver(
        &state->isToStartAgain,
        [](platform::DarwinNotificationCenter& /*center*/, void* observer,
           const std::string& /*name*/, const void* /*object*/,
           const platform::Dictionary* /*userInfo*/) { *static_cast<bool*>(observer) = true; },
        kRespringNotice, nullptr, platform::SuspensionBehavior::coalesce);
    state->services.becomePlatform();
    state->registerClasses(processOf(request));
    if (listener != nullptr) {
        state->recording = std::make_unique<ProcessRecording>(listener);
    }
    if (request.loadEngine) {
        auto path = request.enginePath.empty() ? findEngine()
                                               : desktop::Result<std::string>(request.enginePath);
        if (!path) {
            return tl::unexpected(std::move(path.error()));
        }
        // What the engine does while it is loaded is its own.
        const record::Frame frame(
            {.kind = record::EntryKind::callback, .message = kEngineFileName});
        if (auto loaded = simulator::loadEngine(*path); !loaded) {
            return tl::unexpected(std::move(loaded.error()));
        }
    }
    if (request.withoutScreen) {
        return std::unique_ptr<SimulatedProcess>(new SimulatedProcess(std::move(state)));
    }
    state->screen = state->makeScreen(request.screen);
    if (state->screen == nullptr) {
        auto home = std::make_unique<HomeScreen>(state->context);
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

bool SimulatedProcess::hasScreen() const {
    return state_->screen != nullptr;
}

HomeScreen* SimulatedProcess::homeScreen() {
    return state_->homeScreen;
}

desktop::Runtime& SimulatedProcess::runtime() {
    return state_->services.runtime();
}

const ScreenContext& SimulatedProcess::context() const {
    return state_->context;
}

void SimulatedProcess::leaveDevice() const {
    state_->services.notifications().leave();
}

int SimulatedProcess::notificationDescriptor() const {
    return state_->services.notifications().descriptor();
}

bool SimulatedProcess::deliverNotifications() {
    const bool any = state_->services.notifications().deliverPending() > 0;
    if (any && hasScreen()) {
        state_->screen->notificationsWereDelivered();
    }
    return any;
}

bool SimulatedProcess::takeRespring() {
    return std::exchange(state_->isToStartAgain, false);
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
