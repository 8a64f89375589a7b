// The device of one run: a temporary folder with the given themes on it and preferences of its own,
// removed with all it holds however the run ends, or the user's own. A temporary one has what is
// installed with the system, so a theme without calendar settings shows the installed ones here as
// there.
#pragma once

#include "desktop/files/cleanup.h"
#include "desktop/files/device_root.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace velmoranth::cli {

struct DeviceOfRun {
    std::shared_ptr<const desktop::DeviceRoot> root = {};
    // Of a temporary device; nothing and null for the user's own.
    std::vector<std::string> themes = {};  // their names
    // Finds out, by the names in them alone, what of the themes does not show and would once they
    // are converted: a line a theme. Any thread may ask; null where nobody wants to know.
    std::function<std::vector<std::string>()> hidden = {};
    std::unique_ptr<desktop::RemovedAtEnd> folder = {};
    // What the archives among the themes were unpacked into.
    std::vector<std::unique_ptr<desktop::RemovedAtEnd>> unpacked = {};
};

// Makes a device of themes: folders, and packages and archives, each of which may hold several;
// of a package it is what lies below Library/Themes. Each must be one that a device can have:
// there, with a name that preferences can hold, no two of one name, nothing in it but files,
// folders and links, no more and no larger than the limits of all commands. They are grafted below
// /Library/Themes, where they are read as they are by then; links in them mean what they mean on a
// device. The preferences are those of a preview, with `settings`.
[[nodiscard]] desktop::Result<DeviceOfRun> makeDevice(std::span<const std::string> themes,
                                                      const platform::Dictionary& settings = {});

// Makes one with the active themes and the preferences of a device of the user's, which stays as it
// is; of the themes those that are there.
[[nodiscard]] desktop::Result<DeviceOfRun> makeDeviceLike(const desktop::DeviceRoot& own);

// As DeviceOfRun::hidden, of the active themes of a device of the user's, as they are by now; none
// with theming off.
[[nodiscard]] std::vector<std::string> hiddenPicturesOn(const desktop::DeviceRoot& own);

// Gives the device other preferences: these settings and active themes, as makeDevice does.
[[nodiscard]] desktop::Result<void> setActiveThemes(const desktop::DeviceRoot& root,
                                                    const std::vector<std::string>& themes,
                                                    const platform::Dictionary& settings);

}  // namespace velmoranth::cli
