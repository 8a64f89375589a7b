#include "device/emulator/image.h"

#include <sys/mman.h>

#include <algorithm>

namespace velmoranth::emulator {

Image::Image(const MachOFile& file) : file_(file), size_(file.memorySize()) {
    // All of it may be written and run: what the system protects is no part of what is tested.
    void* const memory = mmap(nullptr, size_, PROT_READ | PROT_WRITE | PROT_EXEC,
                              MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw LoadError("no memory for the library");
    }
    base_ = reinterpret_cast<std::uint64_t>(memory);
    for (const Segment& segment : file.segments()) {
        std::ranges::copy(segment.contents,
                          reinterpret_cast<std::uint8_t*>(base_ + segment.address));
    }
}

const Section* Image::section(std::string_view name) const {
    const auto& sections = file_.sections();
    const auto found = std::ranges::find(sections, name, &Section::name);
    return found == sections.end() ? nullptr : &*found;
}

}  // namespace velmoranth::emulator
