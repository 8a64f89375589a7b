#include "cli/idle_platform.h"

#include "cli/messages.h"
#include "platform/platform.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::cli {

namespace {

using platform::BitmapImageRef;
using platform::Data;
using platform::Failure;
using platform::ImageRef;
using platform::ImageViewRef;

struct System final : platform::CoreFoundation {
    explicit System(double versionNumber) : number(versionNumber) {}

    double versionNumber() override { return number; }

    bool isSystemVersionAtLeast(int /*major*/, int /*minor*/, int /*patch*/) override {
        return false;
    }

    double number;
};

struct Notifications final : platform::DarwinNotificationCenter {
    void addObserver(void* /*observer*/, platform::NotificationCallback /*callback*/,
                     const std::string& /*name*/, const void* /*object*/,
                     platform::SuspensionBehavior /*suspensionBehavior*/) override {}
};

struct PropertyLists final : platform::PropertyLists {
    std::optional<platform::Dictionary> dictionaryWithContentsOfFile(
        const std::string& /*path*/) override {
        return std::nullopt;
    }
};

struct Files final : platform::FileManager {
    bool fileExistsAtPath(const std::string& /*path*/) override { return false; }

    platform::FileExistence fileExistsAtPathIsDirectory(const std::string& /*path*/) override {
        return {};
    }

    Failure setPosixPermissionsOfItemAtPath(unsigned /*mode*/,
                                            const std::string& /*path*/) override {
        return platform::Error{};
    }

    Failure copyItemAtPathToPath(const std::string& /*source*/,
                                 const std::string& /*destination*/) override {
        return platform::Error{};
    }

    Failure moveItemAtPathToPath(const std::string& /*source*/,
                                 const std::string& /*destination*/) override {
        return platform::Error{};
    }

    Failure createDirectoryAtPathWithIntermediateDirectories(const std::string& /*path*/) override {
        return platform::Error{};
    }

    bool createFileAtPathContents(const std::string& /*path*/, const Data& /*contents*/) override {
        return false;
    }

    bool writeToFileAtomically(const Data& /*contents*/, const std::string& /*path*/) override {
        return false;
    }

    Failure removeItemAtPath(const std::string& /*path*/) override { return platform::Error{}; }

    std::optional<Data> dataWithContentsOfFile(const std::string& /*path*/) override {
        return std::nullopt;
    }
};

struct Log final : platform::SystemLog {
    void write(const std::string& line) override { warn(line); }
};

struct LibSystem final : platform::LibSystem {
    int setuid(unsigned /*id*/) override { return -1; }

    int setgid(unsigned /*id*/) override { return -1; }

    int chmod(const std::string& /*path*/, unsigned /*mode*/) override { return -1; }

    int mkdir(const std::string& /*path*/, unsigned /*mode*/) override { return -1; }

    std::string machine() override { return {}; }

    std::string homeDirectory() override { return "/"; }

    void dispatchAfterOnMainQueue(std::int64_t /*nanoseconds*/,
                                  const std::function<void()>& /*block*/) override {}
};

struct CoreGraphics final : platform::CoreGraphics {
    BitmapImageRef imageMaskCreate(std::size_t /*width*/, std::size_t /*height*/,
                                   std::size_t /*bitsPerComponent*/, std::size_t /*bitsPerPixel*/,
                                   std::size_t /*bytesPerRow*/,
                                   const platform::DataProviderRef& /*provider*/,
                                   bool /*shouldInterpolate*/) override {
        return nullptr;
    }

    BitmapImageRef imageCreateWithMask(const BitmapImageRef& /*image*/,
                                       const BitmapImageRef& /*mask*/) override {
        return nullptr;
    }

    platform::GraphicsContextRef bitmapContextCreate(std::int64_t /*width*/,
                                                     std::int64_t /*height*/,
                                                     std::size_t /*bitsPerComponent*/,
                                                     std::size_t /*bytesPerRow*/,
                                                     platform::ColorSpace /*space*/,
                                                     std::uint32_t /*bitmapInfo*/) override {
        return nullptr;
    }

    platform::GradientRef gradientCreateWithColorComponents(
        platform::ColorSpace /*space*/, const std::vector<double>& /*components*/,
        const std::optional<std::vector<double>>& /*locations*/) override {
        return nullptr;
    }
};

struct Images final : platform::Images {
    ImageRef imageWithContentsOfFile(const std::string& /*path*/) override { return nullptr; }

    ImageRef imageWithCGImage(const BitmapImageRef& /*bitmap*/) override { return nullptr; }

    void drawInRect(const ImageRef& /*image*/, const platform::Rect& /*rect*/) override {}

    std::optional<Data> pngRepresentation(const ImageRef& /*image*/) override {
        return std::nullopt;
    }

    ImageRef applicationIconImageForBundleIdentifierFormatScale(
        const platform::NullableString& /*bundleIdentifier*/, int /*format*/,
        double /*scale*/) override {
        return nullptr;
    }
};

struct ImageContexts final : platform::ImageContexts {
    void beginImageContextWithOptions(platform::Size /*size*/, bool /*opaque*/,
                                      double /*scale*/) override {}

    platform::GraphicsContextRef getCurrentContext() override { return nullptr; }

    ImageRef getImageFromCurrentImageContext() override { return nullptr; }

    void endImageContext() override {}
};

struct Dates final : platform::Dates {
    platform::Date date() override { return {}; }

    long dayFromDate(const platform::Date& /*date*/) override { return 0; }

