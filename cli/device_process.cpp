#include "cli/device_process.h"

#include "core/entry_points.h"
#include "desktop/files/file_errors.h"
#include "desktop/files/file_manager.h"
#include "desktop/plist/property_lists.h"
#include "desktop/system/core_foundation.h"
#include "desktop/system/lib_system.h"
#include "desktop/system/system_logs.h"
#include "desktop/views/view_controllers.h"
#include "platform/platform.h"
#include "simulator/device.h"

#include <cerrno>
#include <map>
#include <utility>

namespace velmoranth::cli {

using desktop::DeviceRoot;
using desktop::FileOperation;
using platform::Data;
using platform::Failure;

namespace {

// Of the user that the home screen runs as.
constexpr const char* kHomeDirectory = "/var/mobile";

// What the hooking library notes for each method of a class that a process does not have.
constexpr std::string_view kMissingClassNote = "MS:Warning: nil class";

// The files that were not copied though they are as good as copied: where each would be, and where
// its contents are.
class Redirections {
  public:
    void add(const std::string& path, const std::string& source) { sources_[path] = of(source); }

    [[nodiscard]] std::string of(const std::string& path) const {
        const auto found = sources_.find(path);
        return found == sources_.end() ? path : found->second;
    }

  private:
    std::map<std::string, std::string> sources_;
};

// Notes what is asked for, and changes files only when it may.
class WatchedFiles final : public platform::FileManager {
  public:
    WatchedFiles(const std::shared_ptr<const DeviceRoot>& root, Writing writing,
                 Redirections& redirections)
        : files_(root), mayWrite_(writing == Writing::done), redirections_(redirections) {}

    [[nodiscard]] bool fileExistsAtPath(const std::string& path) override {
        return fileExistsAtPathIsDirectory(path).exists;
    }

    [[nodiscard]] platform::FileExistence fileExistsAtPathIsDirectory(
        const std::string& path) override {
        const platform::FileExistence answer = look(path);
        probes_.push_back({path, answer.exists});
        return answer;
    }

    Failure setPosixPermissionsOfItemAtPath(unsigned mode, const std::string& path) override {
        return mayWrite_ ? files_.setPosixPermissionsOfItemAtPath(mode, path) : Failure();
    }

    Failure copyItemAtPathToPath(const std::string& source,
                                 const std::string& destination) override {
        if (mayWrite_) {
            return files_.copyItemAtPathToPath(source, destination);
        }
        if (!look(source).exists) {
            return desktop::fileError(FileOperation::read, ENOENT, source);
        }
        if (look(destination).exists) {
            return desktop::fileError(FileOperation::copy, EEXIST, source, destination);
        }
        redirections_.add(destination, source);
        return {};
    }

    Failure moveItemAtPathToPath(const std::string& source,
                                 const std::string& destination) override {
        if (mayWrite_) {
            return files_.moveItemAtPathToPath(source, destination);
        }
        if (look(destination).exists) {
            return desktop::fileError(FileOperation::move, EEXIST, source, destination);
        }
        if (!look(source).exists) {
            return desktop::fileError(FileOperation::move, ENOENT, source, destination);
        }
        redirections_.add(destination, source);
        return {};
    }

    Failure removeItemAtPath(const std::string& path) override {
        return mayWrite_ ? files_.removeItemAtPath(path) : Failure();
    }

    bool createFileAtPathContents(const std::string& path, const Data& contents) override {
        return !mayWrite_ || files_.createFileAtPathContents(path, contents);
    }

    Failure createDirectoryAtPathWithIntermediateDirectories(const std::string& path) override {
        return mayWrite_ ? files_.createDirectoryAtPathWithIntermediateDirectories(path)
                         : Failure();
    }

    bool writeToFileAtomically(const Data& contents, const std::string& path) override {
        return !mayWrite_ || files_.writeToFileAtomically(contents, path);
    }

    [[nodiscard]] std::optional<Data> dataWithContentsOfFile(const std::string& path) override {
        std::optional<Data> data = files_.dataWithContentsOfFile(redirections_.of(path));
        probes_.push_back({path, data.has_value()});
        return data;
    }

    [[nodiscard]] std::vector<FileProbe> takeProbes() { return std::exchange(probes_, {}); }

  private:
    [[nodiscard]] platform::FileExistence look(const std::string& path) {
        return files_.fileExistsAtPathIsDirectory(redirections_.of(path));
    }

    desktop::DesktopFileManager files_;
    bool mayWrite_;
    Redirections& redirections_;
    std::vector<FileProbe> probes_;
};

class RedirectedPropertyLists final : public platform::PropertyLists {
  public:
    RedirectedPropertyLists(const std::shared_ptr<const DeviceRoot>& root,
                            const Redirections& redirections)
        : lists_(root), redirections_(redirections) {}

