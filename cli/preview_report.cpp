#include "cli/preview_report.h"

#include "cli/device_check.h"
#include "cli/messages.h"
#include "cli/preferences.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace velmoranth::cli {

namespace fs = std::filesystem;

using desktop::Result;

namespace {

// The folders of the device's active themes that are there, none twice: also those that the device
// reads where they lie. Another one behind a link is left out: it would mean another folder here
// than on the device.
std::vector<std::string> themeFolders(const desktop::DeviceRoot& root,
                                      const std::string& shownRoot) {
    std::vector<std::string> folders;
    std::error_code error;
    const fs::path themes = fs::canonical(root.hostFolder(), error) / "Library/Themes";
    for (const std::string& theme : activeThemes(root)) {
        const std::string place = "/Library/Themes/" + theme;
        for (const desktop::Graft& graft : root.files().grafts) {
            if (graft.place == place && fs::path(graft.folder).filename() == theme &&
                std::ranges::find(folders, graft.folder) == folders.end()) {
                folders.push_back(graft.folder);
            }
        }
        const fs::path folder = themes / theme;
        std::string shownFolder = fs::path(shownRoot) / "Library/Themes" / theme;
        if (!theme.empty() && theme.find('/') == std::string::npos &&
            fs::canonical(folder, error) == folder && fs::is_directory(folder, error) &&
            std::ranges::find(folders, shownFolder) == folders.end()) {
            folders.push_back(std::move(shownFolder));
        }
    }
    return folders;
}

// The device's settings, with those off that it does not have and that a preview has on.
platform::Dictionary settingsOf(const desktop::DeviceRoot& root) {
    platform::Dictionary settings = preferencesOn(root);
    for (const auto& [key, value] : previewPreferences({})) {
        settings.emplace(key, false);
    }
    settings.erase("ActiveThemes");
    return settings;
}

}  // namespace

PreviewReport::PreviewReport(const PreviewOptions& options, const DeviceOfRun& device)
    : folders_(options.themes) {
    if (options.isQuiet || options.kind == PreviewKind::stock) {
        return;
    }
    platform::Dictionary settings = options.settings;
    if (!options.root.empty()) {
        folders_ = themeFolders(*device.root, options.root);
        settings = settingsOf(*device.root);
        // Where theming is off a warning has said so.
        if (folders_.empty() || !platform::boolValue(platform::objectForKey(settings, "enable"))) {
            return;
        }
        auto copy = makeDevice(folders_, settings);
        if (!copy) {
            return;
        }
        copy_ = std::move(*copy);
    }
    investigation_ = std::make_unique<const Investigation>(
        Investigation{copy_ ? *copy_ : device, options.device, std::move(settings)});
    report_ = std::async(std::launch::async, [this, apps = options.screen.apps] {
        return reportThemes(*investigation_, apps);
    });
}

PreviewReport::Found PreviewReport::find() {
    if (!report_.valid()) {
        return {};
    }
    const ThemeReport report = report_.get();
    Found found{.lines = linesOf(report, folders_), .problem = {}};
    if (std::string line = judgeMask(*investigation_, report); !line.empty()) {
        found.lines.push_back(std::move(line));
    }
    if (report.failure) {
        found.problem = desktop::Problem{
            "not all that the themes did could be found out: " + report.failure->message,
            report.failure->path};
    }
    return found;
}

Result<void> PreviewReport::tell() {
    const Found found = find();
    for (const std::string& line : found.lines) {
        note(line);
    }
    return found.problem ? tl::unexpected(*found.problem) : Result<void>();
}

}  // namespace velmoranth::cli
