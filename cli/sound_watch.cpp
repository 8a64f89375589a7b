#include "cli/sound_watch.h"

#include "cli/device_process.h"
#include "core/entry_points.h"
#include "desktop/files/file_errors.h"

#include <cerrno>
#include <map>
#include <utility>

namespace velmoranth::cli {

using desktop::DeviceRoot;
using desktop::FileOperation;
using platform::Data;
using platform::Failure;

namespace {

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

// Notes what is asked for, and changes no file.
class WatchedFiles final : public desktop::DesktopFileManager {
  public:
    WatchedFiles(const std::shared_ptr<const DeviceRoot>& root, Redirections& redirections)
        : DesktopFileManager(root), redirections_(redirections) {}

    [[nodiscard]] bool fileExistsAtPath(const std::string& path) override {
        return fileExistsAtPathIsDirectory(path).exists;
    }

    [[nodiscard]] platform::FileExistence fileExistsAtPathIsDirectory(
        const std::string& path) override {
        const platform::FileExistence answer = look(path);
        probes_.push_back({path, answer.exists});
        return answer;
    }

    Failure setPosixPermissionsOfItemAtPath(unsigned /*mode*/,
                                            const std::string& /*path*/) override {
        return {};
    }

    Failure copyItemAtPathToPath(const std::string& source,
                                 const std::string& destination) override {
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
        if (look(destination).exists) {
            return desktop::fileError(FileOperation::move, EEXIST, source, destination);
        }
        if (!look(source).exists) {
            return desktop::fileError(FileOperation::move, ENOENT, source, destination);
        }
        redirections_.add(destination, source);
        return {};
    }

    Failure removeItemAtPath(const std::string& /*path*/) override { return {}; }

    bool createFileAtPathContents(const std::string& /*path*/, const Data& /*contents*/) override {
        return true;
    }

    Failure createDirectoryAtPathWithIntermediateDirectories(const std::string& /*path*/) override {
        return {};
    }

    bool writeToFileAtomically(const Data& /*contents*/, const std::string& /*path*/) override {
        return true;
    }

    [[nodiscard]] std::optional<Data> dataWithContentsOfFile(const std::string& path) override {
        std::optional<Data> data =
            DesktopFileManager::dataWithContentsOfFile(redirections_.of(path));
        probes_.push_back({path, data.has_value()});
        return data;
    }

    [[nodiscard]] std::vector<FileProbe> takeProbes() { return std::exchange(probes_, {}); }

  private:
    [[nodiscard]] platform::FileExistence look(const std::string& path) {
        return DesktopFileManager::fileExistsAtPathIsDirectory(redirections_.of(path));
    }

    Redirections& redirections_;
    std::vector<FileProbe> probes_;
};

class RedirectedPropertyLists final : public desktop::DesktopPropertyLists {
  public:
    RedirectedPropertyLists(const std::shared_ptr<const DeviceRoot>& root,
                            const Redirections& redirections)
        : DesktopPropertyLists(root), redirections_(redirections) {}

    [[nodiscard]] std::optional<platform::Dictionary> dictionaryWithContentsOfFile(
        const std::string& path) override {
        return DesktopPropertyLists::dictionaryWithContentsOfFile(redirections_.of(path));
    }

  private:
    const Redirections& redirections_;
};

class UnchangingLibSystem final : public desktop::DesktopLibSystem {
  public:
    using DesktopLibSystem::DesktopLibSystem;

    int chmod(const std::string& /*path*/, unsigned /*mode*/) override { return 0; }

    int mkdir(const std::string& /*path*/, unsigned /*mode*/) override { return 0; }
};

class WatchedPlayer final : public platform::AudioPlayer {
  public:
    WatchedPlayer(platform::AudioPlayerRef player, std::shared_ptr<PlayerRequest> request)
        : player_(std::move(player)), request_(std::move(request)) {}

    [[nodiscard]] std::string className() const override { return player_->className(); }

    void setVolume(float volume) override {
        request_->volume = volume;
        player_->setVolume(volume);
    }

    void setDelegate(platform::Object& delegate) override { player_->setDelegate(delegate); }

    bool prepareToPlay() override { return player_->prepareToPlay(); }

    bool play() override {
        request_->isStarted = player_->play();
        return request_->isStarted;
    }

  private:
    platform::AudioPlayerRef player_;
    std::shared_ptr<PlayerRequest> request_;
};

class WatchedAudio final : public platform::Audio {
  public:
    explicit WatchedAudio(desktop::DesktopAudio& audio) : audio_(audio) {}

    [[nodiscard]] platform::AudioSessionRef sharedInstance() override {
        return audio_.sharedInstance();
    }

    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithContentsOfURL(
        const std::string& path) override {
        return noted(audio_.audioPlayerWithContentsOfURL(path), path);
    }

    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithData(
        const std::optional<Data>& data) override {
        return noted(audio_.audioPlayerWithData(data), {});
    }

    // The last one; null when none was asked for.
    [[nodiscard]] std::shared_ptr<const PlayerRequest> lastRequest() const { return last_; }

  private:
    platform::AudioPlayerRef noted(const platform::AudioPlayerRef& player, std::string path) {
        last_ = std::make_shared<PlayerRequest>();
        last_->path = std::move(path);
        last_->isMade = player != nullptr;
        if (player == nullptr) {
            last_->problem = audio_.lastProblem();
            return nullptr;
        }
        return std::make_shared<WatchedPlayer>(player, last_);
    }

    desktop::DesktopAudio& audio_;
    std::shared_ptr<PlayerRequest> last_;
};

}  // namespace

struct WatchedProcess::State {
    State(const std::shared_ptr<const DeviceRoot>& root, desktop::DesktopAudio& desktopAudio)
        : files(root, redirections),
          propertyLists(root, redirections),
          libSystem(root, desktop::DeviceDescription().machine, desktop::kHomeDirectory),
          audio(desktopAudio),
          process(root, {&propertyLists, &files, &libSystem, &audio}) {}

    Redirections redirections;
    WatchedFiles files;
    RedirectedPropertyLists propertyLists;
    UnchangingLibSystem libSystem;
    WatchedAudio audio;
    DeviceProcess process;
};

WatchedProcess::WatchedProcess(const std::shared_ptr<const DeviceRoot>& root,
                               desktop::DesktopAudio& audio)
    : state_(std::make_unique<State>(root, audio)) {}

WatchedProcess::~WatchedProcess() = default;

desktop::Runtime& WatchedProcess::runtime() {
    return state_->process.runtime();
}

void WatchedProcess::startEngine() {
    core::registerClasses();
    core::installHooks();
    core::startSettings();
}

std::vector<FileProbe> WatchedProcess::takeProbes() {
    return state_->files.takeProbes();
}

std::shared_ptr<const PlayerRequest> WatchedProcess::lastRequest() const {
    return state_->audio.lastRequest();
}

}  // namespace velmoranth::cli
