// NSFileManager over a device root, with the platform's rules, codes and wordings (as iOS 13 has
// them where releases differ). Every operation goes through descriptors inside the root.
#pragma once

#include "desktop/files/device_root.h"
#include "desktop/files/file_calls.h"
#include "platform/foundation.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace velmoranth::desktop {

// What is read into memory at most.
inline constexpr std::size_t kMaxDataBytes = std::size_t{256} * 1024 * 1024;

class DesktopFileManager : public platform::FileManager {
  public:
    explicit DesktopFileManager(std::shared_ptr<const DeviceRoot> root, FileCalls calls = {});

    [[nodiscard]] bool fileExistsAtPath(const std::string& path) override;
    [[nodiscard]] platform::FileExistence fileExistsAtPathIsDirectory(
        const std::string& path) override;
    platform::Failure setPosixPermissionsOfItemAtPath(unsigned mode,
                                                      const std::string& path) override;
    // A part that was copied before a failure stays, as on the platform.
    platform::Failure copyItemAtPathToPath(const std::string& source,
                                           const std::string& destination) override;
    platform::Failure moveItemAtPathToPath(const std::string& source,
                                           const std::string& destination) override;
    platform::Failure createDirectoryAtPathWithIntermediateDirectories(
        const std::string& path) override;
    bool createFileAtPathContents(const std::string& path, const platform::Data& contents) override;
    // A replaced file's mode is kept; a link at the path is replaced by a plain file.
    bool writeToFileAtomically(const platform::Data& contents, const std::string& path) override;
    platform::Failure removeItemAtPath(const std::string& path) override;
    // Nil for a file over kMaxDataBytes too.
    [[nodiscard]] std::optional<platform::Data> dataWithContentsOfFile(
        const std::string& path) override;

  private:
    // 0 when the folder is there or was made, else the errno. Its parent is there.
    [[nodiscard]] int makeFolder(const std::string& path);
    // Where something can be made; not open, with errno set, when there is something already.
    [[nodiscard]] FolderEntry placeFor(const std::string& path) const;
    // 0, or the errno.
    [[nodiscard]] int moveBetween(const FolderEntry& from, const FolderEntry& to) const;

    std::shared_ptr<const DeviceRoot> root_;
    FileCalls calls_;
};

}  // namespace velmoranth::desktop
