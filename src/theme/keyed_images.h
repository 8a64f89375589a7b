// A cache of the process: keys in the order in which they were stored, and an image for each. A key
// that is stored again is listed again and its image replaced.
#pragma once

#include "platform/foundation.h"
#include "platform/uikit.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace velmoranth::theme {

class KeyedImages {
  public:
    [[nodiscard]] const std::vector<std::string>& keys() const { return keys_; }

    // Nil is never listed.
    [[nodiscard]] bool contains(const platform::NullableString& key) const {
        return key && images_.contains(*key);
    }

    // Nil when there is none.
    [[nodiscard]] platform::ImageRef image(const platform::NullableString& key) const {
        const auto entry = key ? images_.find(*key) : images_.end();
        return entry == images_.end() ? nullptr : entry->second;
    }

    // A nil key is stored nowhere.
    void store(const platform::NullableString& key, const platform::ImageRef& image) {
        if (key) {
            keys_.push_back(*key);
            images_[*key] = image;
        }
    }

  private:
    std::vector<std::string> keys_;
    std::unordered_map<std::string, platform::ImageRef> images_;  // of every key
};

}  // namespace velmoranth::theme
