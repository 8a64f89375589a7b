// Calls of the Objective-C runtime that tests steer or look at, defined ahead of the runtime's own.
#include "device/library/device_process.h"
#import "device/standins/messages.h"
#include <dlfcn.h>
#include <objc/runtime.h>

#include <cstring>
#include <mutex>
#include <set>
#include <string>

namespace velmoranth::standins {
namespace {

struct HiddenClasses {
    std::mutex mutex;
    std::set<std::string> names;
};

HiddenClasses& hiddenClasses() {
    static auto* const instance = new HiddenClasses;
    return *instance;
}

bool isHidden(const char* name) {
    const std::scoped_lock lock(hiddenClasses().mutex);
    return hiddenClasses().names.contains(name);
}

}  // namespace

void hideClass(const std::string& name) {
    const std::scoped_lock lock(hiddenClasses().mutex);
    hiddenClasses().names.insert(name);
}

}  // namespace velmoranth::standins

extern "C" {

__attribute__((visibility("default"))) Class objc_getClass(const char* name) {
    static const auto next =
        reinterpret_cast<Class (*)(const char*)>(dlsym(RTLD_NEXT, "objc_getClass"));
    return name == nullptr || velmoranth::standins::isHidden(name) ? Nil : next(name);
}

// Notes what is added that is not there by replacing a method.
__attribute__((visibility("default"))) BOOL class_addMethod(Class cls, SEL selector, IMP method,
                                                            const char* types) {
    static const auto next = reinterpret_cast<BOOL (*)(Class, SEL, IMP, const char*)>(
        dlsym(RTLD_NEXT, "class_addMethod"));
    using velmoranth::standins::Words;
    if (std::strcmp(sel_getName(selector), "handleTap") == 0) {
        velmoranth::standins::called("class_addMethod",
                                     Words{cls == Nil ? "nil" : class_getName(cls)}, selector,
                                     Words{"\"" + std::string(types) + "\""});
    }
    return next(cls, selector, method, types);
}

}  // extern "C"
