// The pixels of a catalog's picture, whatever it is stored as: a bitmap, a part of an atlas, a
// vector or an image file. For all who show or write such pictures; the catalog itself knows of no
// drawing, and what draws knows of no catalog.
#pragma once

#include "desktop/catalog/catalog.h"
#include "desktop/vector_images/vector_images.h"

namespace velmoranth::desktop {

// `scale` is pixels a point and counts for vectors alone; all others have the pixels that are
// stored, image files upright. A problem for what is no picture and for what cannot be decoded.
[[nodiscard]] Result<DrawnImage> drawPicture(const catalog::Catalog& catalog,
                                             const catalog::Rendition& rendition, double scale);

// The decoded picture itself, as B, G, R, A.
[[nodiscard]] DrawnImage drawnImage(catalog::Picture picture);

}  // namespace velmoranth::desktop
