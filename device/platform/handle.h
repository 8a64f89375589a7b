// Handles: what the engine holds for an object of the phone. A handle retains its object (or only
// borrows it, for the length of a call) and sends it the message that its interface names. It keeps
// nothing else, so two handles of one object are as good as one.
#pragma once

#include "platform/objc_runtime.h"

#include "device/platform/text.h"
#import <Foundation/Foundation.h>

#include <memory>
#include <string>
#include <type_traits>

namespace velmoranth::device {

// How a handle comes by its object.
enum class Hold {
    retain,  // takes a reference of its own
    adopt,   // takes over the reference that an alloc, new, copy or create gave
    borrow,  // takes none: the object outlives the handle
};

// Interfaces whose objects are CoreFoundation's, which have calls of their own for references.
template <class Interface>
struct References {
    static void retain(void* object) { [static_cast<id>(object) retain]; }

    static void release(void* object) { [static_cast<id>(object) release]; }
};

// The part of every handle that does not depend on what its object can do.
template <class Interface>
class Handle : public Interface {
  public:
    Handle(void* object, Hold hold) : object_(object), isHeld_(hold != Hold::borrow) {
        if (hold == Hold::retain) {
            References<Interface>::retain(object_);
        }
    }

    ~Handle() override {
        if (isHeld_) {
            References<Interface>::release(object_);
        }
    }

    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    [[nodiscard]] void* native() const final { return object_; }

    [[nodiscard]] id object() const { return static_cast<id>(object_); }

    [[nodiscard]] std::string className() const override { return classNameOf(object()); }

    [[nodiscard]] std::string description() const override { return descriptionOf(object()); }

  private:
    void* object_;
    bool isHeld_;
};

// Which class of handles stands for an interface; each framework's header says it for its own.
template <class Interface>
struct HandleFor {
    using Type = Handle<Interface>;
};

// The platform's object behind a handle or an object of the engine that has a counterpart; nil for
// nil.
[[nodiscard]] id nativeOf(const platform::Object& object);

template <class T>
[[nodiscard]] id nativeOf(const std::shared_ptr<T>& object) {
    return object == nullptr ? nil : nativeOf(static_cast<const platform::Object&>(*object));
}

// A handle that retains the object; nil for nil. The object's class is not asked: the handle sends
// what the interface names, and asks first only for what a release or a stand-in may lack.
template <class Interface>
[[nodiscard]] std::shared_ptr<Interface> wrap(const void* object, Hold hold = Hold::retain) {
    if (object == nullptr) {
        return nullptr;
    }
    return std::make_shared<typename HandleFor<Interface>::Type>(const_cast<void*>(object), hold);
}

// A handle of the interface that fits the object's class, for where an object of any class may
// come; a handle without messages for a class that no interface stands for. Nil for nil.
[[nodiscard]] platform::ObjectRef wrapAny(id object);

// The one handle of a class, kept for the life of the process as classes are; nil for nil.
[[nodiscard]] const platform::ClassRef& wrapClass(Class cls);

template <>
[[nodiscard]] inline platform::ObjectRef wrap<platform::Object>(const void* object, Hold) {
    return wrapAny(static_cast<id>(const_cast<void*>(object)));
}

}  // namespace velmoranth::device
