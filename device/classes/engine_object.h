// The engine's object behind an instance of one of the library's classes. For as long, the platform
// is handed the instance where the engine passes its object on.
#pragma once

#include "device/platform/counterparts.h"

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

    T* operator->() const { return object_.get(); }

  private:
    std::shared_ptr<T> object_;
};

}  // namespace velmoranth::device
