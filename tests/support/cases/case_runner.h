// Runs a program's cases, each in a process of its own: the system's state is process-wide, so a
// case begins as a fresh process would, but forked from one that is loaded already.
//
//     PROGRAM [--jobs N] [--time-limit SECONDS] [--only REGEX]... [--skip REGEX]... [--list]
//
// prints what failed, what was skipped and why, and a last line of counts. With an option of
// GoogleTest's own the cases run in this very process, as a debugger wants them.
// scripts/run_tests.py runs several programs together: --report writes a record a case for it,
// --tokens FD shares its jobs.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::tests {

struct CaseOptions {
    unsigned jobs = 1;
    std::chrono::seconds timeLimit{120};  // of one case, which is ended then and has failed
    std::vector<std::string>
        only;  // regular expressions; a case whose name has one of them, all when empty
    std::vector<std::string> skip;  // and none of these
    bool list = false;              // prints the names and runs nothing
    bool report = false;
    std::optional<int> tokens;  // an eventfd that counts the jobs that may run, shared by programs
};

enum class CaseOutcome { passed, skipped, failed };

struct CaseResult {
    std::string name;
    CaseOutcome outcome = CaseOutcome::failed;
    double seconds = 0;
    std::string text;  // why it was skipped; what a failed one printed
};

// Runs the program's cases as its arguments say. The value is main's: 0 when none failed, 1 when
// one did or there was none to run, 2 when the arguments are wrong.
int runCases(int argc, char** argv);

// What the program is besides, when it starts itself again; the value is main's. A program that has
// such a part sets it before main.
using OtherMain = std::optional<int> (*)(int argc, char** argv);
inline OtherMain otherMain = nullptr;

}  // namespace velmoranth::tests
