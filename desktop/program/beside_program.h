// What comes with the program that this process runs, wherever the program was put.
#pragma once

#include "desktop/result/result.h"

#include <span>
#include <string>
#include <string_view>

namespace velmoranth::desktop {

// The first of the places, paths seen from the program's own folder, that can be read. Fails with
// the places that were tried; `what` begins the sentence.
[[nodiscard]] Result<std::string> findBesideProgram(std::string_view what,
                                                    std::span<const std::string_view> places);

}  // namespace velmoranth::desktop
