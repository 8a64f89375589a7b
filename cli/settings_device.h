// The preferences of a device as files: the live ones, the factory's, and the copies that a user
// has saved under names.
#pragma once

#include "core/preferences.h"
#include "desktop/files/device_root.h"
#include "desktop/files/file_calls.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// Device paths, as the engine has them.
inline constexpr const char* kLivePreferences = core::kPreferencesPath;
inline constexpr const char* kLiveFolder = core::kPreferencesFolder;
using core::kFactoryPreferences;
using core::kSavedFolder;
using core::kStagingCopy;

using DeviceRef = std::shared_ptr<desktop::DeviceRoot>;

// Opens the folder of a device that has the folder of preferences; fails for any other.
[[nodiscard]] desktop::Result<DeviceRef> openSettingsDevice(const std::string& folder);

// Where a file of the device lies on this machine, for a message.
[[nodiscard]] std::string onThisMachine(const desktop::DeviceRoot& root,
                                        std::string_view devicePath);

enum class ItemKind { none, file, folder, link, other };

// What is at the path itself, a link in its place not followed.
[[nodiscard]] ItemKind kindAt(const desktop::DeviceRoot& root, const std::string& devicePath);

// The names of what lies in a folder, in order; none when it cannot be read.
[[nodiscard]] std::vector<std::string> namesIn(const desktop::DeviceRoot& root,
                                               const std::string& devicePath);

// The names of the saved copies, in order.
[[nodiscard]] std::vector<std::string> savedNames(const desktop::DeviceRoot& root);

// The bytes of a preferences file, and what they say.
struct PreferencesFile {
    platform::Data bytes;
    platform::Dictionary contents;
};

// Nothing when there is no such file. Fails for one that cannot be read, is too large, no property
// list, or no dictionary; the problem's path is on this machine.
[[nodiscard]] desktop::Result<std::optional<PreferencesFile>> readPreferencesFile(
    const desktop::DeviceRoot& root, const std::string& devicePath);

// The file as it is written. Fails when it could not be read again; `inexact` has the keys whose
// values would come back different.
struct WrittenPreferences {
    platform::Data bytes;
    std::vector<std::string> inexact;
};

[[nodiscard]] desktop::Result<WrittenPreferences> writtenPreferences(
    const platform::Dictionary& contents);

// Puts the bytes in the place of the live preferences, whole or not at all, with the mode that the
// file has; on the disk when this is done. Fails with what the failing step says; the old file is
// there then.
[[nodiscard]] desktop::Result<void> replaceLivePreferences(
    const std::shared_ptr<const desktop::DeviceRoot>& root, const platform::Data& bytes,
    const desktop::FileCalls& calls = {});

// One at a time changes the preferences of a device: others wait while this is there.
[[nodiscard]] desktop::Result<desktop::Descriptor> lockPreferences(const desktop::DeviceRoot& root);

}  // namespace velmoranth::cli
