// What the engine asked the platform for, in order, as the process's recorder takes it down
// (record/): one line a request, "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/x.png",
// "log A line.". What came of it a test sees elsewhere. A test's own lines may stand between them.
// What a callback does stands below it, two blanks further in.
#pragma once

#include "record/recorder.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::tests {

// Its recorder is the process's while it lives. On any thread; what was taken down is read once
// those are at rest.
class Journal {
  public:
    Journal() { record::Recorder::setCurrent(&recorder_); }

    // A line of the test's own: what only it knows of.
    void write(std::string line) { recorder_.add({.message = std::move(line)}); }

    [[nodiscard]] std::vector<std::string> lines() const;

    // The lines that begin with `prefix`, whole, but for their blanks in front.
    [[nodiscard]] std::vector<std::string> linesWith(std::string_view prefix) const;
    [[nodiscard]] std::size_t count(std::string_view prefix) const;
    // The number of the first of them; throws when there is none.
    [[nodiscard]] std::size_t place(std::string_view prefix) const;
    // The log lines, without their "log ".
    [[nodiscard]] std::vector<std::string> log() const;

    void clear() { static_cast<void>(recorder_.take()); }

  private:
    record::Recorder recorder_;
};

// The lines of a callback that does what these tell.
[[nodiscard]] std::vector<std::string> calledBack(const std::string& callback,
                                                  const std::vector<std::string>& lines);

inline constexpr const char* kCopy = "-[NSFileManager copyItemAtPath:toPath:error:] ";
inline constexpr const char* kMove = "-[NSFileManager moveItemAtPath:toPath:error:] ";
inline constexpr const char* kSetMode = "-[NSFileManager setAttributes:ofItemAtPath:error:] ";

// The lines of operations that lead from one path to another.
[[nodiscard]] std::string copyLine(const std::string& source, const std::string& destination);
[[nodiscard]] std::string moveLine(const std::string& source, const std::string& destination);

// "60" or "60.5".
[[nodiscard]] std::string text(double number);

}  // namespace velmoranth::tests
