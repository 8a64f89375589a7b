#include "desktop/vector_images/drawing_process.h"

#include "desktop/vector_images/process_limits.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <new>
#include <string>
#include <string_view>

namespace velmoranth::desktop::vector_images {

// The beginning of the shared memory; the pixels follow it.
struct SharedHead {
    std::atomic<bool> done;  // all that follows is written
    bool failed;
    double pointWidth;
    double pointHeight;
    std::uint32_t width;
    std::uint32_t height;
    std::array<char, 512> message;  // ends with a zero
};

namespace {

constexpr std::size_t kHeadBytes = 4096;  // a page, so that the pixels begin on one
static_assert(sizeof(SharedHead) <= kHeadBytes);

// Memory that parent and child share; pages cost when they are touched.
class SharedMemory {
  public:
    explicit SharedMemory(std::size_t size)
        : size_(size),
          start_(mmap(nullptr, size, PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)) {
        if (isMapped()) {
            new (start_) SharedHead{};
        }
    }

    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;

    ~SharedMemory() {
        if (isMapped()) {
            munmap(start_, size_);
        }
    }

    [[nodiscard]] bool isMapped() const { return start_ != MAP_FAILED; }

    [[nodiscard]] SharedHead& head() const { return *static_cast<SharedHead*>(start_); }

    [[nodiscard]] std::uint8_t* pixels() const {
        return static_cast<std::uint8_t*>(start_) + kHeadBytes;
    }

  private:
    std::size_t size_;
    void* start_;
};

void setMessage(SharedHead& head, std::string_view message) {
    const std::size_t size = std::min(message.size(), head.message.size() - 1);
    std::transform(
        message.begin(), message.begin() + static_cast<std::ptrdiff_t>(size), head.message.begin(),
        [](char letter) { return static_cast<unsigned char>(letter) < 0x20 ? ' ' : letter; });
    head.message.at(size) = '\0';
    head.failed = true;
}

// Pages of address space that this process has now; 0 when the system does not say.
std::size_t addressSpacePages() {
    std::array<char, 64> text{};
    const int file = open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return 0;
    }
    const ssize_t size = read(file, text.data(), text.size() - 1);
    close(file);
    return size > 0 ? std::strtoull(text.data(), nullptr, 10) : 0;
}

void confine(const DrawLimits& limits) {
    restoreSignals();
    const std::size_t pages = addressSpacePages();
    limitResources({.memory = pages == 0 ? std::nullopt
                                         : std::optional(pages * static_cast<std::size_t>(
                                                                     sysconf(_SC_PAGESIZE)) +
                                                         limits.maxWorkingBytes),
                    .time = limits.maxTime});
    // Libraries tell their complaints to the terminal; ours are the problems.
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nowhere >= 0) {
        dup2(nowhere, STDIN_FILENO);
        dup2(nowhere, STDOUT_FILENO);
        dup2(nowhere, STDERR_FILENO);
    }
}

// The life of the drawing process.
[[noreturn]] void draw(pid_t parent, const SharedMemory& memory, const DrawLimits& limits,
                       const Drawing& drawing) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(EXIT_FAILURE);  // it died before it could be followed
    }
    confine(limits);
    SharedHead& head = memory.head();
    try {
        Sheet sheet(head, memory.pixels(), limits);
        if (const auto problem = drawing(sheet)) {
            setMessage(head, problem->message);
        }
    } catch (const std::bad_alloc&) {
        setMessage(head, "drawing it takes too much memory");
    } catch (const std::exception& error) {
        setMessage(head, error.what());
    }
    head.done.store(true, std::memory_order_release);
    _exit(EXIT_SUCCESS);  // nothing of the parent's is flushed or destroyed twice
}

enum class Ending { exited, crashed, timeUp };

