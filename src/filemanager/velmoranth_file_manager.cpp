#include "filemanager/velmoranth_file_manager.h"

#include "core/format.h"
#include "platform/platform.h"

#include <string>

namespace velmoranth::filemanager {

using core::NSLog;
using core::stringWithFormat;
using platform::Failure;
using platform::platform;

namespace {

constexpr const char* kPreferencesFolder = "/User/Library/Preferences";
constexpr const char* kPreferencesFile = "com.qor.velmoranthprefs.plist";
constexpr unsigned kOpenMode = 0777;

// Formatted afresh for every use.
std::string livePreferences() {
    return stringWithFormat("/User/Library/Preferences/%@", std::string(kPreferencesFile));
}

}  // namespace

void VelmoranthFileManager::NoUserSettingCreateThemeNow() {
    const std::string factory =
        "/User/Library/VelMoranth/DefaultSettings/com.qor.velmoranthprefs.plist";
    const std::string live = livePreferences();
    platform().fileManager.setPosixPermissionsOfItemAtPath(kOpenMode, kPreferencesFolder);
    platform().libSystem.chmod(kPreferencesFolder, kOpenMode);

    Failure failure = platform().fileManager.copyItemAtPathToPath(factory, live);
    if (!failure) {
        // The file is moved onto its own path; that fails on the platform, and is logged.
        failure = platform().fileManager.moveItemAtPathToPath(live, livePreferences());
    }
    if (failure) {
        NSLog("Velmoranth Failed to move '%@' to '%@': %@", factory, live,
              failure->localizedDescription);
    }
}

}  // namespace velmoranth::filemanager
