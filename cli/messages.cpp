#include "cli/messages.h"

#include "desktop/plist/text_encoding.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace velmoranth::cli {
namespace {

constexpr std::size_t kLongest = 160;  // bytes of a name in a message
constexpr std::size_t kKept = 70;      // of each end of a longer one

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// Replaces what could move the cursor or break the line.
std::string oneLine(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = printableLength(text);
        line += length == 0 ? "?" : text.substr(0, length);
        text.remove_prefix(std::max<std::size_t>(desktop::characterLength(text), 1));
    }
    return line;
}

Colors& chosenColors() {
    static Colors colors = Colors::automatic;
    return colors;
}

bool colors(int descriptor) {
    if (chosenColors() != Colors::automatic) {
        return chosenColors() == Colors::always;
    }
    const char* const noColor = std::getenv("NO_COLOR");
    return (noColor == nullptr || *noColor == '\0') && ::isatty(descriptor) == 1;
}

// The errno of what could not be printed first.
int& printError() {
    static int error = 0;
    return error;
}

void writeMessage(std::string_view kind, std::string_view color, std::string_view message) {
    std::string line = "velmoranth: ";
    if (!kind.empty()) {
        const bool colored = colors(STDERR_FILENO);
        line += colored ? "\033[" + std::string(color) + "m" : "";
        line += kind;
        line += colored ? ":\033[0m " : ": ";
    }
    line += oneLine(message) + "\n";
    // One write: lines of several processes do not mix.
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

std::size_t printableLength(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    const std::size_t length = desktop::characterLength(text);
    const auto first = static_cast<unsigned char>(text.front());
    // U+0080 to U+009F are control characters too.
    const bool isC1 = length == 2 && first == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0;
    return first < 0x20 || first == 0x7F || isC1 ? 0 : length;
}

std::string shown(std::string_view text) {
    if (text.size() <= kLongest) {
        return oneLine(text);
    }
    std::size_t head = kKept;
    while (head > 0 && isContinuation(text[head])) {
        --head;
    }
    std::size_t tail = text.size() - kKept;
    while (tail < text.size() && isContinuation(text[tail])) {
        ++tail;
    }
    return oneLine(text.substr(0, head)) + "…" + oneLine(text.substr(tail));
}

std::string inQuotes(std::string_view text) {
    return "\"" + shown(text) + "\"";
}

std::string forShell(std::string_view word) {
    constexpr std::string_view kPlain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/._-+,:@%=";
    if (!isPlainText(word)) {
        return shown(word);
    }
    // A dash alone is standard input, which a user has written as "-".
    const std::string start = word.starts_with('-') && word != "-" ? "./" : "";
    if (!word.empty() && word.find_first_not_of(kPlain) == std::string_view::npos) {
        return start + std::string(word);
    }
    std::string quoted = "'" + start;
    for (const char letter : word) {
        quoted += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
    }
    return quoted + "'";
}

std::string counted(std::size_t count, std::string_view noun) {
    return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

bool isPlainText(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = printableLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

ExitCode fail(ExitCode code, std::string_view message) {
    writeMessage("error", kErrorColor, message);
    return code;
}

ExitCode fail(ExitCode code, const desktop::Problem& problem) {
    desktop::Problem shownProblem = problem;
    shownProblem.path = shown(problem.path);
    return fail(code, desktop::toLine(shownProblem));
}

void warn(std::string_view message) {
    writeMessage("warning", kWarningColor, message);
}

void warnOf(std::string_view message) {
    if (!message.empty()) {
        warn(message);
    }
}

void note(std::string_view message) {
    writeMessage("", "", message);
}

ProgressLine::ProgressLine() : isTerminal_(::isatty(STDERR_FILENO) == 1) {}

void ProgressLine::show(std::string_view text) {
    clear();
    if (isTerminal_) {
        std::fwrite(text.data(), 1, text.size(), stderr);
        std::fflush(stderr);
        isShown_ = true;
    }
}

void ProgressLine::clear() {
    if (isShown_) {
        std::fputs("\r\033[K", stderr);
        isShown_ = false;
    }
}

void print(std::string_view text) {
    if (printError() == 0 && std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
        printError() = errno == 0 ? EIO : errno;
    }
}

bool flushResults() {
    if (printError() == 0 && std::fflush(stdout) != 0) {
        printError() = errno == 0 ? EIO : errno;
    }
    return printError() == 0;
}

std::string whyNotPrinted() {
    std::string why = std::strerror(printError());
    why.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(why.front())));
    return why;
}

bool isReaderGone() {
    return printError() == EPIPE;
}

void setColors(Colors colors) {
    chosenColors() = colors;
}

std::string inColor(std::string_view color, std::string text) {
    return colors(STDOUT_FILENO) ? "\033[" + std::string(color) + "m" + text + "\033[0m"
                                 : std::move(text);
}

}  // namespace velmoranth::cli
