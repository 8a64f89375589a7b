#include "desktop/files/file_calls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace velmoranth::desktop {
namespace {

// Some file systems do not have the flag; then the look beforehand is the best there is.
int renameWithoutReplacing(int folder, const char* name, int newFolder, const char* newName) {
    if (::renameat2(folder, name, newFolder, newName, RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return -1;
    }
    struct stat status{};
    if (::fstatat(newFolder, newName, &status, AT_SYMLINK_NOFOLLOW) == 0) {
        errno = EEXIST;
        return -1;
    }
    return ::renameat(folder, name, newFolder, newName);
}

}  // namespace

FileCalls::FileCalls()
    : openat([](int folder, const char* name, int flags, unsigned mode) {
          return ::openat(folder, name, flags, mode);
      }),
      write(::write),
      fsync(::fsync),
      renameat(::renameat),
      renameNoReplace(renameWithoutReplacing) {}

}  // namespace velmoranth::desktop
