// The app icons already themed: ThemedIconIdentifiers, an ordered list of keys, and
// ThemedIconImages, the image of each. Shared by all app-icon replacements, whose keys differ;
// emptied by the theme change. A key is in the list exactly when an image is stored for it.
// Process-wide; each call is whole, whichever thread it comes from.
#pragma once

#include "platform/foundation.h"
#include "platform/uikit.h"

#include <string>
#include <vector>

namespace velmoranth::theme {

// A copy of the list; empty when it does not exist.
[[nodiscard]] std::vector<std::string> ThemedIconIdentifiers();

// Whether list and map exist.
[[nodiscard]] bool themedIconsExist();

// Makes both, empty, when they are absent.
void createThemedIconsWhenAbsent();

// Whether the key is in the list, which is searched first to last. Nil never is.
[[nodiscard]] bool isThemedIcon(const platform::NullableString& key);

// The image stored for the key, nil when there is none.
[[nodiscard]] platform::ImageRef ThemedIconImage(const platform::NullableString& key);

// Appends the key and stores the image under it. A nil key or a nil image is stored nowhere.
void storeThemedIcon(const platform::NullableString& key, const platform::ImageRef& image);

// Empties the map and then the list, and sets each to none.
void dropThemedIcons();

}  // namespace velmoranth::theme
