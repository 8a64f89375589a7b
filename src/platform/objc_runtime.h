// The Objective-C runtime as the engine sees it: objects, classes by name, and typed method
// implementations. A method's implementation is a C++ function of the receiver and the arguments;
// its type travels with it, so that a call whose types do not fit is refused instead of undefined.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

namespace velmoranth::platform {

// A platform object with identity. Handles to objects are shared pointers; an empty handle is nil.
class Object {
  public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    // The name of the object's class, for example "UIImage". Never empty.
    [[nodiscard]] virtual std::string className() const = 0;
    // What "%@" prints for the object. The default is the platform's own: "<ClassName: 0x…>".
    [[nodiscard]] virtual std::string description() const;

    // For the platform's code alone: its own object behind a handle, held by the handle. Null where
    // the handle is the object, and for the engine's own objects.
    [[nodiscard]] virtual void* native() const { return nullptr; }
};

using ObjectRef = std::shared_ptr<Object>;

// A class, or a metaclass: the class whose instance methods are another class's class methods.
class Class : public Object {
  public:
    // The class's own name; a metaclass has the name of its class.
    [[nodiscard]] virtual const std::string& name() const = 0;
    [[nodiscard]] virtual bool isMetaclass() const = 0;
};

using ClassRef = std::shared_ptr<Class>;

// A selector in the platform's spelling, colons included, for example "imageForIcon:".
using Selector = std::string;

// An implementation of a method, or nothing. The signature is R(Object& receiver, Args...); a
// class-side method receives the class object. Copying shares the function.
class Implementation {
  public:
    Implementation() = default;

    template <class R, class... Args>
    explicit Implementation(std::function<R(Object&, Args...)> function)
        : signature_(&typeid(R(Object&, Args...))),
          forward_(&forwardTo<R, Args...>),
          getObject_(getterOf<R, Args...>()),
          function_(std::make_shared<std::function<R(Object&, Args...)>>(std::move(function))) {}

    // A function that the platform alone can call, by its address: it has no signature here. Not
    // held; null gives nothing.
    [[nodiscard]] static Implementation native(const void* function) {
        Implementation implementation;
        implementation.function_ =
            std::shared_ptr<const void>(std::shared_ptr<const void>(), function);
        return implementation;
    }

    // The address of such a function. Null when this holds none.
    [[nodiscard]] const void* native() const {
        return signature_ == nullptr ? function_.get() : nullptr;
    }

    // The function when this holds one of exactly this signature, otherwise null. Owned by this
    // object.
    template <class Signature>
    [[nodiscard]] const std::function<Signature>* as() const {
        if (signature_ == nullptr || *signature_ != typeid(Signature)) {
            return nullptr;
        }
        return static_cast<const std::function<Signature>*>(function_.get());
    }

    [[nodiscard]] explicit operator bool() const { return function_ != nullptr; }

    // The signature's type; null when this holds nothing.
    [[nodiscard]] const std::type_info* signature() const { return signature_; }

    // An implementation of this one's signature that asks `current` at every call and calls what it
    // gets; zero when that does not fit. Nothing when this holds nothing.
    [[nodiscard]] Implementation forwarding(std::function<Implementation()> current) const {
        return forward_ == nullptr ? Implementation() : forward_(std::move(current));
    }

    // Whether this is a getter of an object: no arguments, and a handle as its result.
    [[nodiscard]] bool isObjectGetter() const { return getObject_ != nullptr; }

    // Calls the getter; nil when this is none.
    [[nodiscard]] ObjectRef getObject(Object& receiver) const {
        return getObject_ == nullptr ? nullptr : getObject_(function_.get(), receiver);
    }

    // Whether both hold the very same function.
    friend bool operator==(const Implementation& a, const Implementation& b) {
        return a.function_ == b.function_;
    }

  private:
    using Forward = Implementation (*)(std::function<Implementation()> current);

    using GetObject = ObjectRef (*)(const void* function, Object& receiver);

    template <class R, class... Args>
    static constexpr GetObject getterOf() {
        if constexpr (sizeof...(Args) == 0 && std::is_convertible_v<R, ObjectRef>) {
            return [](const void* function, Object& receiver) -> ObjectRef {
                return (*static_cast<const std::function<R(Object&)>*>(function))(receiver);
            };
        } else {
            return nullptr;
        }
    }

