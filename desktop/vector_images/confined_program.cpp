#include "desktop/vector_images/confined_program.h"

#include "desktop/vector_images/process_limits.h"
#include "desktop/vector_images/sandbox.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <utility>

namespace velmoranth::desktop::vector_images {
namespace {

constexpr int kNotStarted = 127;  // as shells have it
constexpr std::size_t kMaxComplaints = 4096;

class End {
  public:
    explicit End(int number = -1) : number_(number) {}

    End(End&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

    End& operator=(End&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    End(const End&) = delete;
    End& operator=(const End&) = delete;

    ~End() { close(); }

    void close() {
        if (number_ >= 0) {
            ::close(std::exchange(number_, -1));
        }
    }

    [[nodiscard]] int number() const { return number_; }

    [[nodiscard]] bool isOpen() const { return number_ >= 0; }

  private:
    int number_;
};

// Sockets: writing to one whose other end is gone need not raise a signal.
struct Line {
    End ours;
    End theirs;

    [[nodiscard]] bool isThere() const { return ours.isOpen() && theirs.isOpen(); }
};

// Behind the numbers that the program's own ends get, also where the caller has closed those.
End behindStandardOnes(const End& end) {
    return End(fcntl(end.number(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

Line makeLine() {
    std::array<int, 2> ends{-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return {End(), End()};
    }
    const End first(ends[0]);
    const End second(ends[1]);
    return {behindStandardOnes(first), behindStandardOnes(second)};
}

struct Lines {
    Line input = makeLine();
    Line output = makeLine();
    Line complaints = makeLine();

    [[nodiscard]] bool areThere() const {
        return input.isThere() && output.isThere() && complaints.isThere();
    }
};

struct Words {
    explicit Words(const std::string& path, const std::vector<std::string>& arguments) {
        all.push_back(const_cast<char*>(path.c_str()));
        for (const std::string& argument : arguments) {
            all.push_back(const_cast<char*>(argument.c_str()));
        }
        all.push_back(nullptr);
    }

    std::vector<char*> all;  // that exec wants, and does not change
};

void closeFrom(int first) {
    if (close_range(static_cast<unsigned>(first), ~0U, 0) != 0) {
        for (int number = first; number < 1024; ++number) {
            close(number);
        }
    }
}

// Between fork and exec: nothing is allocated.
[[noreturn]] void become(const std::string& path, const Words& words, const Lines& lines,
                         const Sandbox& sandbox, const ProgramLimits& limits, pid_t parent) {
    std::array<char, 9> locale{"LC_ALL=C"};
    const std::array<char*, 2> environment{locale.data(), nullptr};
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(kNotStarted);  // it died before it could be followed
    }
    restoreSignals();
    dup2(lines.input.theirs.number(), STDIN_FILENO);
    dup2(lines.output.theirs.number(), STDOUT_FILENO);
    dup2(lines.complaints.theirs.number(), STDERR_FILENO);
    if (!sandbox.enter()) {
        _exit(kNotStarted);
    }
    closeFrom(STDERR_FILENO + 1);
    // Last: where more than that is taken already, not even the stack may grow from here on.
    limitResources({.memory = limits.maxMemory, .time = limits.maxTime});
    execve(path.c_str(), words.all.data(), environment.data());
    _exit(kNotStarted);
}

// Writes what there is room for; closes the line when all is written or nobody reads.
void feed(End& line, std::span<const std::uint8_t>& rest) {
    while (!rest.empty()) {
        const ssize_t sent =
            send(line.number(), rest.data(), rest.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent < 0 && errno == EINTR) {
            continue;
        }
        if (sent < 0 && errno == EAGAIN) {
            return;
        }
        if (sent < 0) {
            break;
        }
        rest = rest.subspan(static_cast<std::size_t>(sent));
    }
    line.close();
}

// Hands on what has come; closes the line at its end.
template <class Take>
void drain(End& line, const Take& take) {
    std::array<std::uint8_t, 65536> room;  // NOLINT(cppcoreguidelines-pro-type-member-init)
    while (true) {
        const ssize_t came = recv(line.number(), room.data(), room.size(), MSG_DONTWAIT);
        if (came < 0 && errno == EINTR) {
            continue;
        }
        if (came < 0 && errno == EAGAIN) {
            return;
        }
        if (came <= 0) {
            line.close();
            return;
        }
        take(std::span(room).first(static_cast<std::size_t>(came)));
    }
}

// Until its output has ended, its time is up or it has written too much.
ProgramEnding exchange(Lines& lines, std::span<const std::uint8_t> input,
                       const ProgramLimits& limits, ProgramResult& result) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + limits.maxTime;
    bool tooMuch = false;
    while (lines.output.ours.isOpen() || lines.complaints.ours.isOpen()) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) {
            return ProgramEnding::timeUp;
        }
        // One that is closed has the number -1, which is passed over.
        std::array<pollfd, 3> watched{
            pollfd{.fd = lines.input.ours.number(), .events = POLLOUT, .revents = 0},
            pollfd{.fd = lines.output.ours.number(), .events = POLLIN, .revents = 0},
            pollfd{.fd = lines.complaints.ours.number(), .events = POLLIN, .revents = 0}};
        poll(watched.data(), watched.size(), static_cast<int>(std::min<long long>(left, 1000)));
        if (watched[0].revents != 0) {
            feed(lines.input.ours, input);
        }
        if (watched[1].revents != 0) {
            drain(lines.output.ours, [&](std::span<const std::uint8_t> bytes) {
                tooMuch = tooMuch || result.output.size() + bytes.size() > limits.maxOutput;
                if (!tooMuch) {
                    result.output.insert(result.output.end(), bytes.begin(), bytes.end());
                }
            });
        }
        if (watched[2].revents != 0) {
            drain(lines.complaints.ours, [&](std::span<const std::uint8_t> bytes) {
                const std::size_t room = kMaxComplaints - result.complaints.size();
                result.complaints.append(reinterpret_cast<const char*>(bytes.data()),
                                         std::min(room, bytes.size()));
            });
        }
        if (tooMuch) {
            return ProgramEnding::tooMuchOutput;
        }
    }
    return ProgramEnding::exited;
}

void waitUntilGone(pid_t child, ProgramResult& result) {
    int status = 0;
    pid_t ended = -1;
    do {
        ended = waitpid(child, &status, 0);
    } while (ended < 0 && errno == EINTR);
    if (result.ending != ProgramEnding::exited || ended != child) {
        return;
    }
    if (!WIFEXITED(status)) {
        result.ending = ProgramEnding::killed;
        return;
    }
    result.exitCode = WEXITSTATUS(status);
    if (result.exitCode == kNotStarted) {
        result.ending = ProgramEnding::notStarted;
    }
}

}  // namespace

std::optional<std::string> findProgram(std::string_view name) {
    const char* const path = std::getenv("PATH");
    std::string_view folders = path != nullptr ? path : "/usr/bin:/bin";
    while (!folders.empty()) {
        const std::size_t end = folders.find(':');
        const std::string_view folder = folders.substr(0, end);
        folders.remove_prefix(end == std::string_view::npos ? folders.size() : end + 1);
        std::string found = std::string(folder) + "/" + std::string(name);
        if (folder.starts_with('/') && access(found.c_str(), X_OK) == 0) {
            return found;
        }
    }
    return std::nullopt;
}

ProgramResult runConfined(const std::string& path, const std::vector<std::string>& arguments,
                          std::span<const std::uint8_t> input, const ProgramLimits& limits) {
    ProgramResult result;
    Lines lines;
    if (!lines.areThere()) {
        return result;
    }
    const Sandbox sandbox(path.substr(0, path.rfind('/') + 1).c_str());
    const Words words(path, arguments);
    const pid_t child = forkWithoutSignals(
        [&](pid_t parent) { become(path, words, lines, sandbox, limits, parent); });
    if (child < 0) {
        return result;
    }
    lines.input.theirs.close();
    lines.output.theirs.close();
    lines.complaints.theirs.close();
    result.ending = exchange(lines, input, limits, result);
    if (result.ending != ProgramEnding::exited) {
        kill(child, SIGKILL);
    }
    waitUntilGone(child, result);
    return result;
}

}  // namespace velmoranth::desktop::vector_images
