// Requests for an image of an asset, of a glyph or of a catalog's image.
#pragma once

#include "catalog_images_fixture.h"

#include <memory>
#include <optional>
#include <string>

namespace velmoranth::tests {

inline const Lookup kInKit{"star", "com.x.kit"};
inline const Lookup kLoose{"star", std::nullopt};
// What an identifier that is nil becomes in a path.
inline const Lookup kInNil{"star", "(null)"};

class FromAsset : public CatalogImages {
  protected:
    std::shared_ptr<Keeper> asset = std::make_shared<Keeper>("UIImageAsset", bundle);
    platform::ObjectRef configuration = std::make_shared<PlainObject>("UIImageConfiguration");
    platform::ObjectRef vector = std::make_shared<PlainObject>("UIImage");
    bool flipped = false;

    static std::string loadLine(const std::string& name, const std::string& identifier) {
        return logged("UIImageAsset LoadImage :%@  fromBundle: %@", {name, identifier});
    }
};

}  // namespace velmoranth::tests
