#include "desktop/files/other_threads.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <utility>

namespace velmoranth::desktop {
namespace {

std::atomic<std::size_t> stoppedCount = 0;

void stopHere(int /*signal*/) {
    stoppedCount.fetch_add(1);
    sigset_t all;
    sigfillset(&all);
    while (true) {
        sigsuspend(&all);
    }
}

class Told {
  public:
    // Tells threads that have not been told yet; false when there was none.
    bool tellNewOnes(int signal) {
        const int folder = open("/proc/self/task", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder < 0) {
            return false;
        }
        bool found = false;
        alignas(dirent64) std::array<char, 4096> entries{};
        long size = 0;
        while ((size = syscall(SYS_getdents64, folder, entries.data(), entries.size())) > 0) {
            for (long at = 0; at < size;) {
                const auto* const entry = reinterpret_cast<const dirent64*>(entries.data() + at);
                found = tell(static_cast<pid_t>(std::atoi(entry->d_name)), signal) || found;
                at += entry->d_reclen;
            }
        }
        close(folder);
        return found;
    }

    [[nodiscard]] std::size_t count() const { return count_; }

  private:
    // "." and ".." have the number 0.
    bool tell(pid_t thread, int signal) {
        const pid_t* const end = threads_.data() + count_;
        if (thread == 0 || thread == gettid() || count_ == threads_.size() ||
            std::find(std::as_const(threads_).data(), end, thread) != end ||
            syscall(SYS_tgkill, getpid(), thread, signal) != 0) {
            return false;
        }
        threads_.at(count_++) = thread;
        return true;
    }

    std::array<pid_t, 1024> threads_{};
    std::size_t count_ = 0;
};

}  // namespace

void stopOtherThreads() {
    const int signal = SIGRTMAX;  // which nobody else uses here
    struct sigaction action{};
    action.sa_handler = stopHere;
    sigfillset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
    Told told;
    constexpr int kTurns = 1000;
    constexpr timespec kMillisecond{.tv_sec = 0, .tv_nsec = 1'000'000};
    for (int turn = 0; turn < kTurns; ++turn) {
        if (!told.tellNewOnes(signal) && stoppedCount.load() >= told.count()) {
            return;
        }
        nanosleep(&kMillisecond, nullptr);
    }
}

}  // namespace velmoranth::desktop
