// Files of themes that look as if they were meant for what was asked, and were not.
#pragma once

#include "cli/explanation.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::cli {

// `tried` are the files that were asked for (triedFiles()). Of several names that a file may have
// been meant for it is the nearest: one for the same scale, then the one of the fewest other
// letters. A file in the folder of another bundle is not meant.
[[nodiscard]] std::vector<NearMiss> nearMissesOf(const DeviceOfRun& device,
                                                 const std::vector<AskedFile>& tried);

// How far a file's name is from one that is looked for: whether it is one for another scale, then
// the number of other letters. The nearest is the least.
using Farness = std::pair<int, std::size_t>;
[[nodiscard]] Farness farness(const std::string& wanted, const std::string& name);

// The name without its folder, its scale, what stands for a size or a kind of device, and its
// extension, in small letters: what two files have in common that are meant for the same.
[[nodiscard]] std::string gistOf(std::string_view name);

// The regular files of a theme of the device, by their names in it, in order.
[[nodiscard]] std::vector<std::string> filesOfTheme(const desktop::DeviceRoot& root,
                                                    const std::string& theme);

}  // namespace velmoranth::cli
