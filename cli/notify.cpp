// velmoranth notify
#include "cli/commands.h"
#include "cli/help.h"
#include "cli/messages.h"
#include "cli/nearest.h"
#include "cli/notifications.h"
#include "cli/settings_device.h"
#include "desktop/files/device_root.h"
#include "desktop/notifications/notification_center.h"

#include <algorithm>
#include <array>
#include <ranges>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli {
namespace {

// The full name; "" for a word that is neither a short name nor looks like a full one.
std::string fullName(const std::string& word) {
    const auto* const row =
        std::find_if(kNotifications.begin(), kNotifications.end(),
                     [&](const NotificationRow& candidate) { return candidate.shortName == word; });
    if (row != kNotifications.end()) {
        return std::string(row->name);
    }
    return word.find('.') == std::string::npos ? std::string() : word;
}

ExitCode runNotify(const Arguments& arguments) {
    const std::string& word = arguments.positionals().front();
    const std::string name = fullName(word);
    if (name.empty()) {
        return fail(
            ExitCode::wrongUsage,
            "there is no notification " + inQuotes(word) +
                suggestion(word, std::views::transform(kNotifications, &NotificationRow::shortName),
                           "; velmoranth notify --help lists them"));
    }
    const auto folder = arguments.value("--root");
    if (!folder) {
        return fail(ExitCode::wrongUsage, "velmoranth notify needs --root DIR, the device to tell");
    }
    const auto root = openSettingsDevice(*folder);
    if (!root) {
        return fail(ExitCode::badInput, root.error());
    }
    const auto told = desktop::postToProcesses(**root, name);
    if (!told) {
        return fail(ExitCode::wrongUsage, told.error());
    }
    print(name + ": " + std::to_string(*told) + (*told == 1 ? " process" : " processes") +
          " told\n");
    return *told > 0 ? ExitCode::done : ExitCode::nothingFound;
}

std::string nameHelp() {
    std::vector<std::pair<std::string, std::string>> rows;
    rows.reserve(kNotifications.size());
    for (const NotificationRow& row : kNotifications) {
        rows.emplace_back(row.shortName,
                          std::string(row.summary) + " (" + std::string(row.name) + ")");
    }
    return "names:\n" + twoColumns(rows);
}

constexpr std::array<Option, 1> kNotifyOptions{{{"--root", "", "DIR", "the device"}}};

}  // namespace

Command notifyCommand() {
    return {.name = "notify",
            .summary = "Tell the running processes of a device that something has changed.",
            .positionalNames = "NAME",
            .description =
                "NAME is one of the names below or a notification's full name. The exit "
                "code is 1 when no process\nis running.",
            .options = kNotifyOptions,
            .examples = {"velmoranth notify themechanged --root mydevice",
                         "velmoranth notify prefs --root mydevice"},
            .leastPositionals = 1,
            .mostPositionals = 1,
            .run = runNotify,
            .moreHelp = nameHelp};
}

}  // namespace velmoranth::cli
