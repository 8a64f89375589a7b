// Listing, copying and removing files and folders with all they hold, by folder descriptors and
// names alone: nothing here follows a link.
#pragma once

#include "desktop/files/file_calls.h"

#include <string>
#include <vector>

namespace velmoranth::desktop {

// Adds the names in an open folder, without "." and "..", in no order. 0, or the errno; what was
// read until then stays.
[[nodiscard]] int namesIn(int folder, std::vector<std::string>& names);

// Adds every regular file in and below an open folder, by its name with the folders on the way:
// "Icons/a.png", in no order. 0, or the errno of what could not be listed; what was found until
// then stays.
[[nodiscard]] int filesBelow(int folder, std::vector<std::string>& files);

// Copies `name` in `folder` to `newName` in `newFolder`, which must not exist. Links are copied as
// links; modes, times and extended attributes are kept, the owner where that is allowed; a folder's
// own are set after its contents. 0, or the errno of what failed first; what was copied until then
// stays.
[[nodiscard]] int copyTree(const FileCalls& calls, int folder, const std::string& name,
                           int newFolder, const std::string& newName);

// Removes `name` in `folder`, a link itself. 0, or the errno of what failed first.
[[nodiscard]] int removeTree(int folder, const std::string& name);

// Writes all of it, resuming after short writes. 0, or the errno.
[[nodiscard]] int writeWhole(const FileCalls& calls, int file, const void* bytes,
                             std::size_t count);

}  // namespace velmoranth::desktop
