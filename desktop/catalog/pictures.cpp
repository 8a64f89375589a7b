#include "desktop/catalog/pictures.h"

#include "desktop/catalog/bitmap.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <string>
#include <utility>

namespace velmoranth::catalog {

namespace {

// What two copies of one picture have in common: their key without the deployment target. Bytes
// behind the last slot mean nothing.
std::string keyOfAllCopies(const Catalog& catalog, const Rendition& rendition) {
    const std::vector<std::uint16_t>& format = catalog.keyFormat();
    std::string key(rendition.key.begin(), rendition.key.end());
    key.resize(format.size() * 2);
    for (std::size_t slot = 0; slot < format.size(); ++slot) {
        if (format[slot] == static_cast<std::uint16_t>(Attribute::deploymentTarget)) {
            key[slot * 2] = 0;
            key[slot * 2 + 1] = 0;
        }
    }
    return key;
}

// Whether its compression, or that of the atlas that it is a part of, has a decoder. What is no
// bitmap at its end is not judged here.
bool hasDecoder(const Catalog& catalog, const Rendition& rendition) {
    constexpr int kMostLinks = 8;
    const Rendition* end = &rendition;
    for (int links = 0; end != nullptr && end->link && links < kMostLinks; ++links) {
        end = catalog.source(*end);
    }
    return end != nullptr && (!end->compression || isDecodable(*end->compression));
}

void sortCopies(const Catalog& catalog, PictureCopies& copies) {
    if (copies.size() > 1) {
        std::ranges::stable_sort(copies, {}, [&](const Rendition* copy) {
            return std::pair(!hasDecoder(catalog, *copy),
                             catalog.attribute(*copy, Attribute::deploymentTarget));
        });
    }
}

}  // namespace

std::vector<PictureCopies> copiesOf(const Catalog& catalog, const Facet& facet) {
    std::map<std::string, PictureCopies> found;
    for (const std::size_t index : catalog.renditionsOf(facet)) {
        const Rendition& rendition = catalog.renditions()[index];
        if (rendition.isPicture()) {
            found[keyOfAllCopies(catalog, rendition)].push_back(&rendition);
        }
    }
    std::vector<PictureCopies> pictures;
    pictures.reserve(found.size());
    for (auto& [key, copies] : found) {
        sortCopies(catalog, copies);
        pictures.push_back(std::move(copies));
    }
    // All are elements of one vector, so their addresses are in its order.
    std::ranges::sort(pictures, {}, [](const PictureCopies& copies) { return copies.front(); });
    return pictures;
}

std::vector<const Rendition*> picturesOf(const Catalog& catalog, const Facet& facet) {
    const std::vector<PictureCopies> copies = copiesOf(catalog, facet);
    std::vector<const Rendition*> pictures;
    pictures.reserve(copies.size());
    std::ranges::transform(copies, std::back_inserter(pictures),
                           [](const PictureCopies& picture) { return picture.front(); });
    return pictures;
}

double pictureScale(const Catalog& catalog, const Rendition& rendition) {
    if (rendition.scalePercent > 0) {
        return rendition.scalePercent / 100.0;
    }
    const std::uint16_t scale = catalog.attribute(rendition, Attribute::scale);
    return scale >= 1 && scale <= 3 ? scale : 1;
}

}  // namespace velmoranth::catalog
