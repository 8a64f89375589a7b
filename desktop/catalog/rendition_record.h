// The record of a rendition: fixed fields, a list of properties, and the payload.
#pragma once

#include "desktop/catalog/budget.h"
#include "desktop/catalog/catalog.h"

#include <cstdint>

namespace velmoranth::catalog {

// The numbers that decide what a rendition holds; all others from 10 to 50 are pictures.
enum class Layout : std::uint16_t {
    effect = 7,
    firstPicture = 10,
    lastPicture = 50,
    data = 1000,
    imageStack = 1002,
    link = 1003,
    atlas = 1004,
    color = 1009,
    iconSizes = 1010,
    solidImageStack = 1018,
    iconStack = 1019,
    iconGroup = 1020,
};

// Everything but the key. A damaged record gives a rendition of the kind `unreadable` with what
// could be read of it. The views are into `record`. Lists are charged to the budget.
[[nodiscard]] Rendition readRendition(Bytes record, Budget& budget);

}  // namespace velmoranth::catalog
