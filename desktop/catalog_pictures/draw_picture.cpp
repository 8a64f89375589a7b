#include "desktop/catalog_pictures/draw_picture.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace velmoranth::desktop {

using catalog::Kind;
using catalog::Picture;

DrawnImage drawnImage(Picture picture) {
    const bool isBgra = picture.format == Picture::Format::bgra;
    return {picture.width, picture.height, isBgra ? std::move(picture.pixels) : toBgra(picture)};
}

Result<DrawnImage> drawPicture(const catalog::Catalog& catalog, const catalog::Rendition& rendition,
                               double scale) {
    if (rendition.kind == Kind::unreadable) {
        return tl::unexpected(Problem{rendition.problem});
    }
    if (rendition.kind != Kind::vector && rendition.kind != Kind::imageFile) {
        return catalog.decode(rendition).map(drawnImage);
    }
    return catalog.file(rendition).and_then([&](const std::vector<std::uint8_t>& file) {
        return rendition.kind == Kind::vector ? drawVector(file, scale)
                                              : decodeImageFile(file, rendition.orientation);
    });
}

}  // namespace velmoranth::desktop
