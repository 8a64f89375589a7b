#include "cli/picture_file.h"

#include "cli/output_file.h"
#include "desktop/image_io/image_io.h"
#include "platform/foundation.h"

namespace velmoranth::cli {

using desktop::Result;

namespace {

constexpr const char* kWhat = "picture";

}  // namespace

Result<void> checkOutput(const std::string& path) {
    return checkOutputFile(path, kWhat);
}

Result<void> writePicture(const simulator::Picture& picture, const std::string& path) {
    const platform::Data bytes =
        desktop::encodePng(picture.pixels, picture.width, picture.height, picture.width * 4);
    if (bytes.empty()) {
        return tl::unexpected(desktop::Problem{"the screen came without a picture"});
    }
    return writeOutputFile(bytes, path, kWhat);
}

}  // namespace velmoranth::cli
