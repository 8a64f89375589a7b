// What the commands of the group `settings` have in common.
#pragma once

#include "cli/arguments.h"
#include "cli/messages.h"
#include "cli/notifications.h"
#include "cli/settings_device.h"

#include <array>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

inline constexpr Option kSettingsRoot{"--root", "", "DIR", "the device"};
inline constexpr std::array<Option, 1> kSettingsOptions{{kSettingsRoot}};

// The device that is given as --root; nothing after a message, with the exit code for it.
struct GivenDevice {
    DeviceRef root;
    ExitCode code = ExitCode::done;
};

[[nodiscard]] GivenDevice givenDevice(const Arguments& arguments, std::string_view command);

// Posts each notification to the running processes of the device, and prints how many were told. A
// process that cannot be told does not undo what was done.
ExitCode tellProcesses(const desktop::DeviceRoot& root,
                       const std::vector<Notification>& notifications);

// A warning when the live preferences are a link, which writing replaces.
void warnOfLink(const desktop::DeviceRoot& root);

}  // namespace velmoranth::cli
