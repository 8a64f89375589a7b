// The hooking library on GCC's runtime.
#import "device/standins/hooking.h"

#import "device/standins/messages.h"
#include "record/operations.h"
#include <CydiaSubstrate/CydiaSubstrate.h>
#include <objc/runtime.h>

#include <mutex>
#include <set>
#include <string>
#include <utility>

namespace velmoranth::standins {
namespace {

std::function<void(Class, SEL)>& actionWhileHooking() {
    static auto* const action = new std::function<void(Class, SEL)>;
    return *action;
}

// By the class's address and the selector's name, of which there are several addresses.
struct Hooked {
    std::mutex mutex;
    std::set<std::pair<const void*, std::string>> methods;
};

Hooked& hooked() {
    static auto* const instance = new Hooked;
    return *instance;
}

}  // namespace

void whileHooking(const std::function<void(Class cls, SEL selector)>& action) {
    actionWhileHooking() = action;
}

bool isHooked(Class cls, SEL selector) {
    const std::scoped_lock lock(hooked().mutex);
    return hooked().methods.contains({cls, sel_getName(selector)});
}

}  // namespace velmoranth::standins

namespace {

// How GCC's runtime lays a class out.
struct ClassLayout {
    Class isa;
    Class superclass;
    const char* name;
    long version;
    unsigned long info;
};

// clang sets this in each metaclass; the runtime takes it for a class that is still being made, and
// adding a method to one of those corrupts it.
constexpr unsigned long kInConstruction = 0x10;

void finish(Class cls) {
    if (class_isMetaClass(cls)) {
        reinterpret_cast<ClassLayout*>(cls)->info &= ~kInConstruction;
    }
}

}  // namespace

extern "C" void MSHookMessageEx(Class cls, SEL selector, IMP replacement, IMP* original) {
    using velmoranth::standins::Words;
    constexpr auto kMessage = velmoranth::record::messageOf("Substrate", "hookMessageEx");
    if (cls == Nil) {
        velmoranth::standins::called(kMessage, static_cast<id>(nil), selector);
        return;
    }
    velmoranth::standins::called(
        kMessage, Words{(class_isMetaClass(cls) ? "+[" : "-[") + std::string(class_getName(cls)) +
                        " " + sel_getName(selector) + "]"});
    finish(cls);
    const Method method = class_getInstanceMethod(cls, selector);
    if (method == nullptr) {
        return;
    }
    IMP previous = method_getImplementation(method);
    // An inherited method is overridden in the class itself; the parent stays as it is.
    if (!class_addMethod(cls, selector, replacement, method_getTypeEncoding(method))) {
        previous = method_setImplementation(method, replacement);
    }
    {
        auto& hooked = velmoranth::standins::hooked();
        const std::scoped_lock lock(hooked.mutex);
        hooked.methods.insert({cls, sel_getName(selector)});
    }
    if (const auto& action = velmoranth::standins::actionWhileHooking()) {
        action(cls, selector);
    }
    if (original != nullptr) {
        *original = previous;
    }
}
