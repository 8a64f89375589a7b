// The lines of a list that a user wrote: a file, or standard input.
#pragma once

#include "desktop/result/result.h"

#include <cstddef>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

class TextLines {
  public:
    static constexpr std::size_t kLongestLine = 1000;  // bytes

    // "-" is standard input. The problem says that `what` ("the list of apps") cannot be read.
    [[nodiscard]] static desktop::Result<std::unique_ptr<TextLines>> open(const std::string& path,
                                                                          std::string_view what);

    // Takes the next line, without its end ("\n" or "\r\n") and without a byte order mark. False at
    // the end of the file. Of one that is longer than any the beginning is taken.
    bool next();

    [[nodiscard]] const std::string& line() const { return line_; }

    [[nodiscard]] bool isTooLong() const { return line_.size() > kLongestLine; }

    // What is wrong with such a line.
    [[nodiscard]] static std::string tooLong();

    // From 1.
    [[nodiscard]] std::size_t number() const { return number_; }

    // "line 3: MESSAGE", with the file's name.
    [[nodiscard]] desktop::Problem problemHere(const std::string& message) const;
    // With the file's name alone.
    [[nodiscard]] desktop::Problem problem(std::string message) const;

  private:
    explicit TextLines(std::string name) : name_(std::move(name)) {}

    std::string name_;
    std::ifstream file_;
    std::istream* input_ = nullptr;
    std::string line_;
    std::size_t number_ = 0;
};

// The words between blanks and tabs.
[[nodiscard]] std::vector<std::string> wordsOf(std::string_view line);

}  // namespace velmoranth::cli
