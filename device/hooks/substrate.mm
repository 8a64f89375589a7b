// The hooking library.
#include "device/hooks/hook_entries.h"
#include "device/platform/handle.h"
#include "device/platform/services.h"
#include "device/platform/signed_pointers.h"
#include <CydiaSubstrate/CydiaSubstrate.h>
#include <objc/runtime.h>

namespace velmoranth::device {
namespace {

IMP implementationThatAnswers(Class cls, SEL selector) {
    const Method method = cls == Nil ? nullptr : class_getInstanceMethod(cls, selector);
    return method == nullptr ? nullptr : method_getImplementation(method);
}

class MobileSubstrate final : public platform::Substrate {
  public:
    void hookMessageEx(const platform::ClassRef& cls, const platform::Selector& selector,
                       const platform::Implementation& replacement,
                       platform::Implementation* original) override {
        const HookEntry* const hook = hookEntryOf(replacement);
        if (hook == nullptr) {
            return;  // no C function stands for what is none of the table's rows
        }
        const Class native = static_cast<Class>(nativeOf(cls));
        const SEL name = sel_registerName(selector.c_str());
        // Known before the method is replaced, since another thread may call it at once.
        *hook->slot = implementationThatAnswers(native, name);
        IMP previous = nullptr;
        MSHookMessageEx(native, name, hook->entry, &previous);
        // Whether hooking libraries sign what they give back is not written down.
        previous = signedAgain(previous);
        *hook->slot = previous;
        if (previous != nullptr) {
            *original = platform::Implementation::native(reinterpret_cast<const void*>(previous));
        }
    }
};

}  // namespace

platform::Substrate& substrate() {
    return theOne<MobileSubstrate>();
}

}  // namespace velmoranth::device
