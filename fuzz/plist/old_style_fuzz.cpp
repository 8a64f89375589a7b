// Any bytes as old-style text, without the other forms being tried first.
#include "desktop/plist/readers.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static_cast<void>(velmoranth::desktop::parseOldStylePropertyList(
        std::string_view(reinterpret_cast<const char*>(bytes), size)));
    return 0;
}
