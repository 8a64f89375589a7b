// Files that are there as a whole or not at all: written beside their place, then put into it.
#pragma once

#include "desktop/files/cleanup.h"
#include "desktop/files/descriptor.h"
#include "desktop/files/file_calls.h"

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace velmoranth::desktop {

// A new file of a folder under a name that nobody looks for. Until it is placed it is gone with
// this object, and when a signal ends the process (cleanup.h).
class Replacement {
  public:
    // The calls must outlive it.
    Replacement(const FileCalls& calls, Descriptor folder)
        : calls_(&calls), folder_(std::move(folder)) {}

    // Makes the file, with what the umask leaves of the mode. 0, or the errno.
    [[nodiscard]] int write(std::span<const std::uint8_t> bytes, mode_t mode = 0666);
    // That of a regular file of that name; nothing where there is none.
    [[nodiscard]] std::optional<mode_t> modeOf(const std::string& name) const;
    // 0, or the errno.
    [[nodiscard]] int setMode(mode_t mode) const;
    // 0 once it is on the disk, or the errno.
    [[nodiscard]] int sync() const;
    // Puts it in the place of what has that name in the folder: nothing, a file, or a link itself.
    // 0, or the errno.
    [[nodiscard]] int place(const std::string& name);

  private:
    const FileCalls* calls_;
    Descriptor folder_;
    Descriptor file_;
    std::string name_;
    std::unique_ptr<RemovedAtEnd> temporary_;  // goes before the folder, by which it is named
};

// Writes a file of the folder: whole and on the disk, or as it was. A replaced file's mode is kept;
// of a link the link is replaced. 0, or the errno.
[[nodiscard]] int replaceFile(const FileCalls& calls, Descriptor folder, const std::string& name,
                              std::span<const std::uint8_t> bytes);

}  // namespace velmoranth::desktop
