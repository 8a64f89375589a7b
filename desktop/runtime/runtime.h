// The object runtime of a simulated process: classes, metaclasses and typed methods by name, and
// method hooking with the loader's contract. Every message of the simulator goes through send(), so
// a replaced method takes effect exactly as on the phone.
//
// Messages may be sent from any thread, also while methods are added or replaced: a message takes a
// copy of the implementation it reaches and runs it with nothing locked, so a method may replace
// itself and a call in progress finishes in the implementation that it began in.
#pragma once

#include "platform/objc_runtime.h"
#include "platform/substrate.h"

#include <functional>
#include <memory>
#include <string>
#include <typeinfo>
#include <utility>

namespace velmoranth::desktop {

class Runtime final : public platform::ObjcRuntime, public platform::Substrate {
  public:
    // Where refused calls and hook warnings are written, one line each, without a line end.
    using Warn = std::function<void(const std::string& line)>;

    explicit Runtime(Warn warn);
    ~Runtime() override;

    // Makes a class known. The superclass must be known, or "" for a root. False when the name is
    // taken or the superclass is missing.
    bool addClass(const std::string& name, const std::string& superclass = "");

    // Gives a class a method of its own (the class's own method of that selector is replaced).
    // `function` is R(Receiver&, Args...) for an instance method; a class-side method's receiver is
    // platform::Class. False when the class is missing.
    template <class R, class Receiver, class... Args>
    bool addInstanceMethod(const std::string& className, const platform::Selector& selector,
                           std::function<R(Receiver&, Args...)> function) {
        return setMethod(getClass(className), selector,
                         platform::makeImplementation(std::move(function)));
    }

    template <class R, class... Args>
    bool addClassMethod(const std::string& className, const platform::Selector& selector,
                        std::function<R(platform::Class&, Args...)> function) {
        return setMethod(getMetaclass(getClass(className)), selector,
                         platform::makeImplementation(std::move(function)));
    }

    // Gives a class an instance variable that holds an object; `value` reads it. False when the
    // class is missing.
    template <class Receiver>
    bool addInstanceVariable(const std::string& className, const std::string& name,
                             std::function<platform::ObjectRef(Receiver&)> value) {
        return setVariable(getClass(className), name,
                           platform::makeImplementation(std::move(value)));
    }

    // Sends a message to an object: its class is the one named by className(), a class object's is
    // its metaclass. The first message to a class runs its +initialize. Argument types must
    // be the method's own exactly. A selector that the class does not answer, or types that do not
    // fit, are refused: one warning line that names receiver, selector and both signatures, and a
    // zero result.
    template <class R, class... Args>
    R send(platform::Object& receiver, const platform::Selector& selector, Args... args) {
        return call<R, Args...>(methodForMessage(receiver, selector), receiver, selector,
                                std::move(args)...);
    }

    // Sends a message to the class itself. A class that the process does not have answers zero.
    template <class R, class... Args>
    R sendToClass(const std::string& className, const platform::Selector& selector, Args... args) {
        const platform::ClassRef cls = getClass(className);
        return cls == nullptr ? R() : send<R, Args...>(*cls, selector, std::move(args)...);
    }

    // The implementation that a message would reach, superclasses searched; nothing when there is
    // none.
    [[nodiscard]] platform::Implementation methodOf(const platform::ClassRef& cls,
                                                    const platform::Selector& selector) const;
    // Whether the class itself (not a superclass) has the method.
    [[nodiscard]] bool hasOwnMethod(const platform::ClassRef& cls,
                                    const platform::Selector& selector) const;
    // Whether `cls` is `ancestor` or derives from it.
    [[nodiscard]] bool isKindOf(const platform::ClassRef& cls, const std::string& ancestor) const;

    // ObjcRuntime. A class whose superclass is "NSObject" brings that root along when the process
    // has none yet; a superclass of another name must be known. +load and +initialize become class
    // methods "load" and "initialize" of the class, what makes an instance becomes "new".
    void registerClass(const platform::ClassDefinition& definition) override;
    [[nodiscard]] platform::ClassRef getClass(const std::string& name) override;
    [[nodiscard]] platform::ClassRef getMetaclass(const platform::ClassRef& cls) override;
    void sendMessage(const platform::ClassRef& cls, const platform::Selector& selector) override;
    bool addMethod(const platform::ClassRef& cls, const platform::Selector& selector,
                   const platform::Implementation& implementation,
                   const std::string& typeEncoding) override;
    [[nodiscard]] bool isKindOfClass(const platform::Object& object,
                                     const platform::ClassRef& cls) override;
    [[nodiscard]] platform::ObjectRef instanceVariable(platform::Object& object,
                                                       const std::string& name) override;
    // Methods that take no arguments and give an object count, and the variables of
    // addInstanceVariable.
    [[nodiscard]] platform::ObjectRef valueForKey(platform::Object& object,
                                                  const std::string& key) override;
    // Substrate. A missing selector is warned of as "MS:Warning: message not found [Class
    // selector]". For an inherited method the override is added to `cls` alone, and `*original`
    // calls what the parent answers at the time of the call. A nil class, no replacement, and a
    // replacement of another signature than the method's are warned of and change nothing. No
    // message is sent, so +initialize does not run. `original` may be null.
    void hookMessageEx(const platform::ClassRef& cls, const platform::Selector& selector,
                       const platform::Implementation& replacement,
                       platform::Implementation* original) override;

  private:
    bool setMethod(const platform::ClassRef& cls, const platform::Selector& selector,
                   const platform::Implementation& implementation);
    bool setVariable(const platform::ClassRef& cls, const std::string& name,
                     const platform::Implementation& getter);
    // The getter of the variable in the object's class or the nearest superclass that has it.
    [[nodiscard]] platform::Implementation variableOf(const platform::Object& object,
                                                      const std::string& name) const;
    // What a message to the object reaches, after +initialize of its class and its superclasses,
    // superclass first, once each.
    platform::Implementation methodForMessage(platform::Object& receiver,
                                              const platform::Selector& selector);
    void refuse(const platform::Object& receiver, const platform::Selector& selector,
                const platform::Implementation& found, const std::type_info& sent) const;

    template <class R, class... Args>
    R call(const platform::Implementation& implementation, platform::Object& receiver,
           const platform::Selector& selector, Args... args) {
        const auto* const function = implementation.as<R(platform::Object&, Args...)>();
        if (function == nullptr) {
            refuse(receiver, selector, implementation, typeid(R(platform::Object&, Args...)));
            return R();
        }
        return (*function)(receiver, std::move(args)...);
    }

    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace velmoranth::desktop
