// CoreFoundation's version number and the check of the system version, for a given release.
#pragma once

#include "desktop/system/system_version.h"
#include "platform/core_foundation.h"

namespace velmoranth::desktop {

class DesktopCoreFoundation final : public platform::CoreFoundation {
  public:
    DesktopCoreFoundation(double versionNumber, const SystemVersion& systemVersion)
        : versionNumber_(versionNumber), systemVersion_(systemVersion) {}

    [[nodiscard]] double versionNumber() override { return versionNumber_; }

    [[nodiscard]] bool isSystemVersionAtLeast(int major, int minor, int patch) override {
        return systemVersion_ >= SystemVersion{major, minor, patch};
    }

  private:
    double versionNumber_;
    SystemVersion systemVersion_;
};

}  // namespace velmoranth::desktop
