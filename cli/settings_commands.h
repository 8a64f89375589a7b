// What the commands of the group `settings` have in common.
#pragma once

#include "cli/arguments.h"
#include "cli/messages.h"
#include "cli/preferences.h"
#include "cli/settings_device.h"

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

inline constexpr Option kSettingsRoot{"--root", "", "DIR", "the device"};
inline constexpr std::array<Option, 1> kSettingsOptions{{kSettingsRoot}};

using DeviceWork = std::function<ExitCode(const DeviceRef& root)>;

// Does the work on the device that is given as --root; else a message, and the exit code for it.
[[nodiscard]] ExitCode withDevice(const Arguments& arguments, std::string_view command,
                                  const DeviceWork& work);

// The same, while nobody else changes the device's preferences.
[[nodiscard]] ExitCode withLockedDevice(const Arguments& arguments, std::string_view command,
                                        const DeviceWork& work);

struct PreferenceChange {
    platform::Dictionary before;
    platform::Dictionary after;
};

// Posts each notification to the running processes of the device, and prints how many were told. A
// process that cannot be told does not undo what was done. Then a line names the keys whose change
// a running screen does not show, or not all of it, and says what to do; none where there are none.
[[nodiscard]] ExitCode tellOfChange(const desktop::DeviceRoot& root,
                                    const std::vector<std::string_view>& notifications,
                                    const PreferenceChange& change);

// "; a running screen shows it after a respring", for the line of such a key; "" for most keys.
[[nodiscard]] std::string whenShown(const SettingRow& row);

// A warning when the live preferences are a link, which writing replaces.
void warnOfLink(const desktop::DeviceRoot& root);

}  // namespace velmoranth::cli
