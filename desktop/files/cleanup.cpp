#include "desktop/files/cleanup.h"

#include "desktop/files/descriptor.h"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace velmoranth::desktop {
namespace {

namespace fs = std::filesystem;

constexpr std::array<int, 3> kSignals{SIGINT, SIGTERM, SIGHUP};

// The thread that watches for signals never ends, so what it uses is never destroyed.
struct Registry {
    std::mutex mutex;
    std::vector<std::string> paths;
};

Registry& registry() {
    static auto* const kShared = new Registry;
    return *kShared;
}

// Folders that their owner may not change get in the way of removing what they hold.
void makeFoldersWritable(const std::string& path) {
    std::error_code ignored;
    if (!fs::is_directory(fs::symlink_status(path, ignored))) {
        return;
    }
    fs::permissions(path, fs::perms::owner_all, fs::perm_options::add, ignored);
    for (fs::recursive_directory_iterator entry(path, ignored), end; !ignored && entry != end;
         entry.increment(ignored)) {
        std::error_code alsoIgnored;
        if (fs::is_directory(entry->symlink_status(alsoIgnored))) {
            fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add,
                            alsoIgnored);
        }
    }
}

void removeAll(const std::string& path) {
    // A process that is just ending may still write there: a few turns.
    for (int turn = 0; turn < 5; ++turn) {
        std::error_code error;
        fs::remove_all(path, error);
        if (!error) {
            return;
        }
        makeFoldersWritable(path);
    }
}

void endChildren() {
    const std::string self = std::to_string(::getpid());
    std::ifstream children("/proc/self/task/" + self + "/children");
    for (pid_t child = 0; children >> child;) {
        ::kill(child, SIGKILL);
    }
}

void act(int signal, void (*handler)(int)) {
    struct sigaction action{};
    action.sa_handler = handler;
    sigaction(signal, &action, nullptr);
}

sigset_t watchedSignals() {
    sigset_t set;
    sigemptyset(&set);
    for (const int number : kSignals) {
        sigaddset(&set, number);
    }
    return set;
}

void watch() {
    const sigset_t set = watchedSignals();
    int number = 0;
    while (sigwait(&set, &number) != 0) {
    }
    endChildren();
    // Kept locked: nothing new is made from here on.
    registry().mutex.lock();
    for (const std::string& path : registry().paths) {
        removeAll(path);
    }
    act(number, SIG_DFL);
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
    ::kill(::getpid(), number);
    _exit(128 + number);
}

Result<std::unique_ptr<RemovedAtEnd>> makeUnder(std::string folder) {
    const SignalsHeld held;  // it is to be removed from the moment when it is there
    folder += "XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) {
        return tl::unexpected(problemOfErrno(errno, folder));
    }
    return std::make_unique<RemovedAtEnd>(folder);
}

}  // namespace

void cleanUpOnSignals() {
    // A reader that has gone and a file that grew too large are errors like others.
    act(SIGPIPE, SIG_IGN);
    act(SIGXFSZ, SIG_IGN);
    const sigset_t set = watchedSignals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    try {
        std::thread(watch).detach();
    } catch (const std::system_error&) {  // without it, a signal ends the process at once
        pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
    }
}

SignalsHeld::SignalsHeld() {
    act(SIGXFSZ, SIG_IGN);
    const sigset_t set = watchedSignals();
    pthread_sigmask(SIG_BLOCK, &set, &before_);
}

SignalsHeld::~SignalsHeld() {
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

RemovedAtEnd::RemovedAtEnd(std::string path) : path_(std::move(path)) {
    const std::lock_guard lock(registry().mutex);
    registry().paths.push_back(path_);
}

RemovedAtEnd::~RemovedAtEnd() {
    if (!path_.empty()) {
        removeAll(path_);
        keep();
    }
}

void RemovedAtEnd::keep() {
    const std::lock_guard lock(registry().mutex);
    std::erase(registry().paths, path_);
    path_.clear();
}

Result<std::unique_ptr<RemovedAtEnd>> makeTemporaryFolder() {
    std::error_code error;
    const std::filesystem::path place = std::filesystem::temp_directory_path(error);
    return makeUnder((error ? std::filesystem::path("/tmp") : place) / "velmoranth-");
}

Result<std::unique_ptr<RemovedAtEnd>> makeTemporaryFolderIn(const std::string& place) {
    return makeUnder(std::filesystem::path(place) / ".velmoranth-");
}

}  // namespace velmoranth::desktop
