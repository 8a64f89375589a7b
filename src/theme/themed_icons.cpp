#include "theme/themed_icons.h"

#include <algorithm>
#include <map>
#include <optional>

namespace velmoranth::theme {

using platform::ImageRef;
using platform::NullableString;

namespace {

struct Caches {
    std::vector<std::string> identifiers;
    std::map<std::string, ImageRef> images;
};

std::optional<Caches>& caches() {
    static std::optional<Caches> instance;
    return instance;
}

}  // namespace

const std::vector<std::string>& ThemedIconIdentifiers() {
    static const std::vector<std::string> kNone;
    return caches() ? caches()->identifiers : kNone;
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
    const std::vector<std::string>& list = ThemedIconIdentifiers();
    return key && std::find(list.begin(), list.end(), *key) != list.end();
}

ImageRef ThemedIconImage(const NullableString& key) {
    if (!caches() || !key) {
        return nullptr;
    }
    const auto entry = caches()->images.find(*key);
    return entry == caches()->images.end() ? nullptr : entry->second;
}

void storeThemedIcon(const NullableString& key, const ImageRef& image) {
    if (!key || image == nullptr) {
        return;
    }
    createThemedIconsWhenAbsent();
    caches()->identifiers.push_back(*key);
    caches()->images[*key] = image;
}

void dropThemedIcons() {
    caches().reset();
}

}  // namespace velmoranth::theme
