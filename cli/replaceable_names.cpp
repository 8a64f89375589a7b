#include "cli/replaceable_names.h"

#include "cli/added_theme.h"
#include "cli/explanation.h"
#include "cli/preferences.h"
#include "cli/sound_events.h"
#include "cli/throw_away_device.h"
#include "simulator/home_screen/apps.h"
#include "simulator/process/launcher.h"
#include "simulator/toolkit/device_bundles.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <system_error>
#include <utility>

namespace velmoranth::cli {

namespace fs = std::filesystem;

using desktop::Result;
using simulator::ProcessKind;
using simulator::Question;
using simulator::QuestionRow;
using simulator::RunningScreen;

namespace {

constexpr std::string_view kApps = "apps";
constexpr std::string_view kSettings = "settings";
constexpr std::string_view kWeather = "weather";
constexpr std::string_view kImages = "images";
constexpr std::string_view kChrome = "chrome";
constexpr std::string_view kSounds = "sounds";

constexpr std::array kGroups{
    NameGroup{kApps, "icons of the apps of a fresh device; every other app is asked for likewise"},
    NameGroup{kSettings, "icons of the settings app"},
    NameGroup{kWeather, "pictures of the weather app"},
    NameGroup{kImages, "interface images and symbols"},
    NameGroup{kChrome, "parts of the home screen and of the controls"},
    NameGroup{kSounds, "sounds"},
};

void add(std::vector<ReplaceableName>& names, std::string_view group, const QuestionRow& row,
         std::string_view bundle = {}) {
    for (std::string& argument : simulator::knownArguments(row, bundle)) {
        names.push_back(
            {.group = group,
             .question = {std::string(row.word), std::move(argument), std::string(bundle)}});
    }
}

// The group whose names the row's arguments are; "" for the uses of a name that is in another one.
std::string_view groupOf(const QuestionRow& row) {
    if (row.argument.empty() || row.argument.find('|') != std::string_view::npos) {
        return row.word == "sound" ? kSounds : kChrome;
    }
    return row.word == "icon"                            ? kApps
           : row.word == "settings"                      ? kSettings
           : row.word == "weather"                       ? kWeather
           : row.word == "image" || row.word == "symbol" ? kImages
                                                         : "";
}

// Images of bundles; those of the settings and the weather app are groups of their own.
void addImages(std::vector<ReplaceableName>& names, const QuestionRow& row) {
    add(names, kImages, row);
    if (row.word == "symbol") {
        return;
    }
    for (const std::string& bundle : simulator::knownBundles()) {
        if (bundle != simulator::kToolkitBundle && bundle != simulator::kGlyphsBundle &&
            bundle != simulator::kPreferencesBundle && bundle != simulator::kWeatherBundle) {
            add(names, kImages, row, bundle);
        }
    }
}

void addSounds(std::vector<ReplaceableName>& names, const QuestionRow& row) {
    for (const SoundName& sound : soundNames()) {
        if (sound.source != SoundSource::panel) {
            const std::string number = std::to_string(sound.number);
            names.push_back(
                {.group = kSounds,
                 .question = {std::string(row.word),
                              sound.source == SoundSource::homeScreen ? "event:" + number : number,
                              ""},
                 .title = std::string(sound.name)});
        }
    }
}

// What there is to ask for on that system.
std::vector<ReplaceableName> everyName(std::span<const std::string_view> groups, int system) {
    std::vector<ReplaceableName> names;
    for (const NameGroup& group : kGroups) {
        if (std::ranges::find(groups, group.name) == groups.end()) {
            continue;
        }
        for (const QuestionRow& row : simulator::questionRows()) {
            if (row.firstSystem > system || groupOf(row) != group.name) {
                continue;
            }
            if (group.name == kSounds) {
                addSounds(names, row);
            } else if (group.name == kImages) {
                addImages(names, row);
            } else if (group.name != kChrome) {
                add(names, group.name, row);
            } else {
                for (const std::string& argument : listed(std::string(row.argument), '|')) {
                    names.push_back(
                        {.group = kChrome, .question = {std::string(row.word), argument, ""}});
                }
            }
        }
    }
    return names;
}

// Asks processes of a device, one of each kind.
class NameDevice {
  public:
    NameDevice(const Investigation& investigation, const AddedTheme& theme)
        : investigation_(investigation), theme_(theme) {}

    // Fills in what these look for.
    Result<void> findFiles(std::span<ReplaceableName* const> names) {
        std::map<ProcessKind, std::vector<ReplaceableName*>> kinds;
        for (ReplaceableName* const name : names) {
            kinds[simulator::questionRowNamed(name->question.word)->process].push_back(name);
        }
        for (const auto& [kind, ofKind] : kinds) {
            if (auto found = findFilesOfKind(ofKind); !found) {
                return found;
            }
        }
        return {};
    }

