// Bytes of a catalog as text. Names are bytes: they are UTF-8 in sound catalogs, and nothing here
// relies on it.
#pragma once

#include "desktop/catalog/catalog.h"

#include <string_view>

namespace velmoranth::catalog {

[[nodiscard]] inline std::string_view asText(Bytes bytes) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): bytes of text are text
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// A field that ends with its first NUL, or with its last byte.
[[nodiscard]] inline std::string_view untilNul(Bytes field) {
    const std::string_view text = asText(field);
    return text.substr(0, text.find('\0'));
}

}  // namespace velmoranth::catalog
