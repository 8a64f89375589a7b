#include "cli/throw_away_device.h"

#include "cli/device_check.h"
#include "cli/device_layout.h"
#include "cli/linked_themes.h"
#include "cli/messages.h"
#include "cli/near_path.h"
#include "cli/preferences.h"
#include "cli/settings_device.h"
#include "cli/theme_folders.h"
#include "core/preferences.h"
#include "core/start_preferences.h"
#include "desktop/files/create_device_root.h"
#include "desktop/files/file_calls.h"
#include "desktop/files/file_tree.h"
#include "desktop/plist/property_lists.h"
#include "desktop/services/services.h"

#include "makers/conversion/theme_input.h"
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <system_error>
#include <utility>

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;

namespace {

namespace fs = std::filesystem;

// A theme folder of this machine.
struct ThemeFolder {
    std::string path;    // as the user gave it
    std::string name;    // the folder's own name, which is the theme's
    std::string folder;  // where it is
    makers::FoundTheme contents;
};

struct GivenThemes {
    std::vector<ThemeFolder> folders;
    std::vector<std::unique_ptr<desktop::RemovedAtEnd>> unpacked;
};

Problem aboutTheme(const std::string& path, std::string message) {
    return {std::move(message), path};
}

// Lists what is in the folder, which is all that is done with what no screen asks for.
Result<makers::FoundTheme> checkContents(const std::string& path) {
    auto found = makers::themeAsGiven(path);
    if (!found) {
        return found;
    }
    for (const makers::LeftOut& left : found->leftOut) {
        if (left.why == makers::kNeitherFileNorFolder) {
            return tl::unexpected(
                aboutTheme(fs::path(path) / left.name,
                           "a theme holds files, folders and links, and this is none of them"));
        }
    }
    std::error_code error;
    if (found->files.empty() && fs::is_empty(path, error)) {
        return tl::unexpected(aboutTheme(path, "the theme folder is empty"));
    }
    return found;
}

Result<ThemeFolder> checkTheme(ThemeFolder theme) {
    if (theme.name.empty() || !isPlainText(theme.name)) {
        return tl::unexpected(aboutTheme(
            theme.path, "the folder's name can be no theme's: it has none, or not plain text"));
    }
    if (theme.folder == theme.path) {
        if (openSettingsDevice(theme.path)) {
            return tl::unexpected(aboutTheme(theme.path, "this is a device and no theme; --root " +
                                                             forShell(theme.path) +
                                                             " is for its own themes"));
        }
        if (std::string why = whyNoTheme(theme.path); !why.empty()) {
            return tl::unexpected(aboutTheme(
                theme.path, std::move(why.append(why.ends_with("one of them")
                                                     ? ", or for preview --all, which draws them "
                                                       "together"
                                                     : ""))));
        }
    }
    auto contents = checkContents(theme.folder);
    if (!contents) {
        // Where an archive was unpacked means nothing to the user.
        if (theme.folder != theme.path) {
            contents.error().path = theme.path;
        }
        return tl::unexpected(std::move(contents.error()));
    }
    theme.contents = std::move(*contents);
    return theme;
}

Result<ThemeFolder> findTheme(const std::string& path) {
    struct stat status{};
    if (::stat(path.c_str(), &status) != 0) {
        return tl::unexpected(withNearPath(makers::notThere(errno, path), {&path, 1}));
    }
    if (!S_ISDIR(status.st_mode)) {
        return tl::unexpected(aboutTheme(path, "this is neither a folder nor an archive"));
    }
    return checkTheme({path, makers::nameOfFolder(path), path, {}});
}

// Adds the themes that the path leads to.
Result<void> addThemes(const std::string& path, GivenThemes& themes) {
    if (!makers::isFile(path)) {
        auto theme = findTheme(path);
        if (!theme) {
            return tl::unexpected(std::move(theme.error()));
        }
        themes.folders.push_back(std::move(*theme));
        return {};
    }
    auto archive = makers::openInput(path, makers::Purpose::show);
    if (!archive) {
        return tl::unexpected(std::move(archive.error()));
    }
    warnOf(archive->warning);
    for (const makers::FoundTheme& found : archive->themes) {
        auto theme = checkTheme({path, found.name, found.folder, {}});
        if (!theme) {
            return tl::unexpected(std::move(theme.error()));
        }
        themes.folders.push_back(std::move(*theme));
    }
    themes.unpacked.push_back(std::move(archive->unpacked));
    return {};
}

// Makes or changes the file, in folders that are made on the way.
Result<void> writeFile(const desktop::DeviceRoot& root, const std::string& path,
                       const platform::Data& bytes) {
    for (std::size_t end = path.find('/', 1); end != std::string::npos;
         end = path.find('/', end + 1)) {
        static_cast<void>(root.makeFolder(path.substr(0, end), 0755));  // opening says what failed
    }
    const desktop::Descriptor file(root.openFile(path, O_WRONLY | O_CREAT | O_TRUNC, 0644));
    const int error = file.isOpen() ? desktop::writeWhole(desktop::FileCalls(), file.get(),
                                                          bytes.data(), bytes.size())
                                    : errno;
    if (error != 0) {
        return tl::unexpected(desktop::problemOfErrno(error, root.hostFolder() + path));
    }
    return {};
}

Result<void> writePreferences(const desktop::DeviceRoot& root,
                              const platform::Dictionary& preferences) {
    return writeFile(root, core::kPreferencesPath,
                     desktop::writeXmlPropertyList(platform::PropertyList(preferences)));
}

// Every start would ask for the factory preferences, and log that there are others already.
Result<void> keepFromAskingForFactory(const desktop::DeviceRoot& root) {
    const fs::path path = desktop::kHomeDirectory + std::string(core::kPreferencesAtStart);
    return writeFile(root, path.lexically_normal(), {});
}

Result<GivenThemes> findThemes(std::span<const std::string> paths) {
    GivenThemes themes;
    for (const std::string& path : paths) {
        if (auto added = addThemes(path, themes); !added) {
            return tl::unexpected(std::move(added.error()));
        }
    }
    std::map<std::string, std::string> pathOfName;
    for (const ThemeFolder& theme : themes.folders) {
        const auto [first, isNew] = pathOfName.try_emplace(theme.name, theme.path);
        if (!isNew) {
            return tl::unexpected(aboutTheme(
                theme.path, "a theme of this name is given before (" + shown(first->second) +
                                "); a device has one folder of a name"));
        }
    }
    return themes;
}

// The device's file system, with a folder that lists the theme where it is grafted.
Result<desktop::DeviceFiles> graftThemes(const desktop::DeviceRoot& root,
                                         const std::vector<ThemeFolder>& themes) {
    desktop::DeviceFiles files(root.hostFolder());
    for (const ThemeFolder& theme : themes) {
        const std::string place = "/Library/Themes/" + theme.name;
        if (const int error = root.makeFolder(place, 0755); error != 0) {
            return tl::unexpected(
                aboutTheme(theme.path, "the device cannot have a theme of this name: " +
                                           desktop::problemOfErrno(error, {}).message));
        }
        files.grafts.push_back({place, theme.folder});
    }
    return files;
}

// A temporary device with the themes grafted.
Result<DeviceOfRun> deviceWith(GivenThemes& themes, const platform::Dictionary& settings) {
    auto folder = desktop::makeTemporaryFolder();
    if (!folder) {
        return tl::unexpected(std::move(folder.error()));
    }
    DeviceOfRun device{.folder = std::move(*folder), .unpacked = std::move(themes.unpacked)};
    const auto installed = findInstalledFiles();
    if (!installed) {
        return tl::unexpected(installed.error());
    }
    const auto bare = desktop::createDeviceRoot(device.folder->path(), *installed);
    if (!bare) {
        return tl::unexpected(bare.error());
    }
    const auto files = graftThemes(**bare, themes.folders);
    if (!files) {
        return tl::unexpected(files.error());
    }
    const auto root = desktop::DeviceRoot::open(*files);
    if (!root) {
        return tl::unexpected(root.error());
    }
    device.root = *root;
    for (const ThemeFolder& theme : themes.folders) {
        device.themes.push_back(theme.name);
    }
    for (auto& written :
         {setActiveThemes(**root, device.themes, settings), keepFromAskingForFactory(**root)}) {
        if (!written) {
            return tl::unexpected(written.error());
        }
    }
    return device;
}

// The theme as the device finds it; nothing when it has no folder of that name.
std::optional<ThemeFolder> themeOn(const desktop::DeviceRoot& root, const std::string& name) {
    const std::string place = std::string(kInstalledThemes) + "/" + name;
    const desktop::Descriptor folder(root.openFile(place, O_PATH | O_DIRECTORY));
    if (!folder.isOpen() || name.empty() || name.find('/') != std::string::npos) {
        return std::nullopt;
    }
    std::error_code error;
    const fs::path where = fs::read_symlink("/proc/self/fd/" + std::to_string(folder.get()), error);
    return error ? std::nullopt
                 : std::optional(ThemeFolder{onThisMachine(root, place), name, where, {}});
}

// The active themes that are there.
std::vector<ThemeFolder> activeOn(const desktop::DeviceRoot& own) {
    std::vector<ThemeFolder> folders;
    for (const std::string& name : activeThemes(own)) {
        const bool isNew = std::ranges::find(folders, name, &ThemeFolder::name) == folders.end();
        if (auto theme = themeOn(own, name); theme && isNew) {
            folders.push_back(std::move(*theme));
        }
    }
    return folders;
}

void addLine(std::vector<std::string>& lines, std::string line) {
    if (!line.empty()) {
        lines.push_back(std::move(line));
    }
}

}  // namespace

