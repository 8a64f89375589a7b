// CoreUI: what the platform's asset catalogs hold, as its image classes reach it.
#pragma once

#include "platform/foundation.h"
#include "platform/objc_runtime.h"

#include <memory>

namespace velmoranth::platform {

// CUINamedVectorGlyph: a symbol. Keeps its catalog in "_catalog", which keeps the bundle that it
// lies in in "_bundle".
class CUINamedVectorGlyph : public Object {
  public:
    [[nodiscard]] virtual NullableString name() const = 0;
};

using CUINamedVectorGlyphRef = std::shared_ptr<CUINamedVectorGlyph>;

// CUINamedImage: an image of a catalog.
class CUINamedImage : public Object {
  public:
    [[nodiscard]] virtual NullableString name() const = 0;
};

using CUINamedImageRef = std::shared_ptr<CUINamedImage>;

}  // namespace velmoranth::platform
