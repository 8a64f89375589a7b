#include "desktop/runtime/runtime.h"

#include <cxxabi.h>

#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <map>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <utility>

namespace velmoranth::desktop {
namespace {

const std::string kNSObject = "NSObject";

using Methods = std::unordered_map<platform::Selector, platform::Implementation>;

std::string readableType(const std::type_info* type) {
    if (type == nullptr) {
        return "no method";
    }
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(type->name(), nullptr, nullptr, &status), std::free);
    return status == 0 ? std::string(name.get()) : std::string(type->name());
}

// A class or a metaclass. Its methods are guarded by the runtime's lock; the rest never changes
// once the class is known, except how far its +initialize has come.
class RuntimeClass final : public platform::Class,
                           public std::enable_shared_from_this<RuntimeClass> {
  public:
    enum class Initialization { notYet, running, done };

    RuntimeClass(std::string name, bool isMetaclass, RuntimeClass* superclass, const void* owner)
        : name_(std::move(name)),
          isMetaclass_(isMetaclass),
          superclass_(superclass),
          owner_(owner) {}

    [[nodiscard]] const std::string& name() const override { return name_; }

    [[nodiscard]] bool isMetaclass() const override { return isMetaclass_; }

    [[nodiscard]] std::string className() const override { return name_; }

    [[nodiscard]] std::string description() const override { return name_; }

    // Null for a root class. The superclass of the root's metaclass is the root class.
    [[nodiscard]] RuntimeClass* superclass() const { return superclass_; }

    [[nodiscard]] const void* owner() const { return owner_; }

    [[nodiscard]] const platform::Implementation* ownMethod(
        const platform::Selector& selector) const {
        const auto found = methods.find(selector);
        return found == methods.end() ? nullptr : &found->second;
    }

    // The class itself or the nearest of its superclasses that has the method; null when none.
    [[nodiscard]] const platform::Implementation* method(const platform::Selector& selector) const {
        for (const RuntimeClass* cls = this; cls != nullptr; cls = cls->superclass_) {
            if (const platform::Implementation* const found = cls->ownMethod(selector)) {
                return found;
            }
        }
        return nullptr;
    }

    // A copy of it; nothing when none.
    [[nodiscard]] platform::Implementation implementation(
        const platform::Selector& selector) const {
        const platform::Implementation* const found = method(selector);
        return found == nullptr ? platform::Implementation() : *found;
    }

    // Whether it is that class or derives from it.
    [[nodiscard]] bool derivesFrom(const RuntimeClass* ancestor) const {
        const RuntimeClass* cls = this;
        while (cls != nullptr && cls != ancestor) {
            cls = cls->superclass_;
        }
        return cls != nullptr;
    }

    Methods methods;
    Methods variables;                  // getters by the variables' names
    RuntimeClass* metaclass = nullptr;  // null for a metaclass
    // Of a class; guarded by the runtime's initialization lock unless it is `done`.
    std::atomic<Initialization> initialization = Initialization::notYet;
    std::thread::id initializingThread;

  private:
    std::string name_;
    bool isMetaclass_;
    RuntimeClass* superclass_;
    const void* owner_;
};

void addLibraryMethods(RuntimeClass& added, const platform::ClassDefinition& definition) {
    Methods& classMethods = added.metaclass->methods;
    for (const platform::MethodDefinition& method : definition.methods) {
        (method.isClassMethod ? classMethods : added.methods)[method.selector] =
            method.implementation;
    }
    if (definition.makeInstance) {
        classMethods["new"] =
            platform::Implementation(std::function<platform::ObjectRef(platform::Object&)>(
                [make = definition.makeInstance](platform::Object&) { return make(); }));
    }
    if (definition.load) {
        classMethods["load"] = platform::Implementation(std::function<void(platform::Object&)>(
            [load = definition.load](platform::Object&) { load(); }));
    }
    if (definition.initialize) {
        classMethods["initialize"] =
            platform::makeImplementation(std::function<void(RuntimeClass&)>(
                [initialize = definition.initialize](RuntimeClass& cls) {
                    initialize(cls.shared_from_this());
                }));
    }
}

}  // namespace

// Classes are never removed, so plain pointers between them hold for the runtime's life.
struct Runtime::State {
    explicit State(Warn sink) : warn(std::move(sink)) {}

