// CoreFoundation: the Darwin notification centre, the framework's version number, and the
// platform's own check of the system version.
#pragma once

#include "platform/foundation.h"

#include <string>

namespace velmoranth::platform {

// CFNotificationSuspensionBehavior, with the platform's values.
enum class SuspensionBehavior { drop = 1, coalesce = 2, hold = 3, deliverImmediately = 4 };

class DarwinNotificationCenter;

// CFNotificationCallback. Darwin notifications carry no object and no userInfo: both are null.
using NotificationCallback = void (*)(DarwinNotificationCenter& center, void* observer,
                                      const std::string& name, const void* object,
                                      const Dictionary* userInfo);

// The centre that CFNotificationCenterGetDarwinNotifyCenter returns.
class DarwinNotificationCenter {
  public:
    DarwinNotificationCenter() = default;
    DarwinNotificationCenter(const DarwinNotificationCenter&) = delete;
    DarwinNotificationCenter& operator=(const DarwinNotificationCenter&) = delete;
    virtual ~DarwinNotificationCenter() = default;

    // CFNotificationCenterAddObserver. `observer` and `object` are passed on as they are (null:
    // none). The callback runs on the main thread's loop for every post of `name` on the device.
    virtual void addObserver(void* observer, NotificationCallback callback, const std::string& name,
                             const void* object, SuspensionBehavior suspensionBehavior) = 0;
};

class CoreFoundation {
  public:
    CoreFoundation() = default;
    CoreFoundation(const CoreFoundation&) = delete;
    CoreFoundation& operator=(const CoreFoundation&) = delete;
    virtual ~CoreFoundation() = default;

    // kCFCoreFoundationVersionNumber of the running system.
    [[nodiscard]] virtual double versionNumber() = 0;
    // The platform's check that the running system version is at least the given one.
    [[nodiscard]] virtual bool isSystemVersionAtLeast(int major, int minor, int patch) = 0;
};

}  // namespace velmoranth::platform
