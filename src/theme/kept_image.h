// One image that the process keeps, for several threads: it is read and replaced whole, under a
// lock of its own. The last one that was kept is the one that is there.
#pragma once

#include "platform/uikit.h"

#include <mutex>

namespace velmoranth::theme {

class KeptImage {
  public:
    // Nil while there is none.
    [[nodiscard]] platform::ImageRef image() const {
        const std::scoped_lock lock(mutex_);
        return image_;
    }

    // What it replaces ends when the lock is given back, with the argument.
    void keep(platform::ImageRef image) {
        const std::scoped_lock lock(mutex_);
        image_.swap(image);
    }

  private:
    mutable std::mutex mutex_;
    platform::ImageRef image_;
};

}  // namespace velmoranth::theme