    void say(const std::string& line) const {
        if (warn) {
            warn(line);
        }
    }

    // The class behind a handle; null for nil and for a class of another runtime.
    [[nodiscard]] RuntimeClass* resolve(const platform::Class* cls) const {
        auto* const own = dynamic_cast<RuntimeClass*>(const_cast<platform::Class*>(cls));
        return own != nullptr && own->owner() == this ? own : nullptr;
    }

    [[nodiscard]] RuntimeClass* find(const std::string& name) const {
        const auto found = classes.find(name);
        return found == classes.end() ? nullptr : found->second.get();
    }

    // What the object is an instance of: a class is one of its metaclass. Null when the process has
    // no such class.
    [[nodiscard]] const RuntimeClass* classOf(const platform::Object& object) const {
        const auto* const asClass = dynamic_cast<const platform::Class*>(&object);
        if (asClass == nullptr) {
            return find(object.className());
        }
        const RuntimeClass* const own = resolve(asClass);
        return own == nullptr ? nullptr : own->metaclass;
    }

    // With the lock held for writing. The superclass may be null: a root.
    RuntimeClass& add(const std::string& name, RuntimeClass* superclass) {
        const auto cls = std::make_shared<RuntimeClass>(name, false, superclass, this);
        RuntimeClass* const metaSuperclass =
            superclass != nullptr ? superclass->metaclass : cls.get();
        const auto metaclass = std::make_shared<RuntimeClass>(name, true, metaSuperclass, this);
        cls->metaclass = metaclass.get();
        classes.emplace(name, cls);
        metaclasses.emplace(name, metaclass);
        return *cls;
    }

    void initialize(RuntimeClass& cls);

    // Held for a look-up or a change, never while a method runs. A plain lock: with readers at work
    // all the time a shared one lets a writer wait for seconds.
    mutable std::mutex mutex;
    std::map<std::string, std::shared_ptr<RuntimeClass>> classes;
    std::map<std::string, std::shared_ptr<RuntimeClass>> metaclasses;
    std::mutex initializationMutex;
    std::condition_variable initializationDone;
    Warn warn;
};

void Runtime::State::initialize(RuntimeClass& cls) {
    using Initialization = RuntimeClass::Initialization;
    if (cls.initialization == Initialization::done) {
        return;
    }
    if (cls.superclass() != nullptr) {
        initialize(*cls.superclass());
    }
    {
        std::unique_lock lock(initializationMutex);
        if (cls.initialization == Initialization::running) {
            // A message from within +initialize is delivered; another thread waits for its end.
            if (cls.initializingThread != std::this_thread::get_id()) {
                initializationDone.wait(lock,
                                        [&] { return cls.initialization == Initialization::done; });
            }
            return;
        }
        if (cls.initialization == Initialization::done) {
            return;
        }
        cls.initialization = Initialization::running;
        cls.initializingThread = std::this_thread::get_id();
    }
    platform::Implementation implementation;
    {
        const std::scoped_lock lock(mutex);
        implementation = cls.metaclass->implementation("initialize");
    }
    if (const auto* const function = implementation.as<void(platform::Object&)>()) {
        (*function)(cls);
    }
    {
        const std::scoped_lock lock(initializationMutex);
        cls.initialization = Initialization::done;
    }
    initializationDone.notify_all();
}

Runtime::Runtime(Warn warn) : state_(std::make_unique<State>(std::move(warn))) {}

Runtime::~Runtime() = default;

bool Runtime::addClass(const std::string& name, const std::string& superclass) {
    const std::scoped_lock lock(state_->mutex);
    RuntimeClass* const parent = superclass.empty() ? nullptr : state_->find(superclass);
    if (name.empty() || state_->find(name) != nullptr ||
        (parent == nullptr && !superclass.empty())) {
        return false;
    }
    state_->add(name, parent);
    return true;
}

bool Runtime::setMethod(const platform::ClassRef& cls, const platform::Selector& selector,
                        const platform::Implementation& implementation) {
    // What the replaced method captured goes after the lock: its end may send messages.
    platform::Implementation replaced = implementation;
    const std::scoped_lock lock(state_->mutex);
    RuntimeClass* const own = state_->resolve(cls.get());
    if (own == nullptr || !implementation) {
        return false;
    }
    std::swap(own->methods[selector], replaced);
    return true;
}

