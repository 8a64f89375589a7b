// A yes or a number that one thread writes while others read it: each reads the one that was there
// before or the new one, whole. Nothing is said of other values: a reader may see one of them new
// and the next still old. On the processors we build for it costs what a plain variable costs.
#pragma once

#include <atomic>

namespace velmoranth::core {

template <class T>
class SharedValue {
  public:
    constexpr SharedValue() = default;

    // NOLINTNEXTLINE(google-explicit-constructor): stands where a plain value would.
    constexpr SharedValue(T value) : value_(value) {}

    SharedValue(const SharedValue& other) : value_(static_cast<T>(other)) {}

    SharedValue& operator=(const SharedValue& other) {
        value_.store(static_cast<T>(other), std::memory_order_relaxed);
        return *this;
    }

    SharedValue& operator=(T value) {
        value_.store(value, std::memory_order_relaxed);
        return *this;
    }

    ~SharedValue() = default;

    // NOLINTNEXTLINE(google-explicit-constructor)
    operator T() const { return value_.load(std::memory_order_relaxed); }

  private:
    static_assert(std::atomic<T>::is_always_lock_free && sizeof(std::atomic<T>) == sizeof(T));

    std::atomic<T> value_ = T();
};

}  // namespace velmoranth::core
