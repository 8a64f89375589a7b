// The few system calls whose failing no test can bring about as root (a full disk, a folder on
// another volume, a missing right): the file manager makes them through this record, and a test
// puts a failing one in its place.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdio>
#include <functional>

namespace velmoranth::desktop {

struct FileCalls {
    // As the calls of these names; -1 with errno set on failure. The defaults are the calls.
    std::function<int(int folder, const char* name, int flags, unsigned mode)> openat;
    std::function<ssize_t(int file, const void* bytes, std::size_t count)> write;
    std::function<int(int file)> fsync;
    std::function<int(int folder, const char* name, int newFolder, const char* newName)> renameat;
    // renameat2 with RENAME_NOREPLACE.
    std::function<int(int folder, const char* name, int newFolder, const char* newName)>
        renameNoReplace;

    FileCalls();
};

}  // namespace velmoranth::desktop
