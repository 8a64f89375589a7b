#include "cli/sound_process.h"

#include "cli/device_process.h"
#include "core/entry_points.h"
#include "desktop/files/file_errors.h"
#include "simulator/process/recording.h"

#include "record/operations.h"
#include "record/words.h"

#include <cerrno>
#include <cstdlib>
#include <map>
#include <string_view>
#include <utility>

namespace velmoranth::cli {

using desktop::DeviceRoot;
using desktop::FileOperation;
using platform::Data;
using platform::Failure;

namespace {

// What was copied, moved and removed without a change of the device: where the contents of a path
// are.
class Redirections {
  public:
    void copy(const std::string& source, const std::string& destination) {
        sources_[destination] = of(source);
    }

    void remove(const std::string& path) { sources_[path] = {}; }

    // "", where no file is, for what has been removed.
    [[nodiscard]] std::string of(const std::string& path) const {
        const auto found = sources_.find(path);
        return found == sources_.end() ? path : found->second;
    }

  private:
    std::map<std::string, std::string> sources_;
};

class UnchangingFiles final : public desktop::DesktopFileManager {
  public:
    UnchangingFiles(const std::shared_ptr<const DeviceRoot>& root, Redirections& redirections)
        : DesktopFileManager(root), redirections_(redirections) {}

    [[nodiscard]] bool fileExistsAtPath(const std::string& path) override {
        return look(path).exists;
    }

    [[nodiscard]] platform::FileExistence fileExistsAtPathIsDirectory(
        const std::string& path) override {
        return look(path);
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
        redirections_.copy(source, destination);
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
        redirections_.copy(source, destination);
        redirections_.remove(source);
        return {};
    }

    Failure removeItemAtPath(const std::string& path) override {
        redirections_.remove(path);
        return {};
    }

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
        return DesktopFileManager::dataWithContentsOfFile(redirections_.of(path));
    }

  private:
    [[nodiscard]] platform::FileExistence look(const std::string& path) {
        return DesktopFileManager::fileExistsAtPathIsDirectory(redirections_.of(path));
    }

    Redirections& redirections_;
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

bool isQuestion(const record::Entry& entry) {
    using record::messageOf;
    return entry.message == messageOf("FileManager", "fileExistsAtPath") ||
           entry.message == messageOf("FileManager", "fileExistsAtPathIsDirectory") ||
           entry.message == messageOf("FileManager", "dataWithContentsOfFile");
}

}  // namespace

std::vector<FileProbe> probesIn(const record::Record& record) {
    std::vector<FileProbe> probes;
    for (const record::Entry& entry : record) {
        if (isQuestion(entry)) {
            probes.push_back({entry.subject, entry.kind == record::EntryKind::found});
        }
    }
    return probes;
}

std::optional<PlayerRequest> lastPlayerIn(const record::Record& record) {
    using record::messageOf;
    std::optional<PlayerRequest> player;
    for (const record::Entry& entry : record) {
        if (entry.message == messageOf("Audio", "audioPlayerWithContentsOfURL") ||
            entry.message == messageOf("Audio", "audioPlayerWithData")) {
            player = PlayerRequest{.path = entry.subject, .problem = {}};
        } else if (player && entry.message == messageOf("AudioPlayer", "setVolume")) {
            player->volume = std::strtof(entry.arguments.front().c_str(), nullptr);
        } else if (player && entry.message == messageOf("AudioPlayer", "play")) {
            player->isStarted = entry.answer == record::words(true);
        }
    }
    return player;
}

struct SoundProcess::State {
    State(const std::shared_ptr<const DeviceRoot>& root, desktop::DesktopAudio& audio)
        : files(root, redirections),
          propertyLists(root, redirections),
          libSystem(root, desktop::DeviceDescription().machine, desktop::kHomeDirectory),
          process(root, {&propertyLists, &files, &libSystem, &audio}) {}

    Redirections redirections;
    UnchangingFiles files;
    RedirectedPropertyLists propertyLists;
    UnchangingLibSystem libSystem;
    DeviceProcess process;
    simulator::ProcessRecording recording;  // of the platform that the process has set
};

SoundProcess::SoundProcess(const std::shared_ptr<const DeviceRoot>& root,
                           desktop::DesktopAudio& audio)
    : state_(std::make_unique<State>(root, audio)) {}

SoundProcess::~SoundProcess() = default;

desktop::Runtime& SoundProcess::runtime() {
    return state_->process.runtime();
}

void SoundProcess::startEngine() {
    core::registerClasses();
    core::installHooks();
    core::startSettings();
}

record::Record SoundProcess::takeRecord() {
    return state_->recording.take();
}

}  // namespace velmoranth::cli
