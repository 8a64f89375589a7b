// Somebody else's program: says which pictures a catalog has.
#include "desktop/catalog/catalog.h"
#include "desktop/catalog/pictures.h"

#include <iostream>

int main(int argc, char** argv) {
    using velmoranth::catalog::Catalog;
    const auto catalog = Catalog::open(argc > 1 ? argv[1] : "Assets.car");
    if (!catalog) {
        std::cerr << velmoranth::desktop::toLine(catalog.error()) << '\n';
        return 1;
    }
    for (const auto& rendition : catalog->renditions()) {
        const auto picture = catalog->decode(rendition);
        if (!picture) {
            std::cerr << velmoranth::desktop::toLine(picture.error()) << '\n';
            return 1;
        }
        std::cout << rendition.name << ' ' << picture->width << 'x' << picture->height << '\n';
    }
    for (const auto& facet : catalog->facets()) {
        std::cout << facet.name << ": " << picturesOf(*catalog, facet).size() << '\n';
    }
    return 0;
}