Result<DeviceOfRun> makeDevice(std::span<const std::string> paths,
                               const platform::Dictionary& settings) {
    auto themes = findThemes(paths);
    if (!themes) {
        return tl::unexpected(themes.error());
    }
    auto device = deviceWith(*themes, settings);
    if (!device) {
        return device;
    }
    device->hidden = [folders = std::move(themes->folders)] {
        std::vector<std::string> lines;
        for (const ThemeFolder& theme : folders) {
            addLine(lines, hiddenPicturesIn(theme.path, theme.contents));
        }
        return lines;
    };
    return device;
}

Result<DeviceOfRun> makeDeviceLike(const desktop::DeviceRoot& own) {
    GivenThemes themes{.folders = activeOn(own), .unpacked = {}};
    return deviceWith(themes, settingsOn(own));
}

std::vector<std::string> hiddenPicturesOn(const desktop::DeviceRoot& own) {
    const platform::Dictionary preferences = preferencesOn(own);
    std::vector<std::string> lines;
    if (!platform::boolValue(platform::objectForKey(preferences, "enable"))) {
        return lines;
    }
    for (const ThemeFolder& theme : activeOn(own)) {
        // What cannot be listed is told of by what draws it.
        if (auto contents = makers::themeAsGiven(theme.folder)) {
            contents->name = theme.name;
            addLine(lines, hiddenPicturesIn(theme.path, *contents));
        }
    }
    return lines;
}

Result<void> setActiveThemes(const desktop::DeviceRoot& root,
                             const std::vector<std::string>& themes,
                             const platform::Dictionary& settings) {
    platform::Dictionary preferences = settings;
    preferences.merge(previewPreferences(themes));  // where the settings say nothing
    return writePreferences(root, preferences);
}

}  // namespace velmoranth::cli
