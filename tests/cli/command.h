// Runs the command itself, as built, and keeps what it said.
#pragma once

#include <sys/resource.h>
#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::cli {

struct CommandResult {
    int code = -1;   // exit code; -1 when it was ended by a signal
    int signal = 0;  // that ended it
    std::string output;
    std::string errors;
};

struct CommandSetting {
    std::string folder = ".";                           // its working folder
    std::map<std::string, std::string> variables = {};  // of its environment, besides ours
    bool asNobody = false;                              // without root's rights
    std::string program = {};                           // another than the one that was built
    std::string input = {};   // a file to be standard input; the test's own otherwise
    std::string errors = {};  // a terminal to take standard error; CommandResult has it otherwise
    std::map<int, rlim_t> limits = {};  // of resources, such as RLIMIT_FSIZE
    bool isRead = true;                 // off: whoever would read standard output has gone already
};

// For the rest of this process, which is root's; false when it may not.
[[nodiscard]] bool becomeNobody();

// A command that is running.
class RunningCommand {
  public:
    explicit RunningCommand(const std::vector<std::string>& words,
                            const CommandSetting& setting = {});
    ~RunningCommand();
    RunningCommand(const RunningCommand&) = delete;
    RunningCommand& operator=(const RunningCommand&) = delete;

    void signal(int number) const;
    // Waits until standard output or standard error holds the text; false when it did not in time.
    [[nodiscard]] bool waitForText(const std::string& text,
                                   std::chrono::milliseconds time = std::chrono::seconds(60));
    // Waits for its end.
    CommandResult finish();

  private:
    // Takes what has come, waiting at most that long; false when both ends are closed.
    bool receive(std::chrono::milliseconds time);

    pid_t process_ = -1;
    int outputEnd_ = -1;
    int errorsEnd_ = -1;
    CommandResult result_;
};

[[nodiscard]] CommandResult runCommand(const std::vector<std::string>& words,
                                       const CommandSetting& setting = {});

// What the command, which has to succeed, says on a terminal; nothing when no terminal is to be
// had.
[[nodiscard]] std::optional<std::string> errorsOnTerminal(const std::vector<std::string>& words,
                                                          const CommandSetting& setting);

}  // namespace velmoranth::cli
