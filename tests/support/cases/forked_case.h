// One case of a test program in a process of its own.
#pragma once

#include "tests/support/cases/case_runner.h"

#include <sys/types.h>

#include <chrono>
#include <string>

namespace velmoranth::tests {

// A case as GoogleTest knows it.
struct Case {
    std::string filter;  // what selects it alone
    std::string name;    // with the value of its parameter, as people read it
};

class ForkedCase {
  public:
    using Clock = std::chrono::steady_clock;

    // Starts it; nothing of this process's input, output or errors reaches it.
    ForkedCase(const Case& tested, std::chrono::seconds timeLimit);
    // Ends it, and what it has started in its process group.
    ~ForkedCase();
    ForkedCase(ForkedCase&& other) noexcept;
    ForkedCase& operator=(ForkedCase&& other) noexcept;

    [[nodiscard]] Clock::time_point deadline() const { return deadline_; }

    // Whether it has ended by now, or must be ended since its time is over. Then result() is there.
    [[nodiscard]] bool hasEnded();
    [[nodiscard]] CaseResult result() const;

  private:
    void end();

    std::string name_;
    pid_t process_ = -1;
    int printed_ = -1;  // a file in memory: what it printed
    int verdict_ = -1;  // and another: how it went, by its own word
    Clock::time_point start_;
    Clock::time_point deadline_;
    double seconds_ = 0;
    int status_ = 0;
    bool tookTooLong_ = false;
};

}  // namespace velmoranth::tests
