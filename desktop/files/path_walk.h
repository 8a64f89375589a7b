// Resolving a path inside a folder without the kernel's help: one component at a time, links read
// and followed by hand. For kernels (and sandboxes) that refuse openat2, and for what the kernel
// knows nothing of: folders that are grafted into the tree.
#pragma once

#include "desktop/files/descriptor.h"

#include <span>
#include <string>

namespace velmoranth::desktop {

// A folder that stands in the tree at a place where it does not lie, and that is not written to.
struct OpenGraft {
    std::string place;  // a path of the tree without links, as in "/Library/Themes/A"
    Descriptor folder;
};

struct Walked {
    Descriptor item = {};    // not open when it failed; errno is set then
    std::string place = {};  // the item's path without links; "" is the root
    bool isGrafted = false;
};

// As open(2) on `path` would in a changed root at the folder `root`, O_CLOEXEC added; more than 40
// links fail with ELOOP, as the kernel has it. What would write to a graft fails with EROFS.
[[nodiscard]] Walked openByWalk(int root, std::span<const OpenGraft> grafts,
                                const std::string& path, int flags, unsigned mode);

}  // namespace velmoranth::desktop
