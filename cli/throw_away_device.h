// A device that exists for one run: a temporary folder with the given themes on it and preferences
// of its own, removed with all it holds however the run ends. It has what is installed with the
// system, so a theme without calendar settings shows the installed ones here as there.
#pragma once

#include "desktop/files/cleanup.h"
#include "desktop/files/device_root.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace velmoranth::cli {

// What a theme may be at most: a theme of pictures has a few thousand files and tens of megabytes.
inline constexpr std::size_t kMaxThemeEntries = 50000;
inline constexpr std::uint64_t kMaxThemeBytes = std::uint64_t{512} * 1024 * 1024;

// A theme folder of this machine.
struct ThemeFolder {
    std::string path;  // as the user gave it
    std::string name;  // the folder's own name, which is the theme's
};

// Checks that each is a folder that can be copied to a device: there, with a name that preferences
// can hold, no two of one name, nothing in it but files, folders and links, within the bounds
// above.
[[nodiscard]] desktop::Result<std::vector<ThemeFolder>> findThemes(
    std::span<const std::string> paths);

class ThrowAwayDevice {
  public:
    // The themes are copied below /Library/Themes: links as links, which then mean what they mean
    // on a device.
    [[nodiscard]] static desktop::Result<std::unique_ptr<ThrowAwayDevice>> create(
        std::span<const ThemeFolder> themes, const platform::Dictionary& preferences);

    [[nodiscard]] const std::string& folder() const { return folder_.path(); }

  private:
    explicit ThrowAwayDevice(std::string folder) : folder_(std::move(folder)) {}

    desktop::RemovedAtEnd folder_;
};

}  // namespace velmoranth::cli
