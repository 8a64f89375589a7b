// The hooking library.
#include "device/hooks/hook_entries.h"
#include "device/platform/handle.h"
#include "device/platform/services.h"
#include <CydiaSubstrate/CydiaSubstrate.h>
#include <objc/runtime.h>

namespace velmoranth::device {
namespace {

class MobileSubstrate final : public platform::Substrate {
  public:
    void hookMessageEx(const platform::ClassRef& cls, const platform::Selector& selector,
                       const platform::Implementation& replacement,
                       platform::Implementation* original) override {
        const HookEntry* const hook = hookEntryOf(replacement);
        if (hook == nullptr) {
            return;  // no C function stands for what is none of the table's rows
        }
        MSHookMessageEx(static_cast<Class>(nativeOf(cls)), sel_registerName(selector.c_str()),
                        hook->entry, hook->slot);
        if (*hook->slot != nullptr) {
            *original =
                platform::Implementation::native(reinterpret_cast<const void*>(*hook->slot));
        }
    }
};

}  // namespace

platform::Substrate& substrate() {
    static MobileSubstrate instance;
    return instance;
}

}  // namespace velmoranth::device
