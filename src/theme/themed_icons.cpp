#include "theme/themed_icons.h"

#include "theme/keyed_images.h"

#include <optional>

namespace velmoranth::theme {

using platform::ImageRef;
using platform::NullableString;

namespace {

std::optional<KeyedImages>& caches() {
    static std::optional<KeyedImages> instance;
    return instance;
}

}  // namespace

const std::vector<std::string>& ThemedIconIdentifiers() {
    static const std::vector<std::string> kNone;
    return caches() ? caches()->keys() : kNone;
}

bool themedIconsExist() {
    return caches().has_value();
}

void createThemedIconsWhenAbsent() {
    if (!caches()) {
        caches().emplace();
    }
}

bool isThemedIcon(const NullableString& key) {
    return caches() && caches()->contains(key);
}

ImageRef ThemedIconImage(const NullableString& key) {
    const std::optional<KeyedImages>& kept = caches();
    return kept ? kept->image(key) : nullptr;
}

void storeThemedIcon(const NullableString& key, const ImageRef& image) {
    if (!key || image == nullptr) {
        return;
    }
    createThemedIconsWhenAbsent();
    caches()->store(key, image);
}

void dropThemedIcons() {
    caches().reset();
}

}  // namespace velmoranth::theme
