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

// The part of every handle that does not depend on what its object can do. `Native` is the class
// that the messages are declared for.
template <class Interface, class Native = NSObject>
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

    [[nodiscard]] Native* object() const { return static_cast<Native*>(object_); }

    [[nodiscard]] std::string className() const override {
        return classNameOf(static_cast<id>(object_));
    }

    [[nodiscard]] std::string description() const override {
        return descriptionOf(static_cast<id>(object_));
    }

  private:
    void* object_;
    bool isHeld_;
};

// The handle that stands for an interface; each framework's header has those that send messages.
template <class Interface>
struct HandleFor final : Handle<Interface> {
    using Handle<Interface>::Handle;
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
    return std::make_shared<HandleFor<Interface>>(const_cast<void*>(object), hold);
}

// A handle of the interface that fits the object's class, for where an object of any class may
// come; a handle without messages for a class that no interface stands for. Nil for nil.
[[nodiscard]] platform::ObjectRef wrapAny(id object);

// Nil for a class that the process has not. Looked up each time: a framework may be loaded later.
// By name, which takes no knowing which of the phone's libraries has the class.
[[nodiscard]] Class classNamed(const char* name);

// The one handle of a class, kept for the life of the process as classes are; nil for nil.
[[nodiscard]] const platform::ClassRef& wrapClass(Class cls);

template <>
[[nodiscard]] inline platform::ObjectRef wrap<platform::Object>(const void* object, Hold) {
    return wrapAny(static_cast<id>(const_cast<void*>(object)));
}

}  // namespace velmoranth::device
