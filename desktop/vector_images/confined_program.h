// Runs another program on a stranger's file: in a sandbox (sandbox.h), within bounds, the file on
// its standard input, what it makes from its standard output.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::desktop::vector_images {

struct ProgramLimits {
    std::size_t maxOutput = std::size_t{64} * 1024;           // bytes
    std::size_t maxMemory = std::size_t{1024} * 1024 * 1024;  // bytes of address space
    // Of the clock on the wall, and of the processor.
    std::chrono::milliseconds maxTime{10000};
};

enum class ProgramEnding { exited, killed, notStarted, timeUp, tooMuchOutput };

struct ProgramResult {
    ProgramEnding ending = ProgramEnding::notStarted;
    int exitCode = 0;  // of one that exited
    std::vector<std::uint8_t> output;
    std::string complaints;  // the beginning of what it wrote to standard error
};

// Where the program is: in the first folder of PATH that has one by this name. Folders that are not
// named from the root do not count.
[[nodiscard]] std::optional<std::string> findProgram(std::string_view name);

// Waits for it to end. It has no environment but the plain locale, dies with the calling thread,
// and need not read its input to the end.
[[nodiscard]] ProgramResult runConfined(const std::string& path,
                                        const std::vector<std::string>& arguments,
                                        std::span<const std::uint8_t> input,
                                        const ProgramLimits& limits);

}  // namespace velmoranth::desktop::vector_images
