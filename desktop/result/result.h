// What an operation outside the engine returns when it can fail: the value, or a problem in words
// that a user can act on.
#pragma once

#include <tl/expected.hpp>

#include <cstdint>
#include <optional>
#include <string>

namespace velmoranth::desktop {

struct Problem {
    // What is wrong, as a clause without a full stop: "the image is truncated".
    std::string message;
    // The file it is about, as the user knows it; empty when there is none.
    std::string path = {};
    // Where in the file, in bytes from its start.
    std::optional<std::uint64_t> offset = {};

    friend bool operator==(const Problem&, const Problem&) = default;
};

template <class T>
using Result = tl::expected<T, Problem>;

// One line for a person: "path: message (at byte N)".
[[nodiscard]] std::string toLine(const Problem& problem);

}  // namespace velmoranth::desktop