platform::Implementation Runtime::methodOf(const platform::ClassRef& cls,
                                           const platform::Selector& selector) const {
    const std::scoped_lock lock(state_->mutex);
    const RuntimeClass* const own = state_->resolve(cls.get());
    return own == nullptr ? platform::Implementation() : own->implementation(selector);
}

bool Runtime::hasOwnMethod(const platform::ClassRef& cls,
                           const platform::Selector& selector) const {
    const std::scoped_lock lock(state_->mutex);
    const RuntimeClass* const own = state_->resolve(cls.get());
    return own != nullptr && own->ownMethod(selector) != nullptr;
}

bool Runtime::isKindOf(const platform::ClassRef& cls, const std::string& ancestor) const {
    const std::scoped_lock lock(state_->mutex);
    const RuntimeClass* const own = state_->resolve(cls.get());
    return own != nullptr && own->derivesFrom(state_->find(ancestor));
}

bool Runtime::setVariable(const platform::ClassRef& cls, const std::string& name,
                          const platform::Implementation& getter) {
    platform::Implementation replaced = getter;  // then the one before, until unlocked
    const std::scoped_lock lock(state_->mutex);
    RuntimeClass* const own = state_->resolve(cls.get());
    if (own == nullptr) {
        return false;
    }
    std::swap(own->variables[name], replaced);
    return true;
}

platform::Implementation Runtime::variableOf(const platform::Object& object,
                                             const std::string& name) const {
    const std::scoped_lock lock(state_->mutex);
    for (const RuntimeClass* cls = state_->classOf(object); cls != nullptr;
         cls = cls->superclass()) {
        if (const auto found = cls->variables.find(name); found != cls->variables.end()) {
            return found->second;
        }
    }
    return {};
}

platform::Implementation Runtime::methodForMessage(platform::Object& receiver,
                                                   const platform::Selector& selector) {
    RuntimeClass* cls = nullptr;
    RuntimeClass* methods = nullptr;
    {
        const std::scoped_lock lock(state_->mutex);
        const auto* const asClass = dynamic_cast<const platform::Class*>(&receiver);
        if (asClass != nullptr) {
            cls = state_->resolve(asClass);
            methods = cls == nullptr ? nullptr : cls->metaclass;
        } else {
            cls = state_->find(receiver.className());
            methods = cls;
        }
    }
    if (methods == nullptr) {
        return {};
    }
    state_->initialize(*cls);
    const std::scoped_lock lock(state_->mutex);
    return methods->implementation(selector);
}

void Runtime::refuse(const platform::Object& receiver, const platform::Selector& selector,
                     const platform::Implementation& found, const std::type_info& sent) const {
    const bool toClass = dynamic_cast<const platform::Class*>(&receiver) != nullptr;
    state_->say("objc: " + std::string(toClass ? "+[" : "-[") + receiver.className() + " " +
                selector + "] refused: sent as " + readableType(&sent) + ", found " +
                readableType(found.signature()) + " (receiver " + receiver.description() + ")");
}

void Runtime::registerClass(const platform::ClassDefinition& definition) {
    std::string refusal;
    {
        const std::scoped_lock lock(state_->mutex);
        RuntimeClass* parent = state_->find(definition.superclass);
        if (parent == nullptr && definition.superclass == kNSObject &&
            definition.name != kNSObject) {
            parent = &state_->add(kNSObject, nullptr);
        }
        if (parent == nullptr) {
            refusal = "the superclass " + definition.superclass + " is missing";
        } else if (definition.name.empty() || state_->find(definition.name) != nullptr) {
            refusal = "the name is taken";
        } else {
            addLibraryMethods(state_->add(definition.name, parent), definition);
        }
    }
    if (!refusal.empty()) {
        state_->say("objc: class " + definition.name + " not registered: " + refusal);
    } else if (definition.load) {
        definition.load();
    }
}

platform::ClassRef Runtime::getClass(const std::string& name) {
    const std::scoped_lock lock(state_->mutex);
    const auto found = state_->classes.find(name);
    return found == state_->classes.end() ? nullptr : found->second;
}

