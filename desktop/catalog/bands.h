// The bands that a bitmap's data is cut into: each is compressed on its own.
#pragma once

#include "desktop/catalog/bitmap.h"

#include <vector>

namespace velmoranth::catalog {

struct Band {
    std::uint32_t rows = 0;
    Bytes data;  // compressed

    friend bool operator==(const Band& a, const Band& b) {
        return a.rows == b.rows && a.data.data() == b.data.data() && a.data.size() == b.data.size();
    }
};

// Top first; a bitmap without bands gives one. Each has a row at least and together they have
// `height`; a problem for all others, and for a payload that ends early or goes on behind them. The
// data is the payload's own.
[[nodiscard]] Result<std::vector<Band>> bandsOf(Bytes payload, const BitmapHeader& header,
                                                std::uint32_t height);

}  // namespace velmoranth::catalog
