#include "simulator/process/child_process.h"

#include "desktop/files/device_root.h"
#include "desktop/notifications/notification_center.h"

#include <fcntl.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): kill() and sigabbrev_np() are POSIX's
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <thread>
#include <utility>

namespace velmoranth::simulator {
namespace {

using desktop::Problem;

// What is kept of the log for one picture; a process that writes more is not to take our memory.
constexpr std::size_t kMaxLogBytes = std::size_t{16} * 1024 * 1024;
constexpr std::chrono::milliseconds kTimeToEnd{2000};
constexpr std::chrono::milliseconds kReapInterval{2};

tl::unexpected<Problem> systemProblem(const std::string& what, int error) {
    return tl::unexpected(Problem{what + ": " + std::strerror(error)});
}

void removeSockets(const std::string& deviceFolder) {
    if (const auto root = desktop::DeviceRoot::open(deviceFolder)) {
        desktop::removeDeadSockets(**root);
    }
}

// Starts this program with its socket at kSimulatedProcessDescriptor. Standard output goes where
// standard error goes: what the caller prints there is its own. An errno, or 0.
int spawnSelf(int socket, const std::optional<UnsentRecord>& unsent, pid_t& pid) {
    posix_spawn_file_actions_t actions;
    if (const int error = posix_spawn_file_actions_init(&actions); error != 0) {
        return error;
    }
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, STDERR_FILENO, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, socket, kSimulatedProcessDescriptor);
    if (unsent) {
        posix_spawn_file_actions_adddup2(&actions, unsent->descriptor(), kUnsentRecordDescriptor);
    }
    std::string name = "simulated-process";
    std::string argument(kSimulatedProcessArgument);
    const std::array<char*, 3> arguments{name.data(), argument.data(), nullptr};
    const int error =
        posix_spawn(&pid, "/proc/self/exe", &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

std::string seconds(std::chrono::milliseconds time) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%g s", static_cast<double>(time.count()) / 1000);
    return text.data();
}

}  // namespace

void ChildProcess::CloseLog::operator()(std::FILE* file) const {
    if (file != stderr) {
        std::fclose(file);
    }
}

ChildProcess::ChildProcess(pid_t pid, int descriptor, LogFile logFile,
                           std::optional<UnsentRecord> unsent, std::string deviceFolder)
    : pid_(pid),
      descriptor_(descriptor),
      logFile_(std::move(logFile)),
      unsent_(std::move(unsent)),
      deviceFolder_(std::move(deviceFolder)),
      interrupted_([folder = deviceFolder_] { removeSockets(folder); }) {}

desktop::Result<std::unique_ptr<ChildProcess>> ChildProcess::start(const ScreenRequest& request) {
    auto logFile = openLog(request.logDestination);
    if (!logFile) {
        return tl::unexpected(std::move(logFile.error()));
    }
    std::optional<UnsentRecord> unsent;
    if (request.isRecorded) {
        auto made = UnsentRecord::make();
        if (!made) {
            return tl::unexpected(std::move(made.error()));
        }
        unsent = std::move(*made);
    }
    std::array<int, 2> sockets{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()) != 0) {
        return systemProblem("no connection to a simulated process can be made", errno);
    }
    // Away from the numbers that others get in the other process.
    const int theirs = fcntl(sockets[1], F_DUPFD_CLOEXEC, kFreeDescriptors);
    const int duplicateError = errno;
    close(sockets[1]);
    pid_t pid = 0;
    const int error = theirs < 0 ? duplicateError : spawnSelf(theirs, unsent, pid);
    if (theirs >= 0) {
        close(theirs);
    }
    if (error != 0) {
        close(sockets[0]);
        return systemProblem("no simulated process can be started", error);
    }
    std::unique_ptr<ChildProcess> child(new ChildProcess(
        pid, sockets[0], std::move(*logFile), std::move(unsent), request.deviceFiles.folder));
    child->send(MessageKind::request, toJson(request));  // the first answer tells the rest
    return child;
}

ChildProcess::~ChildProcess() {
    stop();
    close(descriptor_);
}

desktop::Result<ChildProcess::LogFile> ChildProcess::openLog(const std::string& destination) {
    if (destination.empty()) {
        return LogFile();
    }
    LogFile file(destination == "-" ? stderr : std::fopen(destination.c_str(), "ae"));
    if (file == nullptr) {
        return tl::unexpected(Problem{
            std::string("the log cannot be written: ") + std::strerror(errno), destination});
    }
    return file;
}

void ChildProcess::note(const std::string& line) {
    lastLine_ = line;
    if (logFile_ != nullptr) {
        std::fprintf(logFile_.get(), "%s\n", line.c_str());
        std::fflush(logFile_.get());
    }
    if (logBytes_ <= kMaxLogBytes) {
        logBytes_ += line.size();
        log_.push_back(logBytes_ <= kMaxLogBytes ? line : "(further lines are left out)");
    }
}

bool ChildProcess::send(MessageKind kind, const std::string& payload) {
    return pid_ != 0 && sendMessage(descriptor_, kind, payload, Clock::now() + kTimeToEnd);
}

