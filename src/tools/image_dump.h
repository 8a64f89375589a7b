// For theme makers: writes every image that the system is asked to theme into a folder laid out
// like a theme. An existing file is never overwritten: the first image dumped under a name wins.
#pragma once

#include "platform/foundation.h"
#include "platform/uikit.h"

namespace velmoranth::tools {

class ImageDump {
  public:
    // Writes the image as PNG below /var/mobile/Library/VelmoranthImageDump, into UIImages when the
    // bundle is nil, else into the bundle's folder below Bundles, and for "IconBundles" into the
    // folder of that name as well. An image with no bitmap and no CIImage only logs a line.
    static void VelmoranthImageDumpNamedInBundle(const platform::ImageRef& image,
                                                 const platform::NullableString& name,
                                                 const platform::NullableString& bundle);

    // The MIME type that the first byte of the data tells, nil for any other byte and for no data.
    [[nodiscard]] static platform::NullableString contentTypeForImageData(
        const platform::Data& data);
};

}  // namespace velmoranth::tools
