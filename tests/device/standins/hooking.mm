// The hooking library on GCC's runtime.
#import "device/standins/hooking.h"

#import "device/standins/standin.h"
#include <CydiaSubstrate/CydiaSubstrate.h>
#include <objc/runtime.h>

namespace velmoranth::standins {
namespace {

std::function<void(Class, SEL)>& actionWhileHooking() {
    static auto* const action = new std::function<void(Class, SEL)>;
    return *action;
}

}  // namespace

void whileHooking(const std::function<void(Class cls, SEL selector)>& action) {
    actionWhileHooking() = action;
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
    const std::string side = cls != Nil && class_isMetaClass(cls) ? "+" : "-";
    velmoranth::standins::note("MSHookMessageEx(" + side + "[" +
                               (cls == Nil ? "nil" : class_getName(cls)) + " " +
                               sel_getName(selector) + "])");
    if (cls == Nil) {
        return;
    }
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
    if (const auto& action = velmoranth::standins::actionWhileHooking()) {
        action(cls, selector);
    }
    if (original != nullptr) {
        *original = previous;
    }
}
