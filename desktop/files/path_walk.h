// Resolving a path inside a folder without the kernel's help: one component at a time, links read
// and followed by hand. For kernels (and sandboxes) that refuse openat2.
#pragma once

#include <string>

namespace velmoranth::desktop {

// As open(2) on `path` would in a changed root at the folder `root`, O_CLOEXEC added. -1 with errno
// set on failure; more than 40 links fail with ELOOP, as the kernel has it.
[[nodiscard]] int openByWalk(int root, const std::string& path, int flags, unsigned mode);

}  // namespace velmoranth::desktop
