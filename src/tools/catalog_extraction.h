// For theme makers: writes every image of an asset catalog into a folder, a PNG file for each
// rendition, so that names, sizes and scales can be seen. Nothing in the system calls it.
#pragma once

#include "platform/core_ui.h"
#include "platform/foundation.h"
#include "platform/uikit.h"

#include <cstddef>
#include <string>
#include <vector>

namespace velmoranth::tools {

// Whether the path is taken for a catalog file: its last component ends with "car", with or without
// a full stop before. Any other path is taken for a bundle's.
[[nodiscard]] bool isCatalogFile(const std::string& path);

// Where the images of a catalog go: the file's folder name and its own name below `extractionPath`,
// or a bundle's name.
[[nodiscard]] std::string extractionFolder(const std::string& path,
                                           const std::string& extractionPath);

// The renditions of a name that are extracted, in their order: all of them when the device's kind
// of images has the name, or the one for cars alone.
[[nodiscard]] std::vector<platform::ObjectRef> extractedRenditions(platform::CUICatalog& catalog,
                                                                   const std::string& name);

// The name of an image's file. Width and height are the bitmap's, in pixels; the scale is
// truncated, and left out when it is 1 then.
[[nodiscard]] std::string extractedFileName(const std::string& name, double scale,
                                            std::size_t width, std::size_t height);

class CatalogExtraction {
  public:
    // Extracts the catalog at `path`, a catalog file or the folder of a bundle, below
    // `extractionPath`. What happens is told in the log, whatever the settings say; a failure ends
    // it and leaves the files that are written. `extract` is not looked at. The result is nil.
    static platform::ImageRef imageFromBundlePathExtractExtractionPath(
        const platform::NullableString& path, bool extract,
        const platform::NullableString& extractionPath);
};

}  // namespace velmoranth::tools
