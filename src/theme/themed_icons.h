// The app icons already themed: ThemedIconIdentifiers, an ordered list of keys, and
// ThemedIconImages, the image of each. Shared by all app-icon replacements, whose keys differ;
// emptied by the theme change. A key is in the list exactly when an image is stored for it.
// Process-wide. Icons are asked for on several threads, and a theme change may come in between any
// two of these calls: each is whole under the cache's lock, and a replacement finds a key and its
// image in one call.
#pragma once

#include "platform/foundation.h"
#include "platform/uikit.h"

#include <optional>
#include <string>
#include <vector>

namespace velmoranth::theme {

// A copy of the list; empty when it does not exist.
[[nodiscard]] std::vector<std::string> ThemedIconIdentifiers();

// Whether list and map exist.
[[nodiscard]] bool themedIconsExist();

// Makes both, empty, when they are absent.
void createThemedIconsWhenAbsent();

// Whether the key is in the list. Nil never is.
[[nodiscard]] bool isThemedIcon(const platform::NullableString& key);

// The image of a key that is in the list; nothing for any other.
[[nodiscard]] std::optional<platform::ImageRef> findThemedIcon(const platform::NullableString& key);

// The image stored under `imageKey`, nil when there is none, if `listed` is in the list; nothing if
// it is not.
[[nodiscard]] std::optional<platform::ImageRef> findThemedIcon(
    const platform::NullableString& listed, const platform::NullableString& imageKey);

// Appends the key and stores the image under it. A nil key or a nil image is stored nowhere.
void storeThemedIcon(const platform::NullableString& key, const platform::ImageRef& image);

// Empties list and map, and sets each to none.
void dropThemedIcons();

}  // namespace velmoranth::theme
