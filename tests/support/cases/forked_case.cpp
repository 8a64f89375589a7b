#include "tests/support/cases/forked_case.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace velmoranth::tests {

namespace {

// The first character of a case's own verdict: without one it ended before its test did.
constexpr char kDone = '.';
constexpr char kSkipped = '-';

std::string contentsOf(int file) {
    std::string text;
    std::array<char, 16384> part{};
    for (off_t place = 0;;) {
        const ssize_t size = pread(file, part.data(), part.size(), place);
        if (size <= 0) {
            return text;
        }
        text.append(part.data(), static_cast<std::size_t>(size));
        place += size;
    }
}

// The reason that the case gave; nothing when it was not skipped.
std::optional<std::string> skippedBecause() {
    const testing::UnitTest& tests = *testing::UnitTest::GetInstance();
    for (int i = 0; i < tests.total_test_suite_count(); ++i) {
        const testing::TestSuite& suite = *tests.GetTestSuite(i);
        for (int j = 0; j < suite.total_test_count(); ++j) {
            const testing::TestInfo& info = *suite.GetTestInfo(j);
            if (!info.should_run() || !info.result()->Skipped()) {
                continue;
            }
            for (int k = 0; k < info.result()->total_part_count(); ++k) {
                if (info.result()->GetTestPartResult(k).skipped()) {
                    return info.result()->GetTestPartResult(k).message();
                }
            }
        }
    }
    return std::nullopt;
}

[[noreturn]] void beTheCase(const std::string& filter, int printed, int verdict) {
    // What the case leaves running goes with it, and it goes with this program.
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGCHLD}) {
        std::signal(number, SIG_DFL);
    }
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    dup2(nothing, STDIN_FILENO);
    dup2(printed, STDOUT_FILENO);
    dup2(printed, STDERR_FILENO);
    close(nothing);

    testing::GTEST_FLAG(filter) = filter;
    testing::GTEST_FLAG(color) = "no";
    const int status = RUN_ALL_TESTS();
    const std::optional<std::string> reason = skippedBecause();
    const std::string word = reason ? kSkipped + *reason : std::string(1, kDone);
    const bool isWritten = write(verdict, word.data(), word.size()) >= 0;
    // As from main: what ends with the process is part of the test.
    std::exit(isWritten ? status : EXIT_FAILURE);
}

}  // namespace

ForkedCase::ForkedCase(const Case& tested, std::chrono::seconds timeLimit)
    : name_(tested.name),
      printed_(memfd_create("printed", MFD_CLOEXEC)),
      verdict_(memfd_create("verdict", MFD_CLOEXEC)),
      start_(Clock::now()),
      deadline_(start_ + timeLimit) {
    std::fflush(nullptr);
    process_ = fork();
    if (process_ == 0) {
        beTheCase(tested.filter, printed_, verdict_);
    }
    if (process_ < 0 || printed_ < 0 || verdict_ < 0) {
        std::perror("a case cannot be started");
        std::exit(EXIT_FAILURE);
    }
    setpgid(process_, process_);
}

ForkedCase::ForkedCase(ForkedCase&& other) noexcept {
    *this = std::move(other);
}

ForkedCase& ForkedCase::operator=(ForkedCase&& other) noexcept {
    std::swap(name_, other.name_);
    std::swap(process_, other.process_);
    std::swap(printed_, other.printed_);
    std::swap(verdict_, other.verdict_);
    std::swap(start_, other.start_);
    std::swap(deadline_, other.deadline_);
    std::swap(seconds_, other.seconds_);
    std::swap(status_, other.status_);
    std::swap(tookTooLong_, other.tookTooLong_);
    return *this;
}

ForkedCase::~ForkedCase() {
    if (process_ > 0) {
        end();
        waitpid(process_, nullptr, 0);
    }
    for (const int file : {printed_, verdict_}) {
        if (file >= 0) {
            close(file);
        }
    }
}

void ForkedCase::end() {
    kill(-process_, SIGKILL);
    kill(process_, SIGKILL);
}

bool ForkedCase::hasEnded() {
    if (process_ <= 0) {
        return true;
    }
    int options = WNOHANG;
    if (Clock::now() >= deadline_) {
        tookTooLong_ = true;
        end();
        options = 0;
    }
    if (waitpid(process_, &status_, options) != process_) {
        return false;
    }
    seconds_ = std::chrono::duration<double>(Clock::now() - start_).count();
    kill(-process_, SIGKILL);
    process_ = -1;
    return true;
}

CaseResult ForkedCase::result() const {
    CaseResult result{name_, CaseOutcome::failed, seconds_, {}};
    const std::string verdict = contentsOf(verdict_);
    const bool endedWell = WIFEXITED(status_) && WEXITSTATUS(status_) == EXIT_SUCCESS;
    if (endedWell && !tookTooLong_ && !verdict.empty()) {
        const bool isSkipped = verdict.front() == kSkipped;
        result.outcome = isSkipped ? CaseOutcome::skipped : CaseOutcome::passed;
        result.text = isSkipped ? verdict.substr(1) : "";
        return result;
    }
    result.text = contentsOf(printed_);
    if (tookTooLong_) {
        result.text += "\nended: it took too long\n";
    } else if (WIFSIGNALED(status_)) {
        result.text += "\nended by signal " + std::to_string(WTERMSIG(status_)) + " (" +
                       strsignal(WTERMSIG(status_)) + ")\n";
    } else if (verdict.empty()) {
        result.text +=
            "\nended with code " + std::to_string(WEXITSTATUS(status_)) + " before its test did\n";
    } else {
        result.text += "\nended with code " + std::to_string(WEXITSTATUS(status_)) + "\n";
    }
    return result;
}

}  // namespace velmoranth::tests
