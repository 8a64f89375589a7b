// A file of sound, in memory or on a device, read from anywhere in it. Copies are the same file.
#pragma once

#include "desktop/files/device_root.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace velmoranth::desktop {

class SoundFile {
  public:
    // Bytes in memory; `name` is what messages call them.
    [[nodiscard]] static SoundFile ofData(platform::Data bytes, std::string name);
    // A regular file of the device; nothing of it is read yet. Fails when it is missing,
    // unreadable, a folder or anything else that is no file, without waiting for a named pipe's
    // other end.
    [[nodiscard]] static Result<SoundFile> open(const DeviceRoot& root, const std::string& path);

    [[nodiscard]] const std::string& name() const;
    // Bytes, when it was opened.
    [[nodiscard]] std::uint64_t size() const;
    // The number of bytes read, fewer than asked for at the end or after an error.
    [[nodiscard]] std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const;

  private:
    struct Contents;

    explicit SoundFile(std::shared_ptr<const Contents> contents);

    std::shared_ptr<const Contents> contents_;
};

}  // namespace velmoranth::desktop