desktop::Result<Message> ChildProcess::receive(MessageKind wanted,
                                               std::chrono::milliseconds timeLimit,
                                               WhenLate whenLate) {
    const Clock::time_point deadline = Clock::now() + timeLimit;
    if (pid_ == 0) {
        return tl::unexpected(Problem{"the simulated process has ended"});
    }
    const std::string late = "the simulated process did not answer within " + seconds(timeLimit);
    while (true) {
        // A message that has begun is taken whole, or nothing after it could be understood.
        if (whenLate == WhenLate::letBe && !waitForMessage(descriptor_, deadline)) {
            return tl::unexpected(withLastLine(late));
        }
        const Clock::time_point end =
            whenLate == WhenLate::letBe ? Clock::now() + kTimeToEnd : deadline;
        Message message;
        switch (receiveMessage(descriptor_, message, end)) {
            case Received::message:
                break;
            case Received::closed:
                return tl::unexpected(howItEnded());
            case Received::late:
                reap(Clock::now());
                return tl::unexpected(withLastLine(late));
            case Received::malformed:
                reap(Clock::now());
                return tl::unexpected(
                    withLastLine("the simulated process sent what is no message"));
        }
        if (message.kind == MessageKind::log) {
            note(message.payload);
        } else if (message.kind == MessageKind::problem) {
            reap(Clock::now() + kTimeToEnd);
            return tl::unexpected(
                fromJson<desktop::Problem>(message.payload)
                    .value_or(Problem{"the simulated process failed and did not say why"}));
        } else if (message.kind == MessageKind::notice) {
            noticed_ = true;
        } else if (message.kind == MessageKind::respring) {
            isToStartAgain_ = true;
            if (wanted == MessageKind::notice) {
                return tl::unexpected(Problem{"the screen is to start again"});
            }
        } else if (message.kind == MessageKind::recorded) {
            notes_.take(message.payload);
        }
        if (message.kind == wanted) {
            return message;
        }
    }
}

desktop::Result<RenderedScreen> ChildProcess::receiveScreen(std::chrono::milliseconds timeLimit) {
    auto described = receive(MessageKind::screen, timeLimit);
    if (!described) {
        return tl::unexpected(std::move(described.error()));
    }
    ScreenHeader header = fromJson<ScreenHeader>(described->payload).value_or(ScreenHeader());
    auto picture = receivePixels(header, timeLimit);
    if (!picture) {
        return tl::unexpected(std::move(picture.error()));
    }
    RenderedScreen screen;
    screen.picture = std::move(*picture);
    screen.icons = std::move(header.icons);
    screen.folder = std::move(header.folder);
    screen.page = header.page;
    screen.pageCount = header.pageCount;
    screen.peakMemoryBytes = header.peakMemoryBytes;
    screen.log = std::exchange(log_, {});
    logBytes_ = 0;
    screen.record = takeRecord();
    return screen;
}

desktop::Result<Picture> ChildProcess::receivePixels(const ScreenHeader& header,
                                                     std::chrono::milliseconds timeLimit) {
    auto drawn = receive(MessageKind::pixels, timeLimit);
    if (!drawn) {
        return tl::unexpected(std::move(drawn.error()));
    }
    std::vector<std::uint8_t>& bytes = drawn->pixels;
    if (header.width == 0 || header.height == 0 ||
        header.width > bytes.size() / header.height / 4 ||
        header.width * header.height * 4 != bytes.size()) {
        reap(Clock::now());
        return tl::unexpected(withLastLine("the simulated process sent what is no picture"));
    }
    return Picture{header.width, header.height, header.scale, std::move(bytes)};
}

desktop::Result<Answer> ChildProcess::receiveAnswer(std::chrono::milliseconds timeLimit) {
    auto described = receive(MessageKind::answer, timeLimit);
    if (!described) {
        return tl::unexpected(std::move(described.error()));
    }
    const auto header = fromJson<ScreenHeader>(described->payload);
    if (!header) {
        return tl::unexpected(fromJson<Problem>(described->payload)
                                  .value_or(Problem{"the simulated process gave no answer"}));
    }
    Answer answer;
    if (header->width > 0) {
        auto picture = receivePixels(*header, timeLimit);
        if (!picture) {
            return tl::unexpected(std::move(picture.error()));
        }
        answer.picture = std::move(*picture);
    }
    answer.record = takeRecord();
    return answer;
}

bool ChildProcess::takeNotice() {
    return std::exchange(noticed_, false);
}

void ChildProcess::stop() {
    if (pid_ != 0) {
        send(MessageKind::stop);
        reap(Clock::now() + kTimeToEnd);
    }
}

int ChildProcess::reap(Clock::time_point deadline) {
    int status = 0;
    const bool isThere = pid_ != 0;
    while (pid_ != 0) {
        const pid_t ended = waitpid(pid_, &status, WNOHANG);
        if (ended == pid_ || (ended < 0 && errno != EINTR)) {
            pid_ = 0;
        } else if (Clock::now() >= deadline) {
            kill(pid_, SIGKILL);
            while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
            }
            pid_ = 0;
        } else {
            std::this_thread::sleep_for(kReapInterval);
        }
    }
    // One that crashed or was ended has left its socket, and may have noted more than it sent.
    if (isThere) {
        removeSockets(deviceFolder_);
        if (unsent_) {
            notes_.take(unsent_->bytes());
        }
    }
    return status;
}

Problem ChildProcess::howItEnded() {
    const int status = reap(Clock::now() + kTimeToEnd);
    if (WIFSIGNALED(status)) {
        const char* const name = sigabbrev_np(WTERMSIG(status));
        return withLastLine("the simulated process crashed with " +
                            (name == nullptr ? "signal " + std::to_string(WTERMSIG(status))
                                             : "SIG" + std::string(name)));
    }
    return withLastLine("the simulated process ended early with status " +
                        std::to_string(WEXITSTATUS(status)));
}

Problem ChildProcess::withLastLine(const std::string& message) const {
    return Problem{lastLine_.empty() ? message + " before it logged anything"
                                     : message + " after logging: " + lastLine_};
}

}  // namespace velmoranth::simulator
