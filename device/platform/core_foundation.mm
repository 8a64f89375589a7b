// CoreFoundation's version number and its Darwin notification centre.
#include "device/platform/services.h"
#include "device/platform/text.h"
#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>
#import <Foundation/NSOperatingSystemVersion.h>

#include <string>

namespace velmoranth::device {
namespace {

// An observer as the engine gave it, for the platform to hand back. Observers stay for the life of
// the process, and so do these.
struct Registration {
    platform::NotificationCallback callback;
    void* observer;
};

void deliver(CFNotificationCenterRef /*center*/, void* observer, CFStringRef name,
             const void* object, CFDictionaryRef /*userInfo*/) {
    const auto& registration = *static_cast<const Registration*>(observer);
    @autoreleasepool {
        const std::string text =
            textOf(static_cast<id>(const_cast<void*>(static_cast<const void*>(name)))).value_or("");
        registration.callback(darwinNotificationCenter(), registration.observer, text, object,
                              nullptr);
    }
}

class DarwinNotifyCenter final : public platform::DarwinNotificationCenter {
  public:
    void addObserver(void* observer, platform::NotificationCallback callback,
                     const std::string& name, const void* object,
                     platform::SuspensionBehavior suspensionBehavior) override {
        CFNotificationCenterAddObserver(
            CFNotificationCenterGetDarwinNotifyCenter(), new Registration{callback, observer},
            // A string of one framework is one of the other.
            &deliver, reinterpret_cast<CFStringRef>(stringOf(name)), object,
            static_cast<CFNotificationSuspensionBehavior>(suspensionBehavior));
    }
};

class NativeCoreFoundation final : public platform::CoreFoundation {
  public:
    double versionNumber() override { return kCFCoreFoundationVersionNumber; }

    bool isSystemVersionAtLeast(int major, int minor, int patch) override {
        const NSOperatingSystemVersion version = {major, minor, patch};
        return static_cast<bool>(
            [[NSProcessInfo processInfo] isOperatingSystemAtLeastVersion:version]);
    }
};

}  // namespace

platform::DarwinNotificationCenter& darwinNotificationCenter() {
    static DarwinNotifyCenter instance;
    return instance;
}

platform::CoreFoundation& coreFoundation() {
    static NativeCoreFoundation instance;
    return instance;
}

}  // namespace velmoranth::device
