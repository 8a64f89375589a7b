// A cache of the process: keys in the order in which they were stored, and an image for each. A key
// that is stored again is listed again and its image replaced. Images are asked for on several
// threads, so each operation is whole; the platform is never called in the middle of one.
#pragma once

#include "platform/foundation.h"
#include "platform/uikit.h"

#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace velmoranth::theme {

class KeyedImages {
  public:
    [[nodiscard]] std::vector<std::string> keys() const {
        const std::scoped_lock lock(mutex_);
        return keys_;
    }

    // Nil is never listed.
    [[nodiscard]] bool contains(const platform::NullableString& key) const {
        const std::scoped_lock lock(mutex_);
        return key && images_.contains(*key);
    }

    // Nil when there is none.
    [[nodiscard]] platform::ImageRef image(const platform::NullableString& key) const {
        const std::scoped_lock lock(mutex_);
        const auto entry = key ? images_.find(*key) : images_.end();
        return entry == images_.end() ? nullptr : entry->second;
    }

    // A nil key is stored nowhere.
    void store(const platform::NullableString& key, platform::ImageRef image) {
        if (key) {
            const std::scoped_lock lock(mutex_);
            keys_.push_back(*key);
            images_[*key].swap(image);  // what it replaces ends with the argument
        }
    }

    void clear() {
        std::unordered_map<std::string, platform::ImageRef> images;
        const std::scoped_lock lock(mutex_);
        keys_.clear();
        images_.swap(images);
    }

  private:
    mutable std::mutex mutex_;
    std::vector<std::string> keys_;
    std::unordered_map<std::string, platform::ImageRef> images_;  // of every key
};

}  // namespace velmoranth::theme
