// Any bytes as a property list: read, and when they are one, written and read again.
#include "desktop/plist/property_lists.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace velmoranth::desktop;
    const auto value = parsePropertyList({bytes, size});
    if (value && !parsePropertyList(writeXmlPropertyList(*value))) {
        std::abort();
    }
    return 0;
}
