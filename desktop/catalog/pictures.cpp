#include "desktop/catalog/pictures.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>

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

}  // namespace

std::vector<const Rendition*> picturesOf(const Catalog& catalog, const Facet& facet) {
    std::map<std::string, const Rendition*> oldest;
    for (const std::size_t index : catalog.renditionsOf(facet)) {
        const Rendition& rendition = catalog.renditions()[index];
        if (!rendition.isPicture()) {
            continue;
        }
        const Rendition*& kept = oldest[keyOfAllCopies(catalog, rendition)];
        if (kept == nullptr || catalog.attribute(rendition, Attribute::deploymentTarget) <
                                   catalog.attribute(*kept, Attribute::deploymentTarget)) {
            kept = &rendition;
        }
    }
    std::vector<const Rendition*> pictures;
    pictures.reserve(oldest.size());
    for (const auto& [key, rendition] : oldest) {
        pictures.push_back(rendition);
    }
    // All are elements of one vector, so their addresses are in its order.
    std::sort(pictures.begin(), pictures.end());
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
