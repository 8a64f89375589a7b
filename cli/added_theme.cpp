#include "cli/added_theme.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <system_error>

namespace velmoranth::cli {

AddedTheme::AddedTheme(const Investigation& investigation) : investigation_(investigation) {
    const std::vector<std::string>& themes = investigation.device.themes;
    while (std::ranges::find(themes, name_) != themes.end()) {
        name_ += "-";
    }
}

AddedTheme::~AddedTheme() {
    std::error_code error;
    std::filesystem::remove_all(folder(), error);
    static_cast<void>(setActiveThemes(*investigation_.device.root, investigation_.device.themes,
                                      investigation_.settings));
}

std::filesystem::path AddedTheme::folder() const {
    return std::filesystem::path(investigation_.device.root->hostFolder()) / "Library/Themes" /
           name_;
}

bool AddedTheme::copy(const std::string& devicePath, const std::string& name) const {
    constexpr std::size_t kMostBytes = std::size_t{64} << 20;
    const auto bytes = investigation_.device.root->readFile(devicePath, kMostBytes);
    const std::filesystem::path place = folder() / name;
    std::error_code error;
    std::filesystem::create_directories(place.parent_path(), error);
    std::ofstream file(place, std::ios::binary);
    if (bytes) {
        file.write(reinterpret_cast<const char*>(bytes->data()),
                   static_cast<std::streamsize>(bytes->size()));
    }
    return bytes && file.flush();
}

bool AddedTheme::useAlone(const platform::Dictionary& settings) const {
    return setActiveThemes(*investigation_.device.root, {name_}, settings).has_value();
}

bool AddedTheme::useBehind(const platform::Dictionary& settings) const {
    std::vector<std::string> themes = investigation_.device.themes;
    themes.push_back(name_);
    return setActiveThemes(*investigation_.device.root, themes, settings).has_value();
}

}  // namespace velmoranth::cli
