// Every service of the desktop over one device root, each made when it is first asked for, and the
// platform record of them: a simulated process, an operation of the command and a test take theirs
// from here.
#pragma once

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
#include "desktop/text/fonts.h"
#include "desktop/views/view_controllers.h"
#include "desktop/views/views.h"
#include "platform/platform.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace velmoranth::desktop {

// Of the user that the home screen runs as.
inline constexpr const char* kHomeDirectory = "/var/mobile";

// What the services say of the device.
struct DeviceDescription {
    SystemVersion system{13, 3, 0};
    double coreFoundationVersion = 1674.102;
    std::string machine = "iPhone10,3";
    InterfaceIdiom idiom = InterfaceIdiom::phone;
    int orientation = DesktopDevice::kPortrait;
    double screenScale = 3;
    platform::Size screenSize{375, 812};
    ScaledSiblings siblings = ScaledSiblings::on;
    DesktopDates::Configuration dates = {};
};

// Services of the caller's own, which outlive the engine; null leaves ours.
struct ReplacedServices {
    platform::PropertyLists* propertyLists = nullptr;
    platform::FileManager* fileManager = nullptr;
    platform::LibSystem* libSystem = nullptr;
    platform::Audio* audio = nullptr;
};

// The members are defined here so that a program is linked with the services that it uses.
class Services {
  public:
    // Where the lines of the system log go; may be called from any thread.
    using LogLine = std::function<void(const std::string& line)>;

    Services(std::shared_ptr<const DeviceRoot> root, DeviceDescription device, LogLine logLine)
        : root_(std::move(root)), device_(std::move(device)), logLine_(std::move(logLine)) {}

    Services(const Services&) = delete;
    Services& operator=(const Services&) = delete;

    // Sets the platform record of this process. Everything is made then.
    void becomePlatform(const ReplacedServices& replaced = {});

    // Has the process hear what others post to the device, which it does not otherwise.
    [[nodiscard]] Result<void> listenForNotifications();

    [[nodiscard]] Runtime& runtime() {
        // What the hooking library notes for each method of a class that a process does not have
        // belongs to every process and tells nobody anything.
        return made(runtime_, [this](const std::string& line) {
            if (!line.starts_with("MS:Warning: nil class")) {
                logLine_(line);
            }
        });
    }

    [[nodiscard]] DesktopNotificationCenter& notifications() { return made(notifications_); }

    [[nodiscard]] DesktopPropertyLists& propertyLists() { return made(propertyLists_, root_); }

    [[nodiscard]] DesktopFileManager& fileManager() { return made(fileManager_, root_); }

    [[nodiscard]] DesktopDates& dates() { return made(dates_, device_.dates); }

    // What is put on the main queue runs when the clock of the views is there.
    [[nodiscard]] DesktopLibSystem& libSystem() {
        if (libSystem_ == nullptr) {
            made(libSystem_, root_, device_.machine, kHomeDirectory);
            // A block is what the end of a movement of nothing calls.
            libSystem_->setMainQueue([this](double seconds, std::function<void()> block) {
                views().clock().animate(
                    0, kLinear, {}, [block = std::move(block)](bool) { block(); }, seconds);
            });
        }
        return *libSystem_;
    }

    [[nodiscard]] DesktopCoreGraphics& coreGraphics() { return made(coreGraphics_); }

    [[nodiscard]] DesktopImageContexts& imageContexts() {
        return made(imageContexts_, device_.screenScale, imageDescription());
    }

    [[nodiscard]] DesktopImages& images() {
        if (images_ == nullptr) {
            made(images_,
                 DesktopImages::Configuration{.root = root_,
                                              .screenScale = device_.screenScale,
                                              .siblings = device_.siblings,
                                              .description = imageDescription()},
                 imageContexts());
            images_->setSendApplicationIconImage(
                [this](const platform::NullableString& bundleIdentifier, int format, double scale) {
                    return runtime()
                        .sendToClass<platform::ImageRef, platform::NullableString, int, double>(
                            "UIImage", "_applicationIconImageForBundleIdentifier:format:scale:",
                            bundleIdentifier, format, scale);
                });
        }
        return *images_;
    }

    [[nodiscard]] DesktopFonts& fonts() { return made(fonts_, device_.system.major); }

    [[nodiscard]] DesktopViews& views() { return made(views_); }

    [[nodiscard]] DesktopScreen& screen() {
        return made(screen_, device_.screenScale, device_.screenSize);
    }

    [[nodiscard]] DesktopApplication& application() { return made(application_); }

  private:
    template <class Service, class... Arguments>
    static Service& made(std::shared_ptr<Service>& service, Arguments&&... arguments) {
        if (service == nullptr) {
            service = std::make_shared<Service>(std::forward<Arguments>(arguments)...);
        }
        return *service;
    }

    [[nodiscard]] ImageDescription imageDescription() const {
        return device_.system.major < 13 ? ImageDescription::ios12 : ImageDescription::ios13;
    }

    const std::shared_ptr<const DeviceRoot> root_;
    const DeviceDescription device_;
    const LogLine logLine_;
    // In the order in which they need each other.
    std::shared_ptr<platform::SystemLog> log_;
    std::shared_ptr<Runtime> runtime_;
    std::shared_ptr<DesktopCoreFoundation> coreFoundation_;
    std::shared_ptr<DesktopNotificationCenter> notifications_;
    std::shared_ptr<DesktopPropertyLists> propertyLists_;
    std::shared_ptr<DesktopFileManager> fileManager_;
    std::shared_ptr<DesktopBundles> bundles_;
    std::shared_ptr<DesktopCatalogClass> catalogClass_;
    std::shared_ptr<DesktopDates> dates_;
    std::shared_ptr<DesktopLibSystem> libSystem_;
    std::shared_ptr<DesktopCoreGraphics> coreGraphics_;
    std::shared_ptr<DesktopImageContexts> imageContexts_;
    std::shared_ptr<DesktopImages> images_;
    std::shared_ptr<DesktopFonts> fonts_;
    std::shared_ptr<DesktopViews> views_;
    std::shared_ptr<DesktopDevice> currentDevice_;
    std::shared_ptr<DesktopScreen> screen_;
    std::shared_ptr<platform::SpringBoard> springBoard_;
    std::shared_ptr<Mixer> mixer_;
    std::shared_ptr<SdlOutput> soundOutput_;  // opened by the first sound
    std::shared_ptr<DesktopAudio> audio_;
    std::shared_ptr<DesktopAlerts> alerts_;
    std::shared_ptr<DesktopApplication> application_;
};

}  // namespace velmoranth::desktop
