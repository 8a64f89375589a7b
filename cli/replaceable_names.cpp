#include "cli/replaceable_names.h"

#include "cli/added_theme.h"
#include "cli/explanation.h"
#include "cli/file_requests.h"
#include "cli/preferences.h"
#include "cli/sound_events.h"
#include "cli/throw_away_device.h"
#include "simulator/home_screen/apps.h"
#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/home_screen/live_icons.h"
#include "simulator/process/launcher.h"
#include "simulator/toolkit/device_bundles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <iterator>
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

// Bundles whose images are asked for in another way, which has them in another group or already.
constexpr std::array<std::string_view, 5> kOtherBundles{
    simulator::kToolkitBundle, simulator::kGlyphsBundle, simulator::kPreferencesBundle,
    simulator::kWeatherBundle, simulator::kClockBundle};

// The group of what the question asks for; "" for none.
std::string_view groupOf(const Question& question) {
    struct Words {
        std::string_view word;
        std::string_view group;
    };

    static constexpr std::array kNamed{Words{"icon", kApps},       Words{"settings", kSettings},
                                       Words{"weather", kWeather}, Words{"image", kImages},
                                       Words{"symbol", kImages},   Words{"sound", kSounds}};
    if (std::ranges::find(kOtherBundles, question.bundle) != kOtherBundles.end()) {
        return "";
    }
    const auto* const named = std::ranges::find(kNamed, question.word, &Words::word);
    return named == kNamed.end() ? kChrome : named->group;
}

// What a person calls it, where that is another name.
std::string titleOf(const Question& question) {
    if (const simulator::App* const app = simulator::stockApp(question.argument);
        app != nullptr && question.word == "icon") {
        return std::string(app->name);
    }
    for (const SoundName& sound : soundNames()) {
        if (question.word == "sound" && question == requestOf(sound)) {
            return std::string(sound.name);
        }
    }
    return "";
}

// What there is to ask for on that system, group by group.
std::vector<ReplaceableName> everyName(std::span<const std::string_view> groups, int system) {
    std::vector<Question> questions;
    for (std::string& app : simulator::knownArguments(*simulator::questionRowNamed("icon"))) {
        questions.push_back({"icon", std::move(app), ""});
    }
    std::ranges::move(deviceRequests(), std::back_inserter(questions));
    std::vector<ReplaceableName> names;
    for (const NameGroup& group : kGroups) {
        if (std::ranges::find(groups, group.name) == groups.end()) {
            continue;
        }
        for (const Question& question : questions) {
            if (groupOf(question) == group.name &&
                simulator::questionRowNamed(question.word)->firstSystem <= system) {
                names.push_back(
                    {.group = group.name, .question = question, .title = titleOf(question)});
            }
        }
    }
    return names;
}

// The place that a picture is stretched to, where nothing shows without a theme: points.
std::optional<platform::Size> placeOfPart(const Question& question,
                                          const simulator::DeviceConfiguration& device) {
    constexpr double kAroundIcon = 10;  // of a shadow, on each side
    const double icon = simulator::homeScreenMetrics(device.kind, device.screen).iconSide;
    if (question.word == "mask" || question.word == "overlay") {
        return platform::Size{icon, icon};
    }
    if (question.word == "shadow") {
        return platform::Size{icon + 2 * kAroundIcon, icon + 2 * kAroundIcon};
    }
    return question.word == "behind"
               ? std::optional(platform::Size{device.screen.width, device.screen.height})
               : std::nullopt;
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

    // Fills in the size of what shows without a theme, or of its place.
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
        const auto pixels = [scale = investigation_.configuration.screen.scale](double points) {
            return static_cast<std::size_t>(std::lround(points * scale));
        };
        if (answer->picture) {
            name.size = {.width = answer->picture->width, .height = answer->picture->height};
        } else if (const auto place = placeOfPart(name.question, investigation_.configuration)) {
            name.size = {.width = pixels(place->width), .height = pixels(place->height)};
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

// "UISwitchKnob.png@3x.png".
bool hasEndingTwice(const std::string& file) {
    return fs::path(file).stem().string().find(fs::path(file).extension()) != std::string::npos;
}

// How many pixels a point of a picture has under that name, on a screen of that scale.
double scaleOf(const std::string& file, double screenScale) {
    const std::string stem = fs::path(file).stem();
    return stem.ends_with("@3x") ? 3 : stem.ends_with("@2x") ? 2 : screenScale;
}

// Parts that are drawn as large as the picture is in points; all others are stretched to their
// place.
bool keepsItsSize(const Question& question) {
    return question.word == "dot" || question.word == "knob";
}

// The file to take, and the size that a picture needs under its name.
void chooseFile(ReplaceableName& name, double screenScale) {
    const auto plain = std::ranges::find_if_not(name.files, hasEndingTwice);
    name.file = plain == name.files.end() ? name.files.front() : *plain;
    if (keepsItsSize(name.question) && name.file.find('@') == std::string::npos) {
        // The loader takes the one of the screen's scale by itself.
        name.file.insert(name.file.rfind('.'),
                         "@" + std::to_string(std::lround(screenScale)) + "x");
    } else if (name.size) {
        const double larger = scaleOf(name.file, screenScale) / screenScale;
        const auto scaled = [&](std::size_t pixels) {
            return static_cast<std::size_t>(std::lround(static_cast<double>(pixels) * larger));
        };
        name.size = {.width = scaled(name.size->width), .height = scaled(name.size->height)};
    }
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
        if (name.files.empty()) {
            continue;
        }
        if (auto found = name.group == kSounds ? Result<void>() : asked.findSize(name); !found) {
            return tl::unexpected(std::move(found.error()));
        }
        chooseFile(name, device.configuration.screen.scale);
    }
    std::erase_if(names, [](const ReplaceableName& name) { return name.files.empty(); });
    return names;
}

}  // namespace velmoranth::cli
