#include "cli/screen_options.h"

#include "cli/app_list.h"
#include "cli/choice.h"
#include "cli/device_options.h"
#include "cli/messages.h"
#include "cli/nearest.h"
#include "cli/preview_steps.h"
#include "simulator/home_screen/apps.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::Result;
using simulator::HomeScreenApps;
using simulator::HomeScreenItem;
using simulator::ScreenKind;
using simulator::ScreenTraits;

namespace {

constexpr int kLastPage = 1000;

// Options that only one of the screens has.
struct Belonging {
    std::string_view option;
    ScreenKind screen;
    std::string_view screenName;
};

constexpr std::array<Belonging, 3> kBelongings{{{"--folder", ScreenKind::folder, "folder"},
                                                {"--folder-page", ScreenKind::folder, "folder"},
                                                {"--icon", ScreenKind::pressed, "pressed"}}};

bool sameIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
        return std::tolower(x) == std::tolower(y);
    });
}

// Everything with an icon on the home screen: what may be opened or pressed.
std::vector<HomeScreenItem> itemsFor(ScreenKind screen, const HomeScreenApps& apps) {
    std::vector<HomeScreenItem> items;
    for (const HomeScreenItem& item : apps.items) {
        if (screen == ScreenKind::pressed || item.folder != nullptr) {
            items.push_back(item);
        }
    }
    if (screen == ScreenKind::pressed) {
        for (const simulator::App& app : apps.dock) {
            items.push_back({&app, nullptr});
        }
    }
    return items;
}

// The identifier of the item of that identifier or name.
Result<std::string> identifierFor(ScreenKind screen, const std::string& word,
                                  const HomeScreenApps& apps) {
    const std::vector<HomeScreenItem> items = itemsFor(screen, apps);
    std::vector<std::string> names;
    std::vector<std::string> identifiers;
    for (const HomeScreenItem& item : items) {
        names.push_back(simulator::nameOf(item));
        identifiers.push_back(simulator::identifierOf(item));
        if (identifiers.back() == word || sameIgnoringCase(names.back(), word)) {
            return std::move(identifiers.back());
        }
    }
    if (screen == ScreenKind::folder && names.empty()) {
        return misuse("there is no folder " + inQuotes(word) + ": none of these apps lies in one");
    }
    if (screen == ScreenKind::folder) {
        return misuse(notAmong("--folder", names, word));
    }
    return misuse("there is no icon " + inQuotes(word) + " on the home screen" +
                  suggestion(word, names, nameSuggestion(word, identifiers)));
}

bool isAny(const ScreenTraits&) {
    return true;
}

bool hasPages(const ScreenTraits& traits) {
    return traits.hasPages;
}

bool hasHomeScreen(const ScreenTraits& traits) {
    return traits.hasHomeScreen;
}

std::vector<std::string_view> screenNames(bool (*isNamed)(const ScreenTraits& traits)) {
    std::vector<std::string_view> screens;
    for (const simulator::ScreenDefinition& screen : simulator::screenDefinitions()) {
        if (isNamed(screen.traits)) {
            screens.push_back(screen.name);
        }
    }
    return screens;
}

// Lists of pictures, which no device shows, and the panel, of which a theme has nothing.
bool isOnSheetIfNamed(const simulator::ScreenDefinition& screen) {
    const bool isList = screen.traits.hasPages && !screen.traits.hasHomeScreen;
    return isList || screen.kind == ScreenKind::panelError ||
           screen.kind == ScreenKind::panelSuccess;
}

}  // namespace

