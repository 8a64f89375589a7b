// A theme to begin with: every kind of file once, each drawn in code, in the colour that its maker
// asks for.
#pragma once

#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmoranth::makers {

struct Starter {
    std::string name;                // of the theme, without ".theme"
    std::string author;              // "" for nobody
    std::uint32_t color = 0x2F6F73;  // 0xRRGGBB
};

struct StarterFile {
    std::string name;  // in the theme, with its folders
    platform::Data bytes;
};

// Its files, in the order of their names. The same starter gives the same bytes.
[[nodiscard]] std::vector<StarterFile> starterFiles(const Starter& starter);

// Writes them as the new folder `path`, which is there as a whole or not at all.
[[nodiscard]] desktop::Result<void> writeStarter(const Starter& starter, const std::string& path);

}  // namespace velmoranth::makers
