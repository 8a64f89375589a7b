// The command as a shell starts it, in processes of its own. What goes wrong ends the benchmark.
#pragma once

#include "tests/support/places.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

namespace velmoranth::benchmarks {

[[noreturn]] inline void fail(const std::string& message) {
    std::cerr << message << "\n";
    std::exit(1);
}

inline double processorSeconds(const rusage& usage) {
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

struct FinishedCommand {
    std::string errors;    // what it wrote to standard error
    double seconds = 0;    // of processors, of all its processes
    double megabytes = 0;  // the largest resident set of any of its processes
};

// Nobody sees what it writes to standard output.
inline FinishedCommand runCommand(std::vector<std::string> words, int code = 0) {
    words.insert(words.begin(), tests::kCommand);
    std::vector<char*> arguments;
    std::ranges::transform(words, std::back_inserter(arguments),
                           [](std::string& word) { return word.data(); });
    arguments.push_back(nullptr);
    std::array<int, 2> pipe{-1, -1};
    posix_spawn_file_actions_t actions;
    pid_t process = 0;
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0 || posix_spawn_file_actions_init(&actions) != 0 ||
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0) != 0 ||
        posix_spawn_file_actions_adddup2(&actions, pipe[1], STDERR_FILENO) != 0 ||
        ::posix_spawn(&process, tests::kCommand, &actions, nullptr, arguments.data(), environ) !=
            0) {
        fail(std::string(tests::kCommand) + ": cannot be started");
    }
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipe[1]);
    FinishedCommand done;
    std::array<char, 4096> some{};
    for (ssize_t got = 0; (got = ::read(pipe[0], some.data(), some.size())) > 0;) {
        done.errors.append(some.data(), static_cast<std::size_t>(got));
    }
    ::close(pipe[0]);
    int status = 0;
    rusage used{};
    if (::wait4(process, &status, 0, &used) != process || !WIFEXITED(status) ||
        WEXITSTATUS(status) != code) {
        fail(words[1] + ": did not end with " + std::to_string(code) + ": " + done.errors);
    }
    done.seconds = processorSeconds(used);
    done.megabytes = static_cast<double>(used.ru_maxrss) / 1024;
    return done;
}

}  // namespace velmoranth::benchmarks
