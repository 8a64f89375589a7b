#include "theme/themed_icons.h"

#include "theme/keyed_images.h"

namespace velmoranth::theme {

using platform::ImageRef;
using platform::NullableString;

namespace {

// ThemedIconIdentifiers and ThemedIconImages.
KeyedImages& themedIcons() {
    static KeyedImages instance;
    return instance;
}

}  // namespace

std::vector<std::string> ThemedIconIdentifiers() {
    return themedIcons().keys().value_or(std::vector<std::string>());
}

bool themedIconsExist() {
    return themedIcons().keys().has_value();
}

void createThemedIconsWhenAbsent() {
    themedIcons().createWhenAbsent();
}

bool isThemedIcon(const NullableString& key) {
    return themedIcons().contains(key);
}

std::optional<ImageRef> findThemedIcon(const NullableString& key) {
    return themedIcons().find(key);
}

std::optional<ImageRef> findThemedIcon(const NullableString& listed,
                                       const NullableString& imageKey) {
    return themedIcons().find(listed, imageKey);
}

void storeThemedIcon(const NullableString& key, const ImageRef& image) {
    if (image != nullptr) {
        themedIcons().store(key, image);
    }
}

void dropThemedIcons() {
    themedIcons().drop();
}

}  // namespace velmoranth::theme