    template <class R, class... Args>
    static Implementation forwardTo(std::function<Implementation()> current) {
        return Implementation(std::function<R(Object&, Args...)>(
            [current = std::move(current)](Object& receiver, Args... args) -> R {
                const Implementation target = current();
                const auto* const function = target.as<R(Object&, Args...)>();
                return function == nullptr ? R() : (*function)(receiver, std::move(args)...);
            }));
    }

    const std::type_info* signature_ = nullptr;
    Forward forward_ = nullptr;
    GetObject getObject_ = nullptr;
    std::shared_ptr<const void> function_;
};

// Logs that a message reached an object whose C++ type does not fit the method's receiver.
[[gnu::visibility("default")]] void logRefusedReceiver(const Object& receiver,
                                                       const std::type_info& wanted);

// An implementation for receivers of the C++ type `Receiver`. A receiver of another type is
// refused: one log line, and the result type's zero value.
template <class R, class Receiver, class... Args>
[[nodiscard]] Implementation makeImplementation(std::function<R(Receiver&, Args...)> function) {
    return Implementation(std::function<R(Object&, Args...)>(
        [function = std::move(function)](Object& object, Args... args) -> R {
            auto* const receiver = dynamic_cast<Receiver*>(&object);
            if (receiver == nullptr) {
                logRefusedReceiver(object, typeid(Receiver));
                return R();
            }
            return function(*receiver, std::move(args)...);
        }));
}

// A method of a class that a library brings along. The receiver of a class method is the class.
struct MethodDefinition {
    Selector selector;
    bool isClassMethod = false;
    Implementation implementation;
};

// A class that a library brings along.
struct ClassDefinition {
    std::string name;
    std::string superclass;      // name; "NSObject" when it derives from nothing else
    std::function<void()> load;  // +load; empty when the class has none
    // +initialize; its argument is the class that the message is sent on behalf of (a subclass
    // without an +initialize of its own inherits this one). Empty when the class has none.
    std::function<void(const ClassRef&)> initialize;
    std::vector<MethodDefinition> methods = {};
    // "new": an instance of the class; empty when nobody makes any by message.
    std::function<ObjectRef()> makeInstance = {};
};

class ObjcRuntime {
  public:
    ObjcRuntime() = default;
    ObjcRuntime(const ObjcRuntime&) = delete;
    ObjcRuntime& operator=(const ObjcRuntime&) = delete;
    virtual ~ObjcRuntime() = default;

    // What the runtime does with a class of a library that is being mapped: makes the class known
    // under its name and runs its +load directly. That is no message, so +initialize is not run by
    // it. A name that is taken is refused and nothing runs.
    virtual void registerClass(const ClassDefinition& definition) = 0;

    // objc_getClass: the class of that name, nil when the process has none.
    [[nodiscard]] virtual ClassRef getClass(const std::string& name) = 0;

    // object_getClass of a class: its metaclass, nil for nil.
    [[nodiscard]] virtual ClassRef getMetaclass(const ClassRef& cls) = 0;

    // Sends a class an ordinary message without arguments or a result; "load" is one as any other.
    // The first message to a class runs its +initialize before it is delivered. Nil does nothing,
    // nor does "load" to a class without one.
    virtual void sendMessage(const ClassRef& cls, const Selector& selector) = 0;

    // class_addMethod: adds the method, over an inherited one if there is one. False, and nothing
    // is changed, when the class is nil or has the selector itself. typeEncoding as in "v@:".
    virtual bool addMethod(const ClassRef& cls, const Selector& selector,
                           const Implementation& implementation,
                           const std::string& typeEncoding) = 0;

    // isKindOfClass: whether the object's class is `cls` or derives from it; false for nil.
    [[nodiscard]] virtual bool isKindOfClass(const Object& object, const ClassRef& cls) = 0;

    // The object in an instance variable, found by class_getInstanceVariable (superclasses are
    // searched) and read at ivar_getOffset. Nil when the class has no such variable or it holds
    // nil.
    [[nodiscard]] virtual ObjectRef instanceVariable(Object& object, const std::string& name) = 0;

    // valueForKey: of a key that leads to an object, by the platform's search: the methods
    // get<Key>, <key>, is<Key> and _<key>, then the instance variables _<key>, _is<Key>, <key> and
    // is<Key>. A key that leads nowhere is the platform's own error: on the phone its exception
    // goes on to whoever called, through the caller of this. Linux has none, so it tells in the log
    // what the platform's says, and gives nil.
    [[nodiscard]] virtual ObjectRef valueForKey(Object& object, const std::string& key) = 0;
};

}  // namespace velmoranth::platform
