// Bounds what a file makes its reader do. In a sound catalog no two entries share bytes, so the
// bytes that are looked at sum up to less than the file; in one that was made to be slow or large,
// many entries claim the same bytes, and the budget runs out.
#pragma once

#include <cstddef>

namespace velmoranth::catalog {

class Budget {
  public:
    explicit Budget(std::size_t bytes) : left_(bytes) {}

    // Whether that many bytes were left; they are spent.
    [[nodiscard]] bool spend(std::size_t bytes) {
        if (bytes > left_) {
            left_ = 0;
            return false;
        }
        left_ -= bytes;
        return true;
    }

  private:
    std::size_t left_;
};

}  // namespace velmoranth::catalog
