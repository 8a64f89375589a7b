// This program as a process of a device, without a screen: it hears no notification, and its clock
// stands still.
#pragma once

#include "desktop/services/services.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::cli {

class DeviceProcess {
  public:
    // Becomes the platform of this process, one at a time: once it has gone, the platform is there
    // for nobody until the next one comes.
    explicit DeviceProcess(const std::shared_ptr<const desktop::DeviceRoot>& root,
                           const desktop::ReplacedServices& replaced = {});

    [[nodiscard]] desktop::Runtime& runtime() { return services_.runtime(); }

    // The lines of the system log so far.
    [[nodiscard]] std::vector<std::string> log() const { return log_.lines(); }

    // The message of the alert that is on the screen, which is dismissed.
    [[nodiscard]] std::optional<std::string> takeAlert();

  private:
    desktop::LogToMemory log_;
    desktop::Services services_;
    std::shared_ptr<desktop::DesktopViewController> controller_;
};

}  // namespace velmoranth::cli
