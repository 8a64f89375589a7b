// The Objective-C runtime itself.
#include "device/hooks/hook_entries.h"
#include "device/platform/handle.h"
#include "device/platform/services.h"
#include "device/platform/text.h"
#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include <string>

namespace velmoranth::device {
namespace {

class NativeObjcRuntime final : public platform::ObjcRuntime {
  public:
    // The library's classes are real ones here: the runtime made them known, and ran their +load,
    // when it mapped the library.
    void registerClass(const platform::ClassDefinition& /*definition*/) override {}

    platform::ClassRef getClass(const std::string& name) override {
        return wrapClass(objc_getClass(name.c_str()));
    }

    platform::ClassRef getMetaclass(const platform::ClassRef& cls) override {
        const id native = nativeOf(cls);
        return native == nil ? nullptr : wrapClass(object_getClass(native));
    }

    void sendMessage(const platform::ClassRef& cls, const platform::Selector& selector) override {
        [static_cast<Class>(nativeOf(cls)) performSelector:sel_registerName(selector.c_str())];
    }

    bool addMethod(const platform::ClassRef& cls, const platform::Selector& selector,
                   const platform::Implementation& implementation,
                   const std::string& typeEncoding) override {
        const Class native = static_cast<Class>(nativeOf(cls));
        const IMP entry = addedMethodEntryOf(implementation);
        return native != Nil && entry != nullptr &&
               class_addMethod(native, sel_registerName(selector.c_str()), entry,
                               typeEncoding.c_str());
    }

    bool isKindOfClass(const platform::Object& object, const platform::ClassRef& cls) override {
        const Class native = static_cast<Class>(nativeOf(cls));
        return native != Nil && [nativeOf(object) isKindOfClass:native];
    }

    platform::ObjectRef instanceVariable(platform::Object& object,
                                         const std::string& name) override {
        const id native = nativeOf(object);
        if (native == nil) {
            return nullptr;
        }
        const Ivar variable = class_getInstanceVariable(object_getClass(native), name.c_str());
        if (variable == nullptr || !isObject(ivar_getTypeEncoding(variable))) {
            return nullptr;
        }
        const auto* const place = reinterpret_cast<const char*>(native) + ivar_getOffset(variable);
        return wrapAny(*reinterpret_cast<const id*>(place));
    }

    platform::ObjectRef valueForKey(platform::Object& object, const std::string& key) override {
        return wrapAny([nativeOf(object) valueForKey:stringOf(key)]);
    }

  private:
    // "@", and "@" with a class's name; "@?" is a block, which is not always an object.
    static bool isObject(const char* encoding) {
        return encoding != nullptr && encoding[0] == '@' && encoding[1] != '?';
    }
};

}  // namespace

platform::ObjcRuntime& objcRuntime() {
    return theOne<NativeObjcRuntime>();
}

}  // namespace velmoranth::device
