// The engine's object behind an instance of one of the library's classes. For as long, the platform
// is handed the instance where the engine passes its object on.
#pragma once

#include "device/platform/counterparts.h"

#include <atomic>
#include <memory>
#include <utility>

namespace velmoranth::device {

template <class T>
class EngineObject {
  public:
    // `instance` holds this, and is not held.
    EngineObject(std::shared_ptr<T> object, id instance) : object_(std::move(object)) {
        addCounterpart(*object_, instance);
    }

    ~EngineObject() { removeCounterpart(*object_); }

    EngineObject(const EngineObject&) = delete;
    EngineObject& operator=(const EngineObject&) = delete;

    T& operator*() const { return *object_; }

  private:
    std::shared_ptr<T> object_;
};

// The engine's object of an instance, which keeps it in `place`; made of `arguments` for the first
// message that asks for it, since nobody has to send init. Of two threads that come first one makes
// the object of both.
template <class T, class... Arguments>
[[nodiscard]] T& engineOf(EngineObject<T>*& place, id instance, Arguments... arguments) {
    const std::atomic_ref kept(place);
    EngineObject<T>* object = kept.load(std::memory_order_acquire);
    if (object == nullptr) {
        auto made = std::make_unique<EngineObject<T>>(std::make_shared<T>(arguments...), instance);
        if (kept.compare_exchange_strong(object, made.get(), std::memory_order_acq_rel)) {
            object = made.release();
        }
    }
    return **object;
}

}  // namespace velmoranth::device
