// A build without libheif.
#include "desktop/vector_images/backends.h"

namespace velmoranth::desktop::vector_images {

std::optional<Problem> drawHeif(Bytes /*file*/, HeifTurns /*turns*/, Sheet& /*sheet*/) {
    return Problem{.message =
                       "HEIF files cannot be read: HEIF needs a build with libheif "
                       "(-DVELMORANTH_HEIF=ON)"};
}

std::string heifLibrary() {
    return "no libheif";
}

}  // namespace velmoranth::desktop::vector_images