platform::ClassRef Runtime::getMetaclass(const platform::ClassRef& cls) {
    const std::scoped_lock lock(state_->mutex);
    const RuntimeClass* own = state_->resolve(cls.get());
    if (own == nullptr) {
        return nullptr;
    }
    if (own->isMetaclass()) {
        // The class of every metaclass is the root's metaclass, whose superclass is the root.
        while (own->superclass()->isMetaclass()) {
            own = own->superclass();
        }
        return state_->metaclasses.at(own->name());
    }
    return own->metaclass->shared_from_this();
}

void Runtime::sendMessage(const platform::ClassRef& cls, const platform::Selector& selector) {
    if (cls == nullptr) {
        return;
    }
    // The root class answers +load by doing nothing, so a class without one is no mistake.
    const platform::Implementation implementation = methodForMessage(*cls, selector);
    if (implementation || selector != "load") {
        call<void>(implementation, *cls, selector);
    }
}

bool Runtime::addMethod(const platform::ClassRef& cls, const platform::Selector& selector,
                        const platform::Implementation& implementation,
                        const std::string& typeEncoding) {
    // The signature travels with the implementation; the encoding has nothing to add to it.
    static_cast<void>(typeEncoding);
    const std::scoped_lock lock(state_->mutex);
    RuntimeClass* const own = state_->resolve(cls.get());
    return own != nullptr && implementation &&
           own->methods.emplace(selector, implementation).second;
}

bool Runtime::isKindOfClass(const platform::Object& object, const platform::ClassRef& cls) {
    const std::scoped_lock lock(state_->mutex);
    const RuntimeClass* const own = state_->classOf(object);
    return own != nullptr && own->derivesFrom(state_->resolve(cls.get()));
}

platform::ObjectRef Runtime::instanceVariable(platform::Object& object, const std::string& name) {
    return variableOf(object, name).getObject(object);
}

platform::ObjectRef Runtime::valueForKey(platform::Object& object, const std::string& key) {
    std::string capitalised = key;
    if (!key.empty() && key[0] >= 'a' && key[0] <= 'z') {
        capitalised[0] = static_cast<char>(key[0] - 'a' + 'A');
    }
    for (const std::string& selector : {"get" + capitalised, key, "is" + capitalised, "_" + key}) {
        const platform::Implementation method = methodForMessage(object, selector);
        if (method.isObjectGetter()) {
            return method.getObject(object);
        }
    }
    for (const std::string& name : {"_" + key, "_is" + capitalised, key, "is" + capitalised}) {
        if (const platform::Implementation getter = variableOf(object, name)) {
            return getter.getObject(object);
        }
    }
    state_->say(
        "*** Terminating app due to uncaught exception 'NSUnknownKeyException', reason: '[" +
        object.description() +
        " valueForUndefinedKey:]: this class is not key value coding-compliant for the key " + key +
        ".'");
    return nullptr;
}

void Runtime::hookMessageEx(const platform::ClassRef& cls, const platform::Selector& selector,
                            const platform::Implementation& replacement,
                            platform::Implementation* original) {
    std::string warning;
    platform::Implementation installed = replacement;  // then what it replaced, until unlocked
    {
        const std::scoped_lock lock(state_->mutex);
        RuntimeClass* const own = state_->resolve(cls.get());
        const platform::Implementation* const found =
            own == nullptr ? nullptr : own->method(selector);
        if (own == nullptr) {
            warning = "MS:Warning: nil class argument for selector " + selector;
        } else if (!replacement) {
            warning = "MS:Warning: nil imp argument for [" + own->name() + " " + selector + "]";
        } else if (found == nullptr) {
            warning = "MS:Warning: message not found [" + own->name() + " " + selector + "]";
        } else if (*found->signature() != *replacement.signature()) {
            warning = "MS:Warning: [" + own->name() + " " + selector + "] is " +
                      readableType(found->signature()) + ", its replacement " +
                      readableType(replacement.signature());
        } else {
            const bool inherited = own->ownMethod(selector) == nullptr;
            if (original != nullptr) {
                *original = inherited ? found->forwarding([state = state_.get(),
                                                           parent = own->superclass(), selector] {
                    const std::scoped_lock reading(state->mutex);
                    return parent->implementation(selector);
                })
                                      : *found;
            }
            std::swap(own->methods[selector], installed);
            return;
        }
    }
    state_->say(warning);
}

}  // namespace velmoranth::desktop
