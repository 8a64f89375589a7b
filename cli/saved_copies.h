// The copies of a device's preferences that a user has saved under names.
#pragma once

#include "cli/settings_commands.h"

#include <optional>
#include <string>
#include <string_view>

namespace velmoranth::cli {

// The path of a saved copy on this machine, for a message.
[[nodiscard]] std::string placeOf(const desktop::DeviceRoot& root, std::string_view name);

// The name, or the first of "NAME 2", "NAME 3" and so on, that no copy has.
[[nodiscard]] std::string freeName(const desktop::DeviceRoot& root, const std::string& name);

// Does the work, while nobody else changes the preferences, when every name that is given is one.
[[nodiscard]] ExitCode withNames(const Arguments& arguments, std::string_view command,
                                 const DeviceWork& work);

// A message that names the nearest, and the exit code, when there is no copy of that name.
[[nodiscard]] std::optional<ExitCode> refuseMissing(const desktop::DeviceRoot& root,
                                                    const std::string& name);

}  // namespace velmoranth::cli