    // Fills in the size of what shows without a theme.
    Result<void> findSize(ReplaceableName& name) {
        auto& process = stock_[simulator::questionRowNamed(name.question.word)->process];
        if (process == nullptr) {
            auto started = startProcess(investigation_, name.question, false);
            if (!started) {
                return tl::unexpected(std::move(started.error()));
            }
            process = std::move(*started);
        }
        const auto answer = process->ask(name.question);
        if (!answer) {
            return tl::unexpected(answer.error());
        }
        if (answer->picture) {
            name.size = {.width = answer->picture->width, .height = answer->picture->height};
        }
        return {};
    }

  private:
    Result<void> findFilesOfKind(const std::vector<ReplaceableName*>& names) {
        std::vector<Question> questions;
        questions.reserve(names.size());
        for (const ReplaceableName* const name : names) {
            questions.push_back(name->question);
        }
        const auto process = startProcess(investigation_, questions.front(), true);
        if (!process) {
            return tl::unexpected(process.error());
        }
        const auto records = (*process)->askApart(questions);
        if (!records) {
            return tl::unexpected(records.error());
        }
        for (std::size_t i = 0; i < names.size(); ++i) {
            names[i]->files.clear();
            for (const AskedFile& file : askedFiles((*records)[i])) {
                if (file.theme == theme_.name() && file.state == record::EntryKind::missing &&
                    !file.name.ends_with(".plist")) {  // which says how it is drawn
                    names[i]->files.push_back(file.name);
                }
            }
        }
        return {};
    }

    const Investigation& investigation_;
    const AddedTheme& theme_;
    std::map<ProcessKind, std::unique_ptr<RunningScreen>> stock_;
};

desktop::Problem cannotUseTheme() {
    return {"no theme can be made for the device"};
}

// A folder is looked into once it is there.
bool isFolder(const std::string& file) {
    return file.find('/') == std::string::npos && fs::path(file).extension().empty();
}

// Makes the folders that are looked for, and looks again.
Result<void> lookIntoFolders(std::vector<ReplaceableName>& names, const AddedTheme& theme,
                             NameDevice& device) {
    std::vector<ReplaceableName*> again;
    for (ReplaceableName& name : names) {
        if (!name.files.empty() && isFolder(name.files.front())) {
            std::error_code ignored;
            fs::create_directories(theme.folder() / name.files.front(), ignored);
            again.push_back(&name);
        }
    }
    return device.findFiles(again);
}

// Of parts that themes change only once a setting says so: the first one that does.
Result<void> findSettings(std::vector<ReplaceableName>& names, const AddedTheme& theme,
                          NameDevice& device) {
    std::vector<ReplaceableName*> open;
    for (ReplaceableName& name : names) {
        if (name.group == kChrome && name.files.empty()) {
            open.push_back(&name);
        }
    }
    for (const SettingRow& row : kPreviewSettings) {
        if (open.empty() || row.isOnInPreview || row.kind() != SettingKind::yesOrNo) {
            continue;
        }
        if (!theme.useAlone({{std::string(row.key), true}})) {
            return tl::unexpected(cannotUseTheme());
        }
        if (auto found = device.findFiles(open); !found) {
            return found;
        }
        std::erase_if(open, [&](ReplaceableName* name) {
            name->setting = name->files.empty() ? "" : row.key;
            return !name->files.empty();
        });
    }
    return {};
}

}  // namespace

std::span<const NameGroup> nameGroups() {
    return kGroups;
}

Result<std::vector<ReplaceableName>> replaceableNames(
    std::span<const std::string_view> groups, const NamedDevice& device,
    const std::function<void(std::size_t done, std::size_t all)>& progress) {
    const auto run = makeDevice({});
    if (!run) {
        return tl::unexpected(run.error());
    }
    const Investigation investigation{*run, device.configuration, {}};
    const AddedTheme theme(investigation);
    if (!theme.useAlone({})) {
        return tl::unexpected(cannotUseTheme());
    }
    std::vector<ReplaceableName> names = everyName(groups, device.configuration.system.major);
    NameDevice asked(investigation, theme);
    std::vector<ReplaceableName*> all;
    all.reserve(names.size());
    for (ReplaceableName& name : names) {
        all.push_back(&name);
    }
    if (auto found = asked.findFiles(all); !found) {
        return tl::unexpected(std::move(found.error()));
    }
    if (auto found = lookIntoFolders(names, theme, asked); !found) {
        return tl::unexpected(std::move(found.error()));
    }
    if (auto found = findSettings(names, theme, asked); !found) {
        return tl::unexpected(std::move(found.error()));
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        ReplaceableName& name = names[i];
        progress(i, names.size());
        if (const simulator::App* const app = simulator::stockApp(name.question.argument);
            app != nullptr && name.group == kApps) {
            name.title = app->name;
        }
        if (name.files.empty() || name.group == kSounds) {
            continue;
        }
        if (auto found = asked.findSize(name); !found) {
            return tl::unexpected(std::move(found.error()));
        }
    }
    std::erase_if(names, [](const ReplaceableName& name) { return name.files.empty(); });
    return names;
}

}  // namespace velmoranth::cli
