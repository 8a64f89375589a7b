// The options that say which device a run has, the same for every command that makes one.
#pragma once

#include "cli/arguments.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"
#include "simulator/device.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

inline constexpr Option kIosOption{"--ios", "", "12|13", "the system (default 13)"};
inline constexpr Option kDeviceOption{"--device", "", "NAME",
                                      "phone, phone-667 (a smaller one) or pad (default phone)"};
inline constexpr Option kOrientationOption{"--orientation", "", "HOW",
                                           "how the device is held: portrait or, a pad, landscape"};
inline constexpr Option kSetOption{"--set", "", "KEY=VALUE", "a preference of this run, see below",
                                   Repeat::often};
inline constexpr Option kDateOption{
    "--date", "", "DATE",
    "what the device's clock shows: 2019-12-24 (at 9:41), 2019-12-24T18:30 or now (default "
    "2019-09-10)"};
inline constexpr Option kLocaleOption{
    "--locale", "", "NAME",
    "the device's language and region (default en_US); the calendar's icon follows it"};
inline constexpr Option kExactFilesOption{
    "--exact-files", "", "", "load image files by the very name, never name@2x or name@3x for it"};

// The problem is one of usage.
[[nodiscard]] desktop::Result<simulator::DeviceConfiguration> readDeviceOptions(
    const Arguments& arguments);

// A device by the name that a user gives it.
struct NamedDevice {
    std::string name;
    simulator::DeviceConfiguration configuration;
};

// The devices that the options leave open, by system: those that --device names, with commas
// between them, or each; with each of the systems that --ios names, or of `usualSystems`. Otherwise
// as readDeviceOptions() has it. The problem is one of usage.
[[nodiscard]] desktop::Result<std::vector<NamedDevice>> readEveryDevice(
    const Arguments& arguments, const std::string& usualSystems = "12,13");

// The words between commas; a single empty one of an empty text.
[[nodiscard]] std::vector<std::string> listed(const std::string& text);

// What --set asks for. `whereListed` is the help that lists the keys.
[[nodiscard]] desktop::Result<platform::Dictionary> readSettingOptions(
    const Arguments& arguments, std::string_view whereListed);

// A point in time that a person writes: "2019-12-24" (at 9:41), "2019-12-24T18:30" or with ":05"
// for seconds, in this machine's time zone, or "now".
[[nodiscard]] desktop::Result<platform::Date> parseDate(const std::string& text);

// What a device's clock shows unless --date says otherwise.
[[nodiscard]] platform::Date usualDate();

}  // namespace velmoranth::cli
