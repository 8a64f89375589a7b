#include "cli/text_lines.h"

#include "desktop/files/descriptor.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <utility>

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;

Result<std::unique_ptr<TextLines>> TextLines::open(const std::string& path, std::string_view what) {
    std::unique_ptr<TextLines> lines(new TextLines(path == "-" ? "standard input" : path));
    lines->input_ = &std::cin;
    if (path != "-") {
        // A folder can be opened and gives no line.
        struct stat status{};
        errno = 0;
        const bool isFolder = ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
        if (!isFolder) {
            lines->file_.open(path);
        }
        if (!lines->file_.is_open()) {
            Problem problem = desktop::problemOfErrno(isFolder ? EISDIR : errno, path);
            problem.message = fmt::format("{} cannot be read: {}", what, problem.message);
            return tl::unexpected(std::move(problem));
        }
        lines->input_ = &lines->file_;
    }
    return lines;
}

bool TextLines::next() {
    line_.clear();
    char c = 0;
    bool any = false;
    while (!isTooLong() && input_->get(c)) {
        any = true;
        if (c == '\n') {
            break;
        }
        line_ += c;
    }
    if (line_.ends_with('\r')) {
        line_.pop_back();
    }
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (++number_ == 1 && line_.starts_with(kByteOrderMark)) {
        line_.erase(0, kByteOrderMark.size());
    }
    return any;
}

std::string TextLines::tooLong() {
    return fmt::format("the line is longer than {} bytes", kLongestLine);
}

Problem TextLines::problemHere(const std::string& message) const {
    return problem(fmt::format("line {}: {}", number_, message));
}

Problem TextLines::problem(std::string message) const {
    return {std::move(message), name_};
}

std::vector<std::string> wordsOf(std::string_view line) {
    constexpr std::string_view kBlanks = " \t";
    std::vector<std::string> words;
    for (std::size_t begin = line.find_first_not_of(kBlanks); begin != std::string_view::npos;) {
        const std::size_t end = std::min(line.find_first_of(kBlanks, begin), line.size());
        words.emplace_back(line.substr(begin, end - begin));
        begin = line.find_first_not_of(kBlanks, end);
    }
    return words;
}

}  // namespace velmoranth::cli
