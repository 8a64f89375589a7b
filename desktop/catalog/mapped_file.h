// A file mapped into memory for reading, so that a catalog of many megabytes costs only the pages
// that are looked at.
#pragma once

#include "desktop/result/result.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace velmoranth::catalog {

class MappedFile {
  public:
    // Fails when the file cannot be read, is no regular file, is empty, or has more bytes than
    // `maxBytes`.
    [[nodiscard]] static desktop::Result<MappedFile> open(const std::string& path,
                                                          std::size_t maxBytes);

    MappedFile(MappedFile&& other) noexcept;
    MappedFile& operator=(MappedFile&& other) noexcept;
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;
    ~MappedFile();

    // Stay where they are when the object is moved.
    [[nodiscard]] std::span<const std::uint8_t> bytes() const {
        return {static_cast<const std::uint8_t*>(start_), size_};
    }

  private:
    MappedFile(void* start, std::size_t size) : start_(start), size_(size) {}

    // What the descriptor is open on.
    [[nodiscard]] static desktop::Result<MappedFile> map(int file, const std::string& path,
                                                         std::size_t maxBytes);

    void* start_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace velmoranth::catalog
