// The settings file manager of the settings panel. Failures are only logged.
#pragma once

namespace velmoranth::filemanager {

class VelmoranthFileManager {
  public:
    // Puts the factory preferences in place of missing ones, and opens their folder up (mode 0777).
    // When there are preferences already, the copy fails, is logged, and they stay.
    static void NoUserSettingCreateThemeNow();
};

}  // namespace velmoranth::filemanager
