#include "theme/themed_icons.h"

#include "theme/keyed_images.h"

#include <atomic>

namespace velmoranth::theme {

using platform::ImageRef;
using platform::NullableString;

namespace {

// List and map are one; whether they exist is kept beside them.
struct Caches {
    KeyedImages images;
    std::atomic<bool> exist = false;
};

Caches& caches() {
    static Caches instance;
    return instance;
}

}  // namespace

std::vector<std::string> ThemedIconIdentifiers() {
    return caches().images.keys();
}

bool themedIconsExist() {
    return caches().exist;
}

void createThemedIconsWhenAbsent() {
    caches().exist = true;
}

bool isThemedIcon(const NullableString& key) {
    return caches().images.contains(key);
}

ImageRef ThemedIconImage(const NullableString& key) {
    return caches().images.image(key);
}

void storeThemedIcon(const NullableString& key, const ImageRef& image) {
    if (!key || image == nullptr) {
        return;
    }
    createThemedIconsWhenAbsent();
    caches().images.store(key, image);
}

void dropThemedIcons() {
    caches().images.clear();
    caches().exist = false;
}

}  // namespace velmoranth::theme
