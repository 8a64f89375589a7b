// CoreFoundation's version number and its Darwin notification centre.
#include "device/platform/services.h"
#include "device/platform/text.h"
#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>
#import <Foundation/NSOperatingSystemVersion.h>

#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

namespace velmoranth::device {
namespace {

// What was given for a name and an observer, in the order in which it was given.
struct Registrations {
    void* observer;
    std::string name;
    std::vector<platform::NotificationCallback> callbacks;
    std::size_t next = 0;
};

// The centre hands back the observer alone, so this remembers whom it is to call. Observers stay
// for the life of the process.
class RegistrationTable {
  public:
    void add(void* observer, platform::NotificationCallback callback, const std::string& name) {
        const std::scoped_lock lock(mutex_);
        if (Registrations* const known = find(observer, name)) {
            known->callbacks.push_back(callback);
        } else {
            registrations_.push_back({.observer = observer, .name = name, .callbacks = {callback}});
        }
    }

    // The centre calls once for each time that a name was registered with an observer, and does not
    // say which one it means: each call is the next one's. Null for what nobody registered.
    platform::NotificationCallback next(void* observer, const std::string& name) {
        const std::scoped_lock lock(mutex_);
        Registrations* const known = find(observer, name);
        if (known == nullptr) {
            return nullptr;
        }
        const std::size_t turn = known->next;
        known->next = (turn + 1) % known->callbacks.size();
        return known->callbacks[turn];
    }

  private:
    [[nodiscard]] Registrations* find(void* observer, const std::string& name) {
        for (Registrations& each : registrations_) {
            if (each.observer == observer && each.name == name) {
                return &each;
            }
        }
        return nullptr;
    }

    std::mutex mutex_;
    std::vector<Registrations> registrations_;
};

// Never destroyed: the centre may call as long as the process lives.
RegistrationTable& registrationTable() {
    static auto& table = *new RegistrationTable;
    return table;
}

void deliver(CFNotificationCenterRef /*center*/, void* observer, CFStringRef name,
             const void* object, CFDictionaryRef /*userInfo*/) {
    @autoreleasepool {
        const std::string text =
            textOf(static_cast<id>(const_cast<void*>(static_cast<const void*>(name)))).value_or("");
        if (const auto callback = registrationTable().next(observer, text)) {
            callback(darwinNotificationCenter(), observer, text, object, nullptr);
        }
    }
}

class DarwinNotifyCenter final : public platform::DarwinNotificationCenter {
  public:
    void addObserver(void* observer, platform::NotificationCallback callback,
                     const std::string& name, const void* object,
                     platform::SuspensionBehavior suspensionBehavior) override {
        registrationTable().add(observer, callback, name);
        CFNotificationCenterAddObserver(
            CFNotificationCenterGetDarwinNotifyCenter(), observer, &deliver,
            // A string of one framework is one of the other.
            reinterpret_cast<CFStringRef>(stringOf(name)), object,
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
    return theOne<DarwinNotifyCenter>();
}

platform::CoreFoundation& coreFoundation() {
    return theOne<NativeCoreFoundation>();
}

}  // namespace velmoranth::device
