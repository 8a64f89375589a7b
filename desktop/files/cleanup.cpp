#include "desktop/files/cleanup.h"

#include "desktop/files/descriptor.h"
#include "desktop/files/other_threads.h"

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
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
    std::vector<std::string> folders;  // that go when they are empty
    std::vector<const std::function<void()>*> work;
    int held = 0;  // what has to be whole before a signal is followed
    std::condition_variable released;
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

// Whether nothing is left of the process but its number.
bool hasEnded(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/stat");
    const std::string text{std::istreambuf_iterator<char>(status), {}};
    // "12 (name) Z ...", where the name may hold anything.
    const std::size_t name = text.rfind(')');
    return name == std::string::npos || name + 2 >= text.size() || text[name + 2] == 'Z' ||
           text[name + 2] == 'X';
}

// Of the process's first thread; the others' take care of themselves.
void endChildrenOf(pid_t process) {
    const std::string name = std::to_string(process);
    std::ifstream children("/proc/" + name + "/task/" + name + "/children");
    std::vector<pid_t> ended;
    for (pid_t child = 0; children >> child;) {
        if (child != ::getpid()) {
            ::kill(child, SIGKILL);
            ended.push_back(child);
        }
    }
    // What they hold open goes a moment later.
    constexpr int kMostLooks = 200;
    for (int look = 0; look < kMostLooks && !std::ranges::all_of(ended, hasEnded); ++look) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
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

void removeRegistered() {
    for (const std::function<void()>* const work : registry().work) {
        (*work)();
    }
    for (const std::string& path : registry().paths) {
        removeAll(path);
    }
    for (const std::string& folder : registry().folders) {
        ::rmdir(folder.c_str());
    }
}

// Cleans up in a process of its own, which has a copy of all that it takes, while no thread of this
// one goes on making what is being removed. False when there can be no such process.
bool cleanUpWithoutOthers() {
    const pid_t self = ::getpid();
    std::array<int, 2> line{-1, -1};
    if (::pipe2(line.data(), O_CLOEXEC) != 0) {
        return false;
    }
    const pid_t cleaner = ::fork();
    if (cleaner == 0) {
        ::close(line[1]);
        char go = 0;
        // Nothing comes when the process has ended by itself meanwhile, and cleaned up. The lock is
        // a copy here, for which nobody waits.
        // NOLINTNEXTLINE(clang-analyzer-unix.BlockInCriticalSection)
        if (::read(line[0], &go, 1) == 1) {
            endChildrenOf(self);
            removeRegistered();
        }
        _exit(0);
    }
    if (cleaner > 0) {
        stopOtherThreads();
        static_cast<void>(::write(line[1], "", 1) == 1);
        while (::waitpid(cleaner, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    ::close(line[0]);
    ::close(line[1]);
    return cleaner > 0;
}

void watch() {
    const sigset_t set = watchedSignals();
    int number = 0;
    while (sigwait(&set, &number) != 0) {
    }
    // Kept locked: nothing new is made from here on.
    std::unique_lock lock(registry().mutex);
    registry().released.wait(lock, [] { return registry().held == 0; });
    if (!cleanUpWithoutOthers()) {
        endChildrenOf(::getpid());
        removeRegistered();
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
    // The thread that watches has them all the same.
    const std::lock_guard lock(registry().mutex);
    ++registry().held;
}

SignalsHeld::~SignalsHeld() {
    {
        const std::lock_guard lock(registry().mutex);
        --registry().held;
    }
    registry().released.notify_one();
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

DoneOnSignal::DoneOnSignal(std::function<void()> work) : work_(std::move(work)) {
    const std::lock_guard lock(registry().mutex);
    registry().work.push_back(&work_);
}

DoneOnSignal::~DoneOnSignal() {
    const std::lock_guard lock(registry().mutex);
    std::erase(registry().work, &work_);
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

RemovedIfEmpty::RemovedIfEmpty(std::string folder) : folder_(std::move(folder)) {
    const std::lock_guard lock(registry().mutex);
    registry().folders.push_back(folder_);
}

RemovedIfEmpty::~RemovedIfEmpty() {
    ::rmdir(folder_.c_str());
    const std::lock_guard lock(registry().mutex);
    std::erase(registry().folders, folder_);
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
