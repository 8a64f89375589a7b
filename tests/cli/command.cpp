#include "tests/cli/command.h"

#include "tests/support/places.h"

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): kill() is POSIX's
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): setenv() is POSIX's
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <thread>

namespace velmoranth::cli {

bool becomeNobody() {
    constexpr unsigned kNobody = 65534;
    return ::setgroups(0, nullptr) == 0 && ::setgid(kNobody) == 0 && ::setuid(kNobody) == 0;
}

RunningCommand::RunningCommand(const std::vector<std::string>& words,
                               const CommandSetting& setting) {
    std::array<int, 2> output{};
    std::array<int, 2> errors{};
    if (::pipe2(output.data(), O_CLOEXEC) != 0 || ::pipe2(errors.data(), O_CLOEXEC) != 0) {
        ADD_FAILURE() << "no pipe";
        return;
    }
    std::string program = setting.program.empty() ? tests::kCommand : setting.program;
    std::vector<char*> arguments{program.data()};
    std::vector<std::string> copies = words;
    for (std::string& word : copies) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    if (!setting.isRead) {
        ::close(output[0]);
        output[0] = -1;
    }
    process_ = ::fork();
    if (process_ == 0) {
        ::dup2(output[1], STDOUT_FILENO);
        const int terminal =
            setting.errors.empty() ? -1 : ::open(setting.errors.c_str(), O_WRONLY | O_NOCTTY);
        ::dup2(terminal >= 0 ? terminal : errors[1], STDERR_FILENO);
        if (!setting.input.empty()) {
            ::dup2(::open(setting.input.c_str(), O_RDONLY), STDIN_FILENO);
        }
        for (const auto& [name, value] : setting.variables) {
            ::setenv(name.c_str(), value.c_str(), 1);
        }
        bool isLimited = true;
        for (const auto& [resource, most] : setting.limits) {
            const rlimit limit{most, most};
            // The C library's header has a type of its own for the resource.
            isLimited =
                ::setrlimit(static_cast<__rlimit_resource>(resource), &limit) == 0 && isLimited;
        }
        if (isLimited && ::chdir(setting.folder.c_str()) == 0 &&
            (!setting.asNobody || becomeNobody())) {
            ::execv(program.c_str(), arguments.data());
        }
        ::_exit(126);
    }
    ::close(output[1]);
    ::close(errors[1]);
    outputEnd_ = output[0];
    errorsEnd_ = errors[0];
}

RunningCommand::~RunningCommand() {
    if (process_ > 0) {
        ::kill(process_, SIGKILL);
        finish();
    }
}

void RunningCommand::signal(int number) const {
    ::kill(process_, number);
}

bool RunningCommand::receive(std::chrono::milliseconds time) {
    std::array<pollfd, 2> ends{{{outputEnd_, POLLIN, 0}, {errorsEnd_, POLLIN, 0}}};
    if (outputEnd_ < 0 && errorsEnd_ < 0) {
        return false;
    }
    ::poll(ends.data(), ends.size(), static_cast<int>(time.count()));
    const auto take = [](const pollfd& end, int& descriptor, std::string& text) {
        if (end.fd < 0 || end.revents == 0) {
            return;
        }
        std::array<char, 65536> buffer{};
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        } else {
            ::close(descriptor);
            descriptor = -1;
        }
    };
    take(ends[0], outputEnd_, result_.output);
    take(ends[1], errorsEnd_, result_.errors);
    return true;
}

bool RunningCommand::waitForText(const std::string& text, std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (result_.output.find(text) == std::string::npos &&
           result_.errors.find(text) == std::string::npos) {
        if (std::chrono::steady_clock::now() > end || !receive(std::chrono::milliseconds(50))) {
            return false;
        }
    }
    return true;
}

CommandResult RunningCommand::finish() {
    while (process_ > 0 && receive(std::chrono::seconds(1))) {
    }
    int status = 0;
    if (process_ > 0 && ::waitpid(process_, &status, 0) == process_) {
        result_.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        result_.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
        process_ = -1;
    }
    return result_;
}

CommandResult runCommand(const std::vector<std::string>& words, const CommandSetting& setting) {
    return RunningCommand(words, setting).finish();
}

std::optional<std::string> errorsOnTerminal(const std::vector<std::string>& words,
                                            const CommandSetting& setting) {
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    std::array<char, 100> name{};
    if (terminal < 0 || ::grantpt(terminal) != 0 || ::unlockpt(terminal) != 0 ||
        ::ptsname_r(terminal, name.data(), name.size()) != 0 ||
        ::access(name.data(), R_OK | W_OK) != 0) {
        ::close(terminal);
        return std::nullopt;
    }
    std::string text;
    const auto take = [&] {
        std::array<char, 4096> buffer{};
        for (ssize_t count = 0; (count = ::read(terminal, buffer.data(), buffer.size())) > 0;) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        }
    };
    // A terminal holds little: it is read while the command writes.
    std::jthread reader([&](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            take();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
    CommandSetting onTerminal = setting;
    onTerminal.errors = name.data();
    const CommandResult result = runCommand(words, onTerminal);
    EXPECT_EQ(result.code, 0);
    reader.request_stop();
    reader.join();
    take();
    ::close(terminal);
    return text;
}

}  // namespace velmoranth::cli
