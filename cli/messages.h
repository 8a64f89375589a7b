// What the command says: results on standard output, one line a message on standard error, and the
// exit codes. Nothing else of the command prints.
#pragma once

#include "desktop/result/result.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace velmoranth::cli {

enum class ExitCode {
    done = 0,
    nothingFound = 1,  // or: findings
    wrongUsage = 2,
    badInput = 3,  // also: a file that cannot be written, a process that crashed
};

// A name or path as it may stand in a message: control characters and bytes that are no UTF-8 as
// "?", a very long one with "…" for its middle.
[[nodiscard]] std::string shown(std::string_view text);

// The same between quotation marks.
[[nodiscard]] std::string inQuotes(std::string_view text);

// A word of a command line that a shell reads as this one again: in single quotes where it needs
// them, "./" before a dash. One that holds what may not be shown comes out as shown().
[[nodiscard]] std::string forShell(std::string_view word);

// How many bytes the character at the start has when it is UTF-8 and no control character, else 0.
[[nodiscard]] std::size_t printableLength(std::string_view text);

// "1 picture", "2 pictures".
[[nodiscard]] std::string counted(std::size_t count, std::string_view noun);

// Whether it is UTF-8 without control characters.
[[nodiscard]] bool isPlainText(std::string_view text);

// "velmoranth: error: MESSAGE" on standard error, as one line whatever the message holds. Gives the
// code back, to be returned.
ExitCode fail(ExitCode code, std::string_view message);
ExitCode fail(ExitCode code, const desktop::Problem& problem);

// "velmoranth: warning: MESSAGE" on standard error.
void warn(std::string_view message);

// The same of a message that there may be; nothing of an empty one.
void warnOf(std::string_view message);

// "velmoranth: MESSAGE" on standard error: neither a result nor a fault.
void note(std::string_view message);

// One line on standard error that says how far long work is, when that is a terminal; nothing
// otherwise. Gone when the object goes.
class ProgressLine {
  public:
    ProgressLine();

    ~ProgressLine() { clear(); }

    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(std::string_view text);
    void clear();

  private:
    const bool isTerminal_;
    bool isShown_ = false;
};

// Text to standard output as it stands; nothing once some of it could not be written.
void print(std::string_view text);

// Whether everything that was printed has arrived.
[[nodiscard]] bool flushResults();

// Why not, in words.
[[nodiscard]] std::string whyNotPrinted();

// Whether nobody reads standard output any more, as behind "| head -1": what is left to print need
// not be found out, and nothing is said of it.
[[nodiscard]] bool isReaderGone();

// When results and messages are coloured. automatic: on a terminal, unless NO_COLOR is set to
// something; so it is until setColors() says otherwise.
enum class Colors { automatic, always, never };
void setColors(Colors colors);

inline constexpr std::string_view kErrorColor = "1;31";
inline constexpr std::string_view kWarningColor = "1;33";
inline constexpr std::string_view kFaintColor = "2";

// A piece of a result, in that colour where results may be coloured.
[[nodiscard]] std::string inColor(std::string_view color, std::string text);

}  // namespace velmoranth::cli
