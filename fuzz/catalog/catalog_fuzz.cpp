// Any bytes as a catalog, of which everything is asked: all renditions as pictures, files, colours
// and tables. What is handed out must fit its own sizes and the limits, however the bytes lie.
#include "desktop/catalog/catalog.h"
#include "desktop/catalog/pictures.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

using namespace velmoranth::catalog;

constexpr Limits kLimits{.maxFileBytes = 1U << 20U, .maxPixels = 1U << 16U, .maxBytes = 1U << 18U};

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

void usePicture(const Result<Picture>& picture) {
    if (!picture) {
        require(!picture.error().message.empty());
        return;
    }
    const std::size_t pixels = std::size_t{picture->width} * picture->height;
    require(pixels != 0 && pixels <= kLimits.maxPixels);
    require(picture->pixels.size() == pixels * Picture::bytesPerPixel(picture->format));
    require(toRgba(*picture).size() == pixels * 4 && toBgra(*picture).size() == pixels * 4);
}

void useRendition(const Catalog& catalog, const Rendition& rendition) {
    require((rendition.kind == Kind::unreadable) == !rendition.problem.empty());
    usePicture(catalog.decode(rendition));
    const auto file = catalog.file(rendition);
    require(!file || file->size() <= kLimits.maxBytes);
    static_cast<void>(catalog.color(rendition));
    static_cast<void>(catalog.iconSizes(rendition));
    static_cast<void>(catalog.facetOf(rendition));
    require(pictureScale(catalog, rendition) > 0);
    const Rendition* const source = catalog.source(rendition);
    require(source != nullptr || rendition.link);
    if (rendition.link && source != nullptr && !source->link) {
        if (const Result<Picture> atlas = catalog.decode(*source)) {
            usePicture(Catalog::part(*atlas, *rendition.link));
        }
    }
    static_cast<void>(catalog.attribute(rendition, Attribute::identifier));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto catalog = Catalog::fromBytes({bytes, size}, "fuzz", kLimits);
    if (!catalog) {
        require(!catalog.error().message.empty() && catalog.error().path == "fuzz");
        return 0;
    }
    require(catalog->renditions().size() <= size / 24);
    // Each may take as long as its own data does; all together what a person would wait for.
    std::size_t asked = 0;
    for (const Rendition& rendition : catalog->renditions()) {
        if (++asked > 64) {
            break;
        }
        useRendition(*catalog, rendition);
    }
    for (const Facet& facet : catalog->facets()) {
        require(catalog->facet(facet.name) != nullptr);
        const std::vector<std::size_t> places = catalog->renditionsOf(facet);
        for (const std::size_t place : places) {
            require(place < catalog->renditions().size());
        }
        require(picturesOf(*catalog, facet).size() <= places.size());
    }
    return 0;
}
