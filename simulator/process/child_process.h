// The launcher's side of one simulated process: starting it, talking to it, and finding out how it
// ended. Private to the launcher.
#pragma once

#include "desktop/files/cleanup.h"
#include "desktop/result/result.h"
#include "simulator/process/launcher.h"
#include "simulator/process/protocol.h"
#include "simulator/process/unsent_record.h"

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::simulator {

class ChildProcess {
  public:
    // Starts this program again and hands it the request. The process has answered nothing yet.
    [[nodiscard]] static desktop::Result<std::unique_ptr<ChildProcess>> start(
        const ScreenRequest& request);

    // Ends the process if it has not ended.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // False when the process is gone.
    bool send(MessageKind kind, const std::string& payload = {});

    // The next message that is of the wanted kind; log lines and notices on the way are noted. A
    // process that ends, reports a problem, or does not answer in time is a problem; it is ended
    // then, unless it was only late and `whenLate` says to let it be.
    enum class WhenLate { end, letBe };
    [[nodiscard]] desktop::Result<Message> receive(MessageKind wanted,
                                                   std::chrono::milliseconds timeLimit,
                                                   WhenLate whenLate = WhenLate::end);

    // A screen that was asked for.
    [[nodiscard]] desktop::Result<RenderedScreen> receiveScreen(
        std::chrono::milliseconds timeLimit);

    [[nodiscard]] desktop::Result<Answer> receiveAnswer(std::chrono::milliseconds timeLimit);

    // What has been recorded since the last call of this.
    [[nodiscard]] record::Record takeRecord() { return notes_.takeRecord(); }

    // Whether a notice has come since the last call of this.
    [[nodiscard]] bool takeNotice();

    // Whether its screen has ever been told to start again.
    [[nodiscard]] bool isToStartAgain() const { return isToStartAgain_; }

    // Asks the process to end, and ends it when it has not within a moment.
    void stop();

    [[nodiscard]] pid_t processId() const { return pid_; }

  private:
    struct CloseLog {
        void operator()(std::FILE* file) const;
    };

    using LogFile = std::unique_ptr<std::FILE, CloseLog>;

    ChildProcess(pid_t pid, int descriptor, LogFile logFile, std::optional<UnsentRecord> unsent,
                 std::string deviceFolder);

    // Null for the destination "".
    [[nodiscard]] static desktop::Result<LogFile> openLog(const std::string& destination);
    void note(const std::string& line);
    // The pixels of the picture that was announced. Nothing, and the process is ended, when they
    // are no such picture.
    [[nodiscard]] desktop::Result<Picture> receivePixels(const ScreenHeader& header,
                                                         std::chrono::milliseconds timeLimit);
    // Reaps the process, ending it first when it is still there at the deadline. Its wait status.
    int reap(Clock::time_point deadline);
    // What became of a process that closed the connection.
    [[nodiscard]] desktop::Problem howItEnded();
    [[nodiscard]] desktop::Problem withLastLine(const std::string& message) const;

    pid_t pid_;  // 0 when reaped
    int descriptor_;
    LogFile logFile_;
    std::optional<UnsentRecord> unsent_;  // of a recorded one
    std::string deviceFolder_;
    desktop::DoneOnSignal interrupted_;
    std::vector<std::string> log_;
    std::size_t logBytes_ = 0;
    std::string lastLine_;
    bool noticed_ = false;
    bool isToStartAgain_ = false;
    RecordNotes notes_;
};

}  // namespace velmoranth::simulator
