#include "tests/support/cases/case_runner.h"

#include "tests/support/cases/forked_case.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <iostream>
#include <map>
#include <regex>
#include <string_view>

namespace velmoranth::tests {

namespace {

// Becomes readable when a case's process ends.
std::array<int, 2> childEnded{-1, -1};
volatile std::sig_atomic_t toldToEnd = 0;

void noteSignal(int number) {
    if (number != SIGCHLD) {
        toldToEnd = number;
    }
    const int before = errno;
    [[maybe_unused]] const ssize_t written = write(childEnded[1], "", 1);
    errno = before;
}

std::vector<Case> allCases() {
    std::vector<Case> cases;
    const testing::UnitTest& tests = *testing::UnitTest::GetInstance();
    for (int i = 0; i < tests.total_test_suite_count(); ++i) {
        const testing::TestSuite& suite = *tests.GetTestSuite(i);
        for (int j = 0; j < suite.total_test_count(); ++j) {
            const testing::TestInfo& info = *suite.GetTestInfo(j);
            const std::string filter = std::string(suite.name()) + '.' + info.name();
            if (filter.starts_with("DISABLED_") || filter.find(".DISABLED_") != std::string::npos ||
                filter.find("/DISABLED_") != std::string::npos) {
                continue;
            }
            std::string name = filter;
            if (info.value_param() != nullptr) {
                name = filter.substr(0, filter.rfind('/') + 1) + info.value_param();
            }
            cases.push_back({filter, name});
        }
    }
    return cases;
}

bool hasOneOf(const std::string& name, const std::vector<std::string>& expressions) {
    return std::any_of(expressions.begin(), expressions.end(), [&](const std::string& expression) {
        return std::regex_search(name, std::regex(expression));
    });
}

std::optional<CaseOptions> parse(const std::vector<std::string>& words) {
    CaseOptions options;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i] == "--list") {
            options.list = true;
            continue;
        }
        if (words[i] == "--report") {
            options.report = true;
            continue;
        }
        if (i + 1 == words.size()) {
            return std::nullopt;
        }
        const std::string& value = words[i + 1];
        if (words[i] == "--jobs") {
            options.jobs = std::max(1U, static_cast<unsigned>(std::atoi(value.c_str())));
        } else if (words[i] == "--time-limit") {
            options.timeLimit = std::chrono::seconds(std::max(1, std::atoi(value.c_str())));
        } else if (words[i] == "--tokens") {
            options.tokens = std::atoi(value.c_str());
            fcntl(*options.tokens, F_SETFD, FD_CLOEXEC);
        } else if (words[i] == "--only") {
            options.only.push_back(value);
        } else if (words[i] == "--skip") {
            options.skip.push_back(value);
        } else {
            return std::nullopt;
        }
        ++i;
    }
    return options;
}

class Runner {
  public:
    explicit Runner(CaseOptions options) : options_(std::move(options)) {
        for (const Case& tested : allCases()) {
            if ((options_.only.empty() || hasOneOf(tested.name, options_.only)) &&
                !hasOneOf(tested.name, options_.skip)) {
                waiting_.push_back(tested);
            }
        }
    }

    int run() {
        if (options_.list) {
            for (const Case& tested : waiting_) {
                std::cout << tested.name << '\n';
            }
            return EXIT_SUCCESS;
        }
        while ((!waiting_.empty() || !running_.empty()) && toldToEnd == 0) {
            while (!waiting_.empty() && takeJob()) {
                running_.emplace_back(waiting_.front(), options_.timeLimit);
                waiting_.pop_front();
            }
            pause();
            collect();
        }
        if (toldToEnd != 0) {
            running_.clear();
            return 128 + toldToEnd;
        }
        if (!options_.report) {
            summarise();
        }
        const bool anyRan = counts_[CaseOutcome::passed] + counts_[CaseOutcome::skipped] > 0;
        return counts_[CaseOutcome::failed] == 0 && (anyRan || options_.report) ? EXIT_SUCCESS
                                                                                : EXIT_FAILURE;
    }

  private:
    bool takeJob() {
        if (!options_.tokens) {
            return running_.size() < options_.jobs;
        }
        eventfd_t token = 0;
        return eventfd_read(*options_.tokens, &token) == 0;
    }

    void giveJobBack() const {
        if (options_.tokens && eventfd_write(*options_.tokens, 1) != 0) {
            std::perror("a job cannot be given back");
            std::exit(EXIT_FAILURE);
        }
    }

    // Until a case has ended or must be ended, or a job is free.
    void pause() {
        std::vector<pollfd> events{{childEnded[0], POLLIN, 0}};
        if (options_.tokens && !waiting_.empty()) {
            events.push_back({*options_.tokens, POLLIN, 0});
        }
        auto wait = std::chrono::milliseconds(1000);
        for (const ForkedCase& running : running_) {
            wait = std::min(wait, std::chrono::ceil<std::chrono::milliseconds>(
                                      running.deadline() - ForkedCase::Clock::now()));
        }
        poll(events.data(), events.size(), std::max(0, static_cast<int>(wait.count())));
        std::array<char, 64> ends{};
        while (read(childEnded[0], ends.data(), ends.size()) > 0) {
        }
    }

    void collect() {
        for (auto running = running_.begin(); running != running_.end();) {
            if (!running->hasEnded()) {
                ++running;
                continue;
            }
            tell(running->result());
            running = running_.erase(running);
            giveJobBack();
        }
    }

    void tell(const CaseResult& result) {
        ++counts_[result.outcome];
        if (options_.report) {
            constexpr std::array<const char*, 3> kWords{"passed", "skipped", "failed"};
            std::cout << kWords.at(static_cast<std::size_t>(result.outcome)) << ' '
                      << result.seconds << ' ' << result.text.size() << ' ' << result.name << '\n'
                      << result.text << std::flush;
        } else if (result.outcome == CaseOutcome::failed) {
            std::cout << "== " << result.name << '\n' << result.text << std::flush;
        } else if (result.outcome == CaseOutcome::skipped) {
            std::cout << "skipped " << result.name << ": " << result.text << '\n';
        }
    }

    void summarise() {
        std::cout << counts_[CaseOutcome::passed] << " passed, " << counts_[CaseOutcome::failed]
                  << " failed, " << counts_[CaseOutcome::skipped] << " skipped\n";
    }

    CaseOptions options_;
    std::deque<Case> waiting_;
    std::vector<ForkedCase> running_;
    std::map<CaseOutcome, std::size_t> counts_;
};

}  // namespace

int runCases(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    const bool isPlain = std::any_of(words.begin(), words.end(), [](const std::string& word) {
        return word.starts_with("--gtest_") || word == "--help";
    });
    testing::InitGoogleTest(&argc, argv);
    if (isPlain) {
        return RUN_ALL_TESTS();
    }
    std::optional<CaseOptions> options = parse(words);
    if (!options) {
        std::cerr << argv[0]
                  << ": takes --jobs N, --time-limit SECONDS, --only REGEX, --skip REGEX, "
                     "--list, or options of GoogleTest\n";
        return 2;
    }
    if (pipe2(childEnded.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        std::perror("pipe");
        return EXIT_FAILURE;
    }
    struct sigaction action{};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGCHLD, SIGINT, SIGTERM, SIGHUP}) {
        sigaction(number, &action, nullptr);
    }
    return Runner(std::move(*options)).run();
}

}  // namespace velmoranth::tests
