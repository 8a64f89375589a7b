#include "simulator/process.h"

#include "desktop/audio/audio.h"
#include "desktop/audio/sdl_output.h"
#include "desktop/core_ui/bundles.h"
#include "desktop/core_ui/catalogs.h"
#include "desktop/dates/dates.h"
#include "desktop/files/device_root.h"
#include "desktop/files/file_manager.h"
#include "desktop/imaging/core_graphics.h"
#include "desktop/imaging/image_contexts.h"
#include "desktop/imaging/images.h"
#include "desktop/notifications/notification_center.h"
#include "desktop/plist/property_lists.h"
#include "desktop/runtime/runtime.h"
#include "desktop/system/system.h"
#include "desktop/views/view_controllers.h"
#include "desktop/views/views.h"
#include "platform/platform.h"
#include "simulator/app_context.h"
#include "simulator/artwork/artwork.h"
#include "simulator/home_screen/folder_classes.h"
#include "simulator/home_screen/icon_controller.h"
#include "simulator/home_screen/platform_classes.h"
#include "simulator/loader.h"
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

#include <charconv>
#include <cmath>
#include <fstream>
#include <string_view>
#include <utility>

namespace velmoranth::simulator {
namespace {

// Of the user that the home screen runs as.
constexpr const char* kHomeDirectory = "/var/mobile";

desktop::ImageDescription imageDescription(const SystemVersion& system) {
    return system.major < 13 ? desktop::ImageDescription::ios12 : desktop::ImageDescription::ios13;
}

desktop::DesktopImages::Configuration imagesConfiguration(
    const DeviceConfiguration& device, const std::shared_ptr<const desktop::DeviceRoot>& root) {
    desktop::DesktopImages::Configuration configuration;
    configuration.root = root;
    configuration.screenScale = device.screen.scale;
    configuration.siblings =
        device.exactFiles ? desktop::ScaledSiblings::off : desktop::ScaledSiblings::on;
    configuration.description = imageDescription(device.system);
    return configuration;
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

// What the hooking library notes for each method of a class that a process does not have. It
// belongs to every process and tells nobody anything, so the log is left to what the engine and the
// runtime say.
constexpr std::string_view kMissingClassNote = "MS:Warning: nil class";

// The system log of the process: each line goes to the launcher.
class LineLog final : public platform::SystemLog {
  public:
    explicit LineLog(SimulatedProcess::LogLine logLine) : logLine_(std::move(logLine)) {}

    void write(const std::string& line) override { logLine_(line); }

  private:
    SimulatedProcess::LogLine logLine_;
};

class SimulatedSpringBoard final : public platform::SpringBoard {
  public:
    explicit SimulatedSpringBoard(desktop::Runtime& runtime) : runtime_(runtime) {}

    platform::SBIconControllerRef sharedInstance(const platform::ClassRef& cls) override {
        return cls == nullptr
                   ? nullptr
                   : runtime_.send<platform::SBIconControllerRef>(*cls, "sharedInstance");
    }

  private:
    desktop::Runtime& runtime_;
};

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

// In the order in which the services need each other.
struct SimulatedProcess::Services {
    Services(const ScreenRequest& request, LogLine logLine,
             const std::shared_ptr<const desktop::DeviceRoot>& root,
             std::unique_ptr<desktop::DesktopNotificationCenter> notifications);

    // The classes that such a process has.
    void registerClasses(ProcessKind process);
    [[nodiscard]] AppContext appContext();
    [[nodiscard]] std::unique_ptr<HomeScreen> makeHomeScreen();
    // The screen asked for, when it is none of the home screen itself.
    [[nodiscard]] std::unique_ptr<Screen> makeScreen(ScreenKind kind);
    // Makes the screen's view the key window's.
    void showScreen();

    const DeviceConfiguration device;
    LineLog log;
    desktop::Runtime runtime;
    desktop::DesktopCoreFoundation coreFoundation;
    const std::unique_ptr<desktop::DesktopNotificationCenter> notificationCenter;
    desktop::DesktopPropertyLists propertyLists;
    desktop::DesktopFileManager fileManager;
    desktop::DesktopBundles bundles;
    desktop::DesktopCatalogClass catalogClass;
    desktop::DesktopDates dates;
    desktop::DesktopLibSystem libSystem;
    desktop::DesktopCoreGraphics coreGraphics;
    desktop::DesktopImageContexts imageContexts;
    desktop::DesktopImages images;
    desktop::DesktopFonts fonts;
    desktop::DesktopViews views;
    desktop::DesktopDevice currentDevice;
    desktop::DesktopScreen mainScreen;
    SimulatedSpringBoard springBoard;
    desktop::Mixer mixer;
    desktop::SdlOutput soundOutput;  // opened by the first sound
    desktop::DesktopAudio audio;
    desktop::DesktopAlerts alerts;
    desktop::DesktopApplication application;
    StockImages stockImages;
    ToolkitImages toolkit;
    const std::shared_ptr<IconController> iconController;
    // After the classes and the engine.
    std::unique_ptr<Screen> screen;
    HomeScreen* homeScreen = nullptr;  // the screen, when it is that
};

SimulatedProcess::Services::Services(
    const ScreenRequest& request, LogLine logLine,
    const std::shared_ptr<const desktop::DeviceRoot>& root,
    std::unique_ptr<desktop::DesktopNotificationCenter> notifications)
    : device(request.device),
      log(std::move(logLine)),
      runtime([this](const std::string& line) {
          if (!line.starts_with(kMissingClassNote)) {
              log.write(line);
          }
      }),
      coreFoundation(device.system.coreFoundationVersion,
                     {device.system.major, device.system.minor, device.system.patch}),
      notificationCenter(std::move(notifications)),
      propertyLists(root),
      fileManager(root),
      bundles(root),
      catalogClass(root),
      dates({.locale = device.locale, .date = device.date}),
      libSystem(root, device.machine, kHomeDirectory),
      imageContexts(device.screen.scale, imageDescription(device.system)),
      images(imagesConfiguration(device, root), imageContexts),
      fonts(device.system.major),
      currentDevice(device.kind == DeviceKind::pad ? desktop::InterfaceIdiom::pad
                                                   : desktop::InterfaceIdiom::phone,
                    static_cast<int>(device.orientation)),
      mainScreen(device.screen.scale, {device.screen.width, device.screen.height}),
      springBoard(runtime),
      soundOutput(mixer, [this](const std::string& line) { log.write(line); }),
      audio(root, mixer, soundOutput),
      stockImages(images),
      toolkit(device, images, root, mainBundleOf(definitionOf(request.screen).process)),
      iconController(std::make_shared<IconController>(runtime)) {
    // A block is what the end of a movement of nothing calls.
    libSystem.setMainQueue([this](double seconds, std::function<void()> block) {
        views.clock().animate(
            0, desktop::kLinear, {}, [block = std::move(block)](bool) { block(); }, seconds);
    });
    images.setSendApplicationIconImage([this](const platform::NullableString& bundleIdentifier,
                                              int format, double scale) {
        return runtime.sendToClass<platform::ImageRef, platform::NullableString, int, double>(
            "UIImage", "_applicationIconImageForBundleIdentifier:format:scale:", bundleIdentifier,
            format, scale);
    });
    platform::setPlatform({.objc = runtime,
                           .substrate = runtime,
                           .coreFoundation = coreFoundation,
                           .darwinNotifications = *notificationCenter,
                           .propertyLists = propertyLists,
                           .fileManager = fileManager,
                           .bundles = bundles,
                           .catalogClass = catalogClass,
                           .dates = dates,
                           .log = log,
                           .libSystem = libSystem,
                           .coreGraphics = coreGraphics,
                           .images = images,
                           .imageContexts = imageContexts,
                           .fonts = fonts,
                           .views = views,
                           .device = currentDevice,
                           .screen = mainScreen,
                           .springBoard = springBoard,
                           .audio = audio,
                           .alerts = alerts,
                           .application = application});
    registerClasses(definitionOf(request.screen).process);
}

void SimulatedProcess::Services::registerClasses(ProcessKind process) {
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
                                 .images = images,
                                 .toolkit = toolkit,
                                 .dates = dates,
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

AppContext SimulatedProcess::Services::appContext() {
    return {device, runtime, images, stockImages, views, toolkit, application};
}

std::unique_ptr<HomeScreen> SimulatedProcess::Services::makeHomeScreen() {
    return std::make_unique<HomeScreen>(
        device, HomeScreen::Services{runtime, images, stockImages, views, *iconController});
}

std::unique_ptr<Screen> SimulatedProcess::Services::makeScreen(ScreenKind kind) {
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

void SimulatedProcess::Services::showScreen() {
    const auto window = std::make_shared<desktop::DesktopWindow>(mainScreen.bounds());
    window->setRootViewController(std::make_shared<desktop::DesktopViewController>(screen->view()));
    application.setKeyWindow(window);
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
    auto notifications = desktop::DesktopNotificationCenter::open(**root);
    if (!notifications) {
        return tl::unexpected(std::move(notifications.error()));
    }
    auto services = std::make_unique<Services>(request, std::move(logLine), std::move(*root),
                                               std::move(*notifications));
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
    services->screen = services->makeScreen(request.screen);
    if (services->screen == nullptr) {
        std::unique_ptr<HomeScreen> home = services->makeHomeScreen();
        if (auto shown = showOnHomeScreen(*home, request); !shown) {
            return tl::unexpected(std::move(shown.error()));
        }
        services->homeScreen = home.get();
        services->screen = std::move(home);
    } else {
        services->screen->showPage(request.page);
    }
    services->showScreen();
    return std::unique_ptr<SimulatedProcess>(new SimulatedProcess(std::move(services)));
}

SimulatedProcess::SimulatedProcess(std::unique_ptr<Services> services)
    : services_(std::move(services)) {}

SimulatedProcess::~SimulatedProcess() = default;

Screen& SimulatedProcess::screen() {
    return *services_->screen;
}

HomeScreen* SimulatedProcess::homeScreen() {
    return services_->homeScreen;
}

desktop::Runtime& SimulatedProcess::runtime() {
    return services_->runtime;
}

int SimulatedProcess::notificationDescriptor() const {
    return services_->notificationCenter->descriptor();
}

bool SimulatedProcess::deliverNotifications() {
    const bool any = services_->notificationCenter->deliverPending() > 0;
    if (any) {
        services_->screen->notificationsWereDelivered();
    }
    return any;
}

std::size_t peakMemoryBytes() {
    // Not getrusage: its figure starts with that of the program that started this one.
    constexpr std::string_view kKey = "VmHWM:";
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(kKey, 0) == 0) {
            const std::size_t digit = line.find_first_of("0123456789");
            std::size_t kibibytes = 0;
            if (digit != std::string::npos) {
                std::from_chars(line.data() + digit, line.data() + line.size(), kibibytes);
            }
            return kibibytes * 1024;
        }
    }
    return 0;
}

}  // namespace velmoranth::simulator
