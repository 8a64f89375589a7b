#include "desktop/services/services.h"

namespace velmoranth::desktop {
namespace {

class LineLog final : public platform::SystemLog {
  public:
    explicit LineLog(const Services::LogLine& logLine) : logLine_(logLine) {}

    void write(const std::string& line) override { logLine_(line); }

  private:
    const Services::LogLine& logLine_;
};

// The class's own answer.
class DesktopSpringBoard final : public platform::SpringBoard {
  public:
    explicit DesktopSpringBoard(Runtime& runtime) : runtime_(runtime) {}

    platform::SBIconControllerRef sharedInstance(const platform::ClassRef& cls) override {
        return cls == nullptr
                   ? nullptr
                   : runtime_.send<platform::SBIconControllerRef>(*cls, "sharedInstance");
    }

  private:
    Runtime& runtime_;
};

template <class Service>
Service& chosen(Service* replacement, Service& ours) {
    return replacement == nullptr ? ours : *replacement;
}

}  // namespace

Result<void> Services::listenForNotifications() {
    auto opened = DesktopNotificationCenter::open(*root_);
    if (!opened) {
        return tl::unexpected(std::move(opened.error()));
    }
    notifications_ = std::move(*opened);
    return {};
}

void Services::becomePlatform(const ReplacedServices& replaced) {
    log_ = std::make_shared<LineLog>(logLine_);
    springBoard_ = std::make_shared<DesktopSpringBoard>(runtime());
    made(soundOutput_, made(mixer_), logLine_);
    platform::setPlatform(
        {.objc = runtime(),
         .substrate = runtime(),
         .coreFoundation = made(coreFoundation_, device_.coreFoundationVersion, device_.system),
         .darwinNotifications = notifications(),
         .propertyLists = chosen<platform::PropertyLists>(replaced.propertyLists, propertyLists()),
         .fileManager = chosen<platform::FileManager>(replaced.fileManager, fileManager()),
         .bundles = made(bundles_, root_),
         .catalogClass = made(catalogClass_, root_),
         .dates = dates(),
         .log = *log_,
         .libSystem = chosen<platform::LibSystem>(replaced.libSystem, libSystem()),
         .coreGraphics = coreGraphics(),
         .images = images(),
         .imageContexts = imageContexts(),
         .fonts = fonts(),
         .views = views(),
         .device = made(currentDevice_, device_.idiom, device_.orientation),
         .screen = screen(),
         .springBoard = *springBoard_,
         .audio =
             chosen<platform::Audio>(replaced.audio, made(audio_, root_, *mixer_, *soundOutput_)),
         .alerts = made(alerts_),
         .application = application()});
}

}  // namespace velmoranth::desktop
