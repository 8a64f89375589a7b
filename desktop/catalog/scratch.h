// Memory for what a decoder needs between two steps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace velmoranth::catalog {

class Scratch {
  public:
    // So many bytes of undefined contents, until the next call.
    [[nodiscard]] std::span<std::uint8_t> take(std::size_t size) {
        if (size > capacity_) {
            memory_.reset();
            capacity_ = 0;
            memory_ = std::make_unique_for_overwrite<std::uint8_t[]>(size);
            capacity_ = size;
        }
        return {memory_.get(), size};
    }

  private:
    std::unique_ptr<std::uint8_t[]> memory_;
    std::size_t capacity_ = 0;
};

}  // namespace velmoranth::catalog