    std::string stringFromDate(const platform::Date& /*date*/,
                               const std::string& /*dateFormat*/) override {
        return {};
    }
};

struct Fonts final : platform::Fonts {
    platform::FontRef fontWithNameSize(const platform::NullableString& /*name*/,
                                       double /*size*/) override {
        return nullptr;
    }
};

struct Views final : platform::Views {
    platform::ViewRef viewWithFrame(const platform::Rect& /*frame*/) override { return nullptr; }

    platform::LabelRef labelWithFrame(const platform::Rect& /*frame*/) override { return nullptr; }

    ImageViewRef imageView() override { return nullptr; }

    ImageViewRef imageViewWithImage(const ImageRef& /*image*/) override { return nullptr; }

    ImageViewRef imageViewWithFrame(const platform::Rect& /*frame*/) override { return nullptr; }

    platform::GestureRecognizerRef tapGestureRecognizer(
        platform::Object& /*target*/, const platform::Selector& /*action*/) override {
        return nullptr;
    }

    void animateWithDurationAnimationsCompletion(
        double /*duration*/, const std::function<void()>& /*animations*/,
        const std::function<void(bool finished)>& /*completion*/) override {}

    void
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double /*duration*/, double /*delay*/, double /*damping*/, double /*initialVelocity*/,
        unsigned /*options*/, const std::function<void()>& /*animations*/,
        const std::function<void(bool finished)>& /*completion*/) override {}
};

struct Device final : platform::Device {
    bool respondsToUserInterfaceIdiom() override { return false; }

    int userInterfaceIdiom() override { return platform::kUserInterfaceIdiomPhone; }

    int orientation() override { return 0; }
};

struct Screen final : platform::Screen {
    double scale() override { return 1; }

    platform::Rect bounds() override { return {}; }
};

struct SpringBoard final : platform::SpringBoard {
    platform::SBIconControllerRef sharedInstance(
        const platform::ClassRef& /*iconController*/) override {
        return nullptr;
    }
};

struct Bundles final : platform::Bundles {
    platform::BundleRef bundleWithPath(const std::string& /*path*/) override { return nullptr; }

    bool load(const platform::BundleRef& /*bundle*/) override { return false; }
};

struct CatalogClass final : platform::CatalogClass {
    platform::OpenedCatalog initWithURL(const platform::ClassRef& /*cls*/,
                                        const std::string& /*path*/) override {
        return {};
    }

    platform::CUICatalogRef defaultUICatalogForBundle(
        const platform::ClassRef& /*cls*/, const platform::BundleRef& /*bundle*/) override {
        return nullptr;
    }

    platform::OpenedCatalog initWithNameFromBundle(const platform::ClassRef& /*cls*/,
                                                   const std::string& /*name*/,
                                                   const platform::BundleRef& /*bundle*/) override {
        return {};
    }
};

struct AudioSession final : platform::AudioSession {
    [[nodiscard]] std::string className() const override { return "AVAudioSession"; }

    bool setCategory(const std::string& /*category*/) override { return false; }

    bool setActive(bool /*active*/) override { return false; }
};

struct Audio final : platform::Audio {
    platform::AudioSessionRef session = std::make_shared<AudioSession>();

    platform::AudioSessionRef sharedInstance() override { return session; }

    platform::AudioPlayerRef audioPlayerWithContentsOfURL(const std::string& /*path*/) override {
        return nullptr;
    }

    platform::AudioPlayerRef audioPlayerWithData(const std::optional<Data>& /*data*/) override {
        return nullptr;
    }
};

struct Alerts final : platform::Alerts {
    platform::AlertControllerRef alertControllerWithTitleMessagePreferredStyle(
        const platform::NullableString& /*title*/, const platform::NullableString& /*message*/,
        platform::AlertControllerStyle /*style*/) override {
        return nullptr;
    }

    platform::AlertActionRef actionWithTitleStyleHandler(
        const platform::NullableString& /*title*/, platform::AlertActionStyle /*style*/,
        const std::function<void()>& /*handler*/) override {
        return nullptr;
    }
};

struct Application final : platform::Application {
    platform::WindowRef keyWindow() override { return nullptr; }
};

}  // namespace

struct IdlePlatform::Services {
    explicit Services(double versionNumber) : system(versionNumber) {}

    System system;
    Notifications notifications;
    PropertyLists propertyLists;
    Files files;
    Bundles bundles;
    CatalogClass catalogClass;
    Dates dates;
    Log log;
    LibSystem libSystem;
    CoreGraphics coreGraphics;
    Images images;
    ImageContexts imageContexts;
    Fonts fonts;
    Views views;
    Device device;
    Screen screen;
    SpringBoard springBoard;
    Audio audio;
    Alerts alerts;
    Application application;
};

IdlePlatform::IdlePlatform(desktop::Runtime& runtime, double versionNumber)
    : services_(std::make_unique<Services>(versionNumber)) {
    platform::setPlatform({.objc = runtime,
                           .substrate = runtime,
                           .coreFoundation = services_->system,
                           .darwinNotifications = services_->notifications,
                           .propertyLists = services_->propertyLists,
                           .fileManager = services_->files,
                           .bundles = services_->bundles,
                           .catalogClass = services_->catalogClass,
                           .dates = services_->dates,
                           .log = services_->log,
                           .libSystem = services_->libSystem,
                           .coreGraphics = services_->coreGraphics,
                           .images = services_->images,
                           .imageContexts = services_->imageContexts,
                           .fonts = services_->fonts,
                           .views = services_->views,
                           .device = services_->device,
                           .screen = services_->screen,
                           .springBoard = services_->springBoard,
                           .audio = services_->audio,
                           .alerts = services_->alerts,
                           .application = services_->application});
}

IdlePlatform::~IdlePlatform() = default;

}  // namespace velmoranth::cli
