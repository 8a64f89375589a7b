#include "core/change_observers.h"

#include "core/format.h"
#include "core/preferences.h"
#include "core/settings.h"
#include "core/theme_change.h"
#include "platform/platform.h"

#include <array>

namespace velmoranth::core {

using platform::DarwinNotificationCenter;
using platform::Dictionary;

namespace {

struct Observer {
    const char* name;
    platform::NotificationCallback callback;
};

// In the order of registration.
constexpr std::array<Observer, 4> kObservers{{
    {kPreferencesNotice, PreferencesChangedCallback},
    {kThemeChangedNotice, ThemePreferencesChangedCallback},
    {kDevelopingNotice, DevelopingPrefsChangedNotification},
    {kCompileAssetsNotice, CompileAssetsCallback},
}};

}  // namespace

void PreferencesChangedCallback(DarwinNotificationCenter& /*center*/, void* /*observer*/,
                                const std::string& name, const void* /*object*/,
                                const Dictionary* /*userInfo*/) {
    if (settings().enableLogging) {
        NSLog(
            "VELMORANTH **********************************************PreferencesChangedCallback "
            "CFStringRef:%@ ********************************************",
            name);
    }
    loadSettings();
}

void DevelopingPrefsChangedNotification(DarwinNotificationCenter& /*center*/, void* /*observer*/,
                                        const std::string& name, const void* /*object*/,
                                        const Dictionary* /*userInfo*/) {
    if (settings().enableLogging) {
        NSLog(
            "VELMORANTH "
            "**********************************************DevelopingPrefsChangedNotification "
            "CFStringRef:%@ ********************************************",
            name);
    }
    // Read and kept nowhere: the lookups read the switch from the file themselves.
    static_cast<void>(
        platform::boolValue(platform::objectForKey(SettingsStore(), "enableImageDump")));
}

void CompileAssetsCallback(DarwinNotificationCenter& /*center*/, void* /*observer*/,
                           const std::string& name, const void* /*object*/,
                           const Dictionary* /*userInfo*/) {
    if (settings().enableLogging) {
        NSLog(
            "VELMORANTH ********************************************** CompileAssetsCallback "
            "CFStringRef:%@ ********************************************",
            name);
    }
}

void registerChangeObservers() {
    for (const Observer& observer : kObservers) {
        platform::platform().darwinNotifications.addObserver(
            nullptr, observer.callback, observer.name, nullptr,
            platform::SuspensionBehavior::coalesce);
    }
}

}  // namespace velmoranth::core
