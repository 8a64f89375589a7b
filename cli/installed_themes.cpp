#include "cli/installed_themes.h"

#include "cli/device_check.h"
#include "cli/linked_themes.h"
#include "desktop/files/cleanup.h"
#include "desktop/files/device_root.h"

#include <string>

namespace velmoranth::cli {

desktop::Result<DeviceRef> openForThemes(const std::string& folder) {
    if (auto checked = openDevice(folder); !checked) {
        return checked;
    }
    return desktop::DeviceRoot::open(folder);
}

std::string themePlace(const std::string& theme) {
    return std::string(kInstalledThemes) + "/" + theme;
}

std::string passingPlace(const desktop::DeviceRoot& root, const std::string& theme) {
    std::string place = themePlace("." + theme + ".new");
    const desktop::RemovedAtEnd left(onThisMachine(root, place));
    return place;
}

}  // namespace velmoranth::cli
