#include "desktop/vector_images/process_limits.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>

namespace velmoranth::desktop::vector_images {
namespace {

// Processor time has a hard limit of the system beside that of the one who waits, who may be gone.
constexpr rlim_t kMoreSeconds = 2;

void limit(decltype(RLIMIT_AS) resource, rlim_t most) {
    rlimit now{};
    if (getrlimit(resource, &now) == 0) {
        now.rlim_cur = std::min(now.rlim_cur, most);
        now.rlim_max = std::min(now.rlim_max, most);
        setrlimit(resource, &now);
    }
}

}  // namespace

pid_t forkWithoutSignals(const std::function<void(pid_t parent)>& life) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child == 0) {
        life(parent);
        _exit(1);
    }
    const int error = errno;
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
    return child;
}

void restoreSignals() {
    for (int number = 1; number < NSIG; ++number) {
        std::signal(number, SIG_DFL);
    }
    sigset_t none;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

void limitResources(const Bounds& bounds) {
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0);
    limit(RLIMIT_CPU, static_cast<rlim_t>(bounds.time.count() / 1000) + kMoreSeconds);
    if (bounds.memory) {
        limit(RLIMIT_AS, *bounds.memory);
    }
}

}  // namespace velmoranth::desktop::vector_images
