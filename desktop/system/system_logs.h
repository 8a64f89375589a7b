// Where log lines go: memory, a file, an open descriptor. Each may be written to from any thread;
// a line reaches a file or descriptor whole, in one write, so that several processes can share it.
#pragma once

#include "desktop/files/descriptor.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace velmoranth::desktop {

class LogToMemory final : public platform::SystemLog {
  public:
    void write(const std::string& line) override;

    // The lines so far, without line ends.
    [[nodiscard]] std::vector<std::string> lines() const;
    void clear();

  private:
    mutable std::mutex mutex_;
    std::vector<std::string> lines_;
};

// The descriptor stays the caller's and must outlive the log. What cannot be written is lost: a log
// that fails has nowhere to say so.
class LogToDescriptor final : public platform::SystemLog {
  public:
    explicit LogToDescriptor(int descriptor) : descriptor_(descriptor) {}

    void write(const std::string& line) override;

  private:
    int descriptor_;
};

class LogToFile final : public platform::SystemLog {
  public:
    // Opens a file of this machine to append to, made when it is missing.
    [[nodiscard]] static Result<std::unique_ptr<LogToFile>> open(const std::string& hostPath);

    void write(const std::string& line) override;

  private:
    explicit LogToFile(Descriptor file) : file_(std::move(file)) {}

    Descriptor file_;
};

}  // namespace velmoranth::desktop
