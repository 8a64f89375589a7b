// The one way in which the process keeps images by key: keys in the order in which they were
// stored, and an image for each. A key that is stored again is listed again and its image replaced.
//
// Images are asked for on several threads, so each operation is whole under a lock of the cache's
// own; neither the platform nor the end of an image is ever waited for under it. Two operations in
// a row are not one: whoever wants to know whether a key is listed and what its image is asks once,
// by find().
#pragma once

#include "platform/foundation.h"
#include "platform/uikit.h"

#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace velmoranth::theme {

class KeyedImages {
  public:
    // Makes the list and the map, empty, when they are absent, as they are at first.
    void createWhenAbsent() {
        const std::scoped_lock lock(mutex_);
        if (!entries_) {
            entries_.emplace();
        }
    }

    // A copy of the list; nothing when it is absent.
    [[nodiscard]] std::optional<std::vector<std::string>> keys() const {
        const std::scoped_lock lock(mutex_);
        return entries_ ? std::optional(entries_->keys) : std::nullopt;
    }

    // Whether the key is listed. Nil never is.
    [[nodiscard]] bool contains(const platform::NullableString& key) const {
        const std::scoped_lock lock(mutex_);
        return lists(key);
    }

    // The image of a key that is listed; nothing for any other.
    [[nodiscard]] std::optional<platform::ImageRef> find(
        const platform::NullableString& key) const {
        return find(key, key);
    }

    // The image of `imageKey`, nil when there is none, if `listed` is listed; nothing if it is not.
    [[nodiscard]] std::optional<platform::ImageRef> find(
        const platform::NullableString& listed, const platform::NullableString& imageKey) const {
        const std::scoped_lock lock(mutex_);
        if (!lists(listed)) {
            return std::nullopt;
        }
        const auto entry = imageKey ? entries_->images.find(*imageKey) : entries_->images.end();
        return entry == entries_->images.end() ? nullptr : entry->second;
    }

    // Makes list and map when they are absent. A nil key is stored nowhere.
    void store(const platform::NullableString& key, platform::ImageRef image) {
        if (key) {
            const std::scoped_lock lock(mutex_);
            append(*key, image);
        }
    }

    // The same unless the key is listed already; whether it was stored.
    bool storeIfNew(const platform::NullableString& key, platform::ImageRef image) {
        const std::scoped_lock lock(mutex_);
        if (!key || lists(key)) {
            return false;
        }
        append(*key, image);
        return true;
    }

    // Empties both and makes them absent.
    void drop() {
        std::optional<Entries> dropped;  // ends when the lock is given back
        const std::scoped_lock lock(mutex_);
        dropped.swap(entries_);
    }

  private:
    struct Entries {
        std::vector<std::string> keys;
        std::unordered_map<std::string, platform::ImageRef> images;  // of every key
    };

    // These two under the lock.
    [[nodiscard]] bool lists(const platform::NullableString& key) const {
        return key && entries_ && entries_->images.contains(*key);
    }

    void append(const std::string& key, platform::ImageRef& image) {
        if (!entries_) {
            entries_.emplace();
        }
        entries_->keys.push_back(key);
        entries_->images[key].swap(image);  // what it replaces ends with the caller's
    }

    mutable std::mutex mutex_;
    std::optional<Entries> entries_;
};

}  // namespace velmoranth::theme
