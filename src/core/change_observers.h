// The four Darwin notifications by which the settings panel announces a change.
#pragma once

#include "platform/core_foundation.h"

#include <string>

namespace velmoranth::core {

// Observer of "com.qor.velmoranthprefs.prefs": reloads the settings.
void PreferencesChangedCallback(platform::DarwinNotificationCenter& center, void* observer,
                                const std::string& name, const void* object,
                                const platform::Dictionary* userInfo);

// Observer of "com.qor.velmoranthdevelopingprefs.prefs": changes nothing.
void DevelopingPrefsChangedNotification(platform::DarwinNotificationCenter& center, void* observer,
                                        const std::string& name, const void* object,
                                        const platform::Dictionary* userInfo);

// Observer of "com.qor.velmoranthcompileassets.prefs": only logs.
void CompileAssetsCallback(platform::DarwinNotificationCenter& center, void* observer,
                           const std::string& name, const void* object,
                           const platform::Dictionary* userInfo);

// Registers these three and the theme change's on the Darwin notification centre.
void registerChangeObservers();

}  // namespace velmoranth::core
