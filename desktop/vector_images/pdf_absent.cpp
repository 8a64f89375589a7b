// A build without poppler.
#include "desktop/vector_images/backends.h"

namespace velmoranth::desktop::vector_images {

std::optional<Problem> drawPdf(Bytes /*file*/, std::optional<double> /*scale*/, Sheet& /*sheet*/) {
    return Problem{.message = "PDF files cannot be drawn: this build has no poppler"};
}

std::string pdfLibrary() {
    return "no poppler";
}

}  // namespace velmoranth::desktop::vector_images