Result<std::vector<ScreenKind>> readScreenKinds(const Arguments& arguments) {
    std::vector<ScreenKind> kinds;
    const bool isSheet = arguments.has("--sheet");
    if (arguments.has("--all-screens") || (isSheet && !arguments.has("--screen"))) {
        for (const simulator::ScreenDefinition& screen : simulator::screenDefinitions()) {
            if (!isSheet || !isOnSheetIfNamed(screen)) {
                kinds.push_back(screen.kind);
            }
        }
        return kinds;
    }
    const std::string names = arguments.value("--screen").value_or("home");
    for (const std::string& name : isSheet ? listed(names) : std::vector<std::string>{names}) {
        const auto kind = simulator::screenKindNamed(name);
        if (!kind) {
            return misuse(notAmong("--screen", screenNames(isAny), name) +
                          (!isSheet && name.find(',') != std::string::npos
                               ? "; several go with --sheet"
                               : ""));
        }
        kinds.push_back(*kind);
    }
    return kinds;
}

Result<ScreenOptions> readScreenOptions(const Arguments& arguments,
                                        const std::vector<ScreenKind>& kinds) {
    ScreenOptions options;
    options.kind = kinds.size() == 1 ? kinds.front() : ScreenKind::home;
    for (const Belonging& belonging : kBelongings) {
        if (arguments.has(belonging.option) && options.kind != belonging.screen) {
            return misuse(std::string(belonging.option) + " needs --screen " +
                          std::string(belonging.screenName));
        }
    }
    if (arguments.has("--steps") && stepCount(options.kind) == 0) {
        return misuse("--steps needs --screen folder or panel-success");
    }
    const ScreenTraits& traits = simulator::definitionOf(options.kind).traits;
    if (arguments.has("--page") && !traits.hasPages) {
        return misuse("--page needs a screen that has pages: " + choicesIn(screenNames(hasPages)));
    }
    for (const std::string_view option : {"--wallpaper", "--apps"}) {
        if (arguments.has(option) && std::ranges::none_of(kinds, [](ScreenKind kind) {
                return simulator::definitionOf(kind).traits.hasHomeScreen;
            })) {
            return misuse(std::string(option) + " needs a screen that has the home screen in it: " +
                          choicesIn(screenNames(hasHomeScreen)));
        }
    }
    options.wallpaper = arguments.value("--wallpaper").value_or("");
    options.appsFrom = arguments.value("--apps").value_or("");
    const auto page = arguments.number("--page", kLastPage, 1);
    const auto folderPage = arguments.number("--folder-page", kLastPage, 1);
    for (const auto* const number : {&page, &folderPage}) {
        if (!*number) {
            return tl::unexpected(number->error());
        }
    }
    options.page = *page;
    options.folderPage = *folderPage;
    for (const std::string_view option : {"--folder", "--icon"}) {
        const auto word = arguments.value(option);
        if (!word) {
            continue;
        }
        if (arguments.has("--page")) {
            return misuse("--page does not go with " + std::string(option) +
                          ": the page is the one where that lies");
        }
        const bool isFoundLater = !options.appsFrom.empty() && !word->empty();
        auto identifier = isFoundLater ? Result<std::string>(*word)
                                       : identifierFor(options.kind, *word, simulator::stockApps());
        if (!identifier) {
            return tl::unexpected(std::move(identifier.error()));
        }
        options.item = std::move(*identifier);
    }
    options.steps = arguments.has("--steps");
    return options;
}

bool showsAppsOfThemes(const ScreenOptions& options) {
    return options.appsFrom == "theme" || options.kind == ScreenKind::icons;
}

Result<void> findApps(ScreenOptions& options, const desktop::DeviceRoot& root,
                      const simulator::SystemVersion& system) {
    const bool isOfThemes = showsAppsOfThemes(options);
    if (!isOfThemes && options.appsFrom.empty()) {
        return {};
    }
    auto apps = isOfThemes ? themedApps(root, system) : readAppList(options.appsFrom);
    if (!apps) {
        return tl::unexpected(std::move(apps.error()));
    }
    options.apps = std::move(*apps);
    if (!options.item.empty()) {
        auto identifier = identifierFor(options.kind, options.item,
                                        simulator::InstalledApps(options.apps).onHomeScreen());
        if (!identifier) {
            return tl::unexpected(std::move(identifier.error()));
        }
        options.item = std::move(*identifier);
    }
    return {};
}

}  // namespace velmoranth::cli
