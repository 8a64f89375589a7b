// "Did you mean" for the paths that a user gives: what lies beside a file or folder that is not
// there.
#pragma once

#include "desktop/result/result.h"

#include <span>
#include <string>

namespace velmoranth::cli {

// The nearest of the names beside it, as the user would have to write it; "" where none is near or
// the path leads to something.
[[nodiscard]] std::string nearPath(const std::string& path);

// The problem, with "; did you mean PATH?" when it is about one of the given paths and that leads
// to nothing.
[[nodiscard]] desktop::Problem withNearPath(desktop::Problem problem,
                                            std::span<const std::string> given);

}  // namespace velmoranth::cli
