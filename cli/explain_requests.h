// The requests of velmoranth explain, as words of its command line or lines of a file.
#pragma once

#include "desktop/result/result.h"
#include "simulator/screens/question_rows.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// The word of the question the other way round, which no device is asked.
inline constexpr std::string_view kFileWord = "file";
// What stands for everything that there is.
inline constexpr std::string_view kAll = "*";

// "icon com.apple.Maps"; `bundle` as --bundle has it, "" for none. The problem is one of usage.
[[nodiscard]] desktop::Result<simulator::Question> readQuestion(
    const std::vector<std::string>& words, const std::string& bundle, int system);

// The words behind "--": such a request, an image's with its --bundle ID behind it or before "--".
[[nodiscard]] desktop::Result<simulator::Question> readCommandLine(std::vector<std::string> words,
                                                                   const std::string& bundle,
                                                                   int system);

// One a line, which may have --bundle ID behind it; lines that are empty or begin with "#" are
// skipped. "-" is standard input. Of a line that is no request the problem takes its place. A
// problem when the file cannot be read, or there are none or too many.
[[nodiscard]] desktop::Result<std::vector<desktop::Result<simulator::Question>>> readRequests(
    const std::string& path, int system);

}  // namespace velmoranth::cli
