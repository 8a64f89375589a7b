// The reader of the phone's own PNG variant, with the checksums put right.
#include "desktop/image_io/formats.h"
#include "desktop/image_io/image_io.h"

#include "repair.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmoranth::desktop;
    const DecodeLimits limits{.maxWidth = 256, .maxHeight = 256, .maxBytes = std::size_t{1} << 18};
    const auto image = image_io::decodePhonePng(fuzz::withRightChecksums({data, size}), limits);
    if (image && toPremultipliedBgra(*image).size() != image->samples->size()) {
        std::abort();
    }
    return 0;
}