// Asks now and then instead of waiting for a signal: handlers and masks are the program's own.
Ending waitFor(pid_t child, std::chrono::milliseconds maxTime) {
    const auto deadline = std::chrono::steady_clock::now() + maxTime;
    timespec pause{.tv_sec = 0, .tv_nsec = 100'000};
    bool killed = false;
    while (true) {
        int status = 0;
        const pid_t ended = waitpid(child, &status, killed ? 0 : WNOHANG);
        if (ended == child) {
            if (killed || (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU)) {
                return Ending::timeUp;
            }
            return WIFSIGNALED(status) ? Ending::crashed : Ending::exited;
        }
        if (ended < 0 && errno != EINTR) {
            return killed ? Ending::timeUp : Ending::exited;  // somebody else saw it end
        }
        if (ended == 0) {
            if (std::chrono::steady_clock::now() >= deadline) {
                kill(child, SIGKILL);
                killed = true;
                continue;
            }
            nanosleep(&pause, nullptr);
            pause.tv_nsec = std::min(pause.tv_nsec * 5 / 4, 5'000'000L);
        }
    }
}

tl::unexpected<Problem> refuse(std::string message) {
    return tl::unexpected(Problem{.message = std::move(message)});
}

}  // namespace

Sheet::Sheet(SharedHead& head, std::uint8_t* pixels, const DrawLimits& limits)
    : head_(head), pixels_(pixels), limits_(limits) {}

void Sheet::setSize(PointSize size) {
    head_.pointWidth = size.width;
    head_.pointHeight = size.height;
}

Result<std::uint8_t*> Sheet::picture(double width, double height) {
    if (!(width >= 1) || !(height >= 1)) {
        return refuse("the picture has no pixels");
    }
    // Whole numbers below 2^53 in doubles, so neither the comparison nor the product overflows.
    if (width > limits_.maxWidth || height > limits_.maxHeight ||
        width * height * 4 > static_cast<double>(limits_.maxBytes)) {
        return refuse(
            fmt::format("a picture of {:.0f} × {:.0f} pixels is beyond the limit", width, height));
    }
    head_.width = static_cast<std::uint32_t>(width);
    head_.height = static_cast<std::uint32_t>(height);
    return pixels_;
}

Result<Drawn> drawInProcess(const DrawLimits& limits, Room room, const Drawing& drawing) {
    const std::size_t pixelBytes = room == Room::picture ? limits.maxBytes : 0;
    const SharedMemory memory(kHeadBytes + pixelBytes);
    if (!memory.isMapped()) {
        return refuse("there is not enough memory to draw it");
    }
    const pid_t child =
        forkWithoutSignals([&](pid_t parent) { draw(parent, memory, limits, drawing); });
    if (child < 0) {
        return refuse(fmt::format("a process to draw it cannot be started: {}",
                                  std::strerror(errno)));  // NOLINT(concurrency-mt-unsafe)
    }
    const Ending ending = waitFor(child, limits.maxTime);
    const SharedHead& head = memory.head();
    if (!head.done.load(std::memory_order_acquire)) {
        return ending == Ending::timeUp
                   ? refuse("drawing it takes longer than " +
                            (limits.maxTime.count() % 1000 == 0
                                 ? fmt::format("{} s", limits.maxTime.count() / 1000)
                                 : fmt::format("{} ms", limits.maxTime.count())))
                   : refuse(
                         "the library that draws it stopped: the file is damaged, or drawing it "
                         "takes too much memory");
    }
    if (head.failed) {
        // A process that was taken over may have written anything.
        return refuse(
            std::string(head.message.data(), strnlen(head.message.data(), head.message.size())));
    }
    Drawn drawn{.size = {.width = head.pointWidth, .height = head.pointHeight}, .image = {}};
    if (room == Room::picture) {
        drawn.image.width = head.width;
        drawn.image.height = head.height;
        const std::size_t bytes = std::size_t{drawn.image.width} * drawn.image.height * 4;
        if (drawn.image.width > limits.maxWidth || drawn.image.height > limits.maxHeight ||
            bytes > pixelBytes) {
            return refuse("the library that draws it went out of its bounds");
        }
        drawn.image.bgra.assign(memory.pixels(), memory.pixels() + bytes);
    }
    return drawn;
}

}  // namespace velmoranth::desktop::vector_images