    [[nodiscard]] std::optional<platform::Dictionary> dictionaryWithContentsOfFile(
        const std::string& path) override {
        return lists_.dictionaryWithContentsOfFile(redirections_.of(path));
    }

  private:
    desktop::DesktopPropertyLists lists_;
    const Redirections& redirections_;
};

class WatchedLibSystem final : public platform::LibSystem {
  public:
    WatchedLibSystem(const std::shared_ptr<const DeviceRoot>& root, Writing writing)
        : libSystem_(root, std::string(simulator::deviceModels().front().machine), kHomeDirectory),
          mayWrite_(writing == Writing::done) {}

    int setuid(unsigned id) override { return libSystem_.setuid(id); }

    int setgid(unsigned id) override { return libSystem_.setgid(id); }

    int chmod(const std::string& path, unsigned mode) override {
        return mayWrite_ ? libSystem_.chmod(path, mode) : 0;
    }

    int mkdir(const std::string& path, unsigned mode) override {
        return mayWrite_ ? libSystem_.mkdir(path, mode) : 0;
    }

    [[nodiscard]] std::string machine() override { return libSystem_.machine(); }

    [[nodiscard]] std::string homeDirectory() override { return libSystem_.homeDirectory(); }

    void dispatchAfterOnMainQueue(std::int64_t nanoseconds,
                                  const std::function<void()>& block) override {
        libSystem_.dispatchAfterOnMainQueue(nanoseconds, block);
    }

  private:
    desktop::DesktopLibSystem libSystem_;
    bool mayWrite_;
};

}  // namespace

// In the order in which they need each other.
struct DeviceProcess::Services {
    Services(const std::shared_ptr<const DeviceRoot>& root, Writing writing)
        : runtime([this](const std::string& line) {
              if (!line.starts_with(kMissingClassNote)) {
                  log.write(line);
              }
          }),
          idle(runtime, simulator::kSystem13.coreFoundationVersion),
          coreFoundation(
              simulator::kSystem13.coreFoundationVersion,
              {simulator::kSystem13.major, simulator::kSystem13.minor, simulator::kSystem13.patch}),
          files(root, writing, redirections),
          propertyLists(root, redirections),
          libSystem(root, writing),
          controller(std::make_shared<desktop::DesktopViewController>(nullptr)) {
        const auto window = std::make_shared<desktop::DesktopWindow>(platform::Rect{});
        window->setRootViewController(controller);
        application.setKeyWindow(window);
    }

    desktop::LogToMemory log;
    desktop::Runtime runtime;
    IdlePlatform idle;
    desktop::DesktopCoreFoundation coreFoundation;
    Redirections redirections;
    WatchedFiles files;
    RedirectedPropertyLists propertyLists;
    WatchedLibSystem libSystem;
    desktop::DesktopAlerts alerts;
    desktop::DesktopApplication application;
    std::shared_ptr<desktop::DesktopViewController> controller;
};

DeviceProcess::DeviceProcess(const std::shared_ptr<const DeviceRoot>& root, Writing writing,
                             platform::Audio* audio)
    : services_(std::make_unique<Services>(root, writing)) {
    const platform::Platform idle = platform::platform();
    platform::setPlatform({.objc = idle.objc,
                           .substrate = idle.substrate,
                           .coreFoundation = services_->coreFoundation,
                           .darwinNotifications = idle.darwinNotifications,
                           .propertyLists = services_->propertyLists,
                           .fileManager = services_->files,
                           .bundles = idle.bundles,
                           .catalogClass = idle.catalogClass,
                           .dates = idle.dates,
                           .log = services_->log,
                           .libSystem = services_->libSystem,
                           .coreGraphics = idle.coreGraphics,
                           .images = idle.images,
                           .imageContexts = idle.imageContexts,
                           .fonts = idle.fonts,
                           .views = idle.views,
                           .device = idle.device,
                           .screen = idle.screen,
                           .springBoard = idle.springBoard,
                           .audio = audio == nullptr ? idle.audio : *audio,
                           .alerts = services_->alerts,
                           .application = services_->application});
}

DeviceProcess::~DeviceProcess() = default;

desktop::Runtime& DeviceProcess::runtime() {
    return services_->runtime;
}

void DeviceProcess::startEngine() {
    core::registerClasses();
    core::installHooks();
    core::startSettings();
}

std::vector<FileProbe> DeviceProcess::takeProbes() {
    return services_->files.takeProbes();
}

std::vector<std::string> DeviceProcess::log() const {
    return services_->log.lines();
}

std::optional<std::string> DeviceProcess::takeAlert() {
    const auto alert = std::dynamic_pointer_cast<desktop::DesktopAlertController>(
        services_->controller->presented());
    services_->controller->dismiss();
    return alert == nullptr ? std::nullopt : alert->message();
}

}  // namespace velmoranth::cli
