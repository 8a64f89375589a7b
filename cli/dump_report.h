// What `velmoranth dump` says of what it has made.
#pragma once

#include "makers/skeleton/skeleton.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::cli {

struct DumpedDevice {
    std::string name;
    int system = 13;
};

struct Dump {
    std::string folder;  // the theme's, or that of the system's own tree
    std::vector<DumpedDevice> devices;
    const makers::Skeleton* skeleton = nullptr;  // null for the system's own tree
    std::vector<std::string> raw = {};           // the files of that
    // How many files the folder had that it takes the place of; nothing when there was none.
    std::optional<std::size_t> replaced = {};
};

[[nodiscard]] std::string textOf(const Dump& dump);
// One object, as docs/themes/dump.md describes it.
[[nodiscard]] std::string jsonOf(const Dump& dump);

}  // namespace velmoranth::cli
