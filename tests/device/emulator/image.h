// A library in this process's memory. Addresses are those of the file (the library's first byte is
// at 0); whatever is read or written through them is checked to lie inside.
#pragma once

#include "device/emulator/load_error.h"
#include "device/emulator/macho_file.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace velmoranth::emulator {

class Image {
  public:
    // Takes memory for the library and copies its segments there.
    explicit Image(const MachOFile& file);

    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;
    ~Image() = default;  // a loaded library stays

    [[nodiscard]] std::uint64_t base() const { return base_; }

    [[nodiscard]] std::uint64_t end() const { return base_ + size_; }

    template <class T>
    [[nodiscard]] T& at(std::uint64_t address) const {
        if (address > size_ || sizeof(T) > size_ - address) {
            throw LoadError("an address outside of the library: " + std::to_string(address));
        }
        return *reinterpret_cast<T*>(base_ + address);
    }

    // A pointer to the library's memory, as its data have them once they are rebased.
    [[nodiscard]] bool contains(std::uint64_t pointer) const {
        return pointer >= base_ && pointer < end();
    }

    template <class T>
    [[nodiscard]] T& behind(std::uint64_t pointer) const {
        return at<T>(pointer - base_);
    }

    // Nothing when the library has no such section.
    [[nodiscard]] const Section* section(std::string_view name) const;

    // Calls `use` with each pointer that a section consists of.
    template <class Use>
    void eachPointer(std::string_view sectionName, Use use) const {
        if (const Section* const found = section(sectionName)) {
            for (std::uint64_t offset = 0; offset + 8 <= found->size; offset += 8) {
                use(at<std::uint64_t>(found->address + offset));
            }
        }
    }

  private:
    const MachOFile& file_;
    std::uint64_t base_ = 0;
    std::uint64_t size_ = 0;
};

}  // namespace velmoranth::emulator
