#include "cli/dead_links.h"

#include "cli/linked_themes.h"
#include "cli/messages.h"
#include "cli/settings_device.h"
#include "desktop/files/descriptor.h"

#include "makers/conversion/found_themes.h"
#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace velmoranth::cli {

bool isDeadLink(const desktop::DeviceRoot& root, const std::string& devicePath) {
    return kindAt(root, devicePath) == ItemKind::link &&
           !desktop::Descriptor(root.openFile(devicePath, O_PATH)).isOpen();
}

std::vector<std::string> deadLinksOf(const desktop::DeviceRoot& root, const std::string& theme) {
    const std::string place = std::string(kInstalledThemes) + "/" + theme;
    const desktop::Descriptor folder(root.openFile(place, O_PATH | O_DIRECTORY));
    std::error_code error;
    const auto where = std::filesystem::read_symlink(
        "/proc/self/fd/" + std::to_string(folder.isOpen() ? folder.get() : -1), error);
    const auto found =
        error ? desktop::Result<makers::FoundTheme>() : makers::themeAsGiven(where.string());
    std::vector<std::string> names;
    for (const makers::LeftOut& left : found ? found->leftOut : std::vector<makers::LeftOut>()) {
        if (!makers::isClutter(left.name) && isDeadLink(root, place + "/" + left.name)) {
            names.push_back(left.name);
        }
    }
    std::ranges::sort(names);
    return names;
}

std::string aboutDeadLinks(const std::vector<std::string>& names) {
    if (names.empty()) {
        return {};
    }
    return names.size() == 1
               ? fmt::format("{} {}; {}", shown(names.front()), kIsDeadLink, kMendDeadLink)
               : fmt::format(
                     "{} files are links that lead nowhere on a device, {} first; put the "
                     "files themselves in their places",
                     names.size(), shown(names.front()));
}

}  // namespace velmoranth::cli
