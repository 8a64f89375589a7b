// What a decoder returns when it fails.
#pragma once

#include "desktop/result/result.h"

#include <string>
#include <utility>

namespace velmoranth::catalog {

// `message` as Problem::message has it: a clause without a full stop.
[[nodiscard]] inline tl::unexpected<desktop::Problem> failure(std::string message) {
    return tl::unexpected(desktop::Problem{std::move(message)});
}

}  // namespace velmoranth::catalog
