// A platform in which nothing happens: classes and hooking are real, the version number is as
// given, every other service has nothing and does nothing. Enough to install the hook table.
#pragma once

#include "desktop/runtime/runtime.h"

#include <memory>

namespace velmoranth::cli {

class IdlePlatform {
  public:
    // Becomes the platform of this process; lives as long as the engine is used.
    IdlePlatform(desktop::Runtime& runtime, double versionNumber);
    ~IdlePlatform();
    IdlePlatform(const IdlePlatform&) = delete;
    IdlePlatform& operator=(const IdlePlatform&) = delete;

  private:
    struct Services;
    std::unique_ptr<Services> services_;
};

}  // namespace velmoranth::cli
