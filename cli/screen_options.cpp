#include "cli/screen_options.h"

#include "cli/messages.h"
#include "cli/nearest.h"
#include "cli/preview_steps.h"
#include "simulator/home_screen/apps.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::Result;
using simulator::HomeScreenItem;
using simulator::ScreenKind;

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
std::vector<HomeScreenItem> itemsFor(ScreenKind screen) {
    std::vector<HomeScreenItem> items;
    for (const HomeScreenItem& item : simulator::homeScreenItems()) {
        if (screen == ScreenKind::pressed || item.folder != nullptr) {
            items.push_back(item);
        }
    }
    if (screen == ScreenKind::pressed) {
        for (const simulator::App& app : simulator::dockApps()) {
            items.push_back({&app, nullptr});
        }
    }
    return items;
}

// The identifier of the item of that identifier or name.
Result<std::string> identifierFor(ScreenKind screen, std::string_view option,
                                  const std::string& word) {
    const std::vector<HomeScreenItem> items = itemsFor(screen);
    std::vector<std::string> names;
    for (const HomeScreenItem& item : items) {
        std::string identifier = simulator::identifierOf(item);
        names.push_back(simulator::nameOf(item));
        if (identifier == word || sameIgnoringCase(names.back(), word)) {
            return identifier;
        }
    }
    if (screen == ScreenKind::folder) {
        return misuse(fmt::format("{} takes one of {}, not {}", option, fmt::join(names, ", "),
                                  inQuotes(word)));
    }
    return misuse("there is no icon " + inQuotes(word) + " on the home screen" +
                  suggestion(word, names));
}

bool hasPages(ScreenKind screen) {
    return screen == ScreenKind::home || screen == ScreenKind::folder ||
           screen == ScreenKind::pressed || screen == ScreenKind::gallery;
}

// "home, folder or pressed"
std::string screenNames() {
    const auto screens = simulator::screenDefinitions();
    std::string names;
    for (const simulator::ScreenDefinition& screen : screens) {
        names += names.empty() ? "" : screen.kind == screens.back().kind ? " or " : ", ";
        names += screen.name;
    }
    return names;
}

Result<ScreenKind> readKind(const Arguments& arguments) {
    const std::string name = arguments.value("--screen").value_or("home");
    if (const auto kind = simulator::screenKindNamed(name)) {
        return *kind;
    }
    return misuse("--screen takes " + screenNames() + ", not " + inQuotes(name));
}

}  // namespace

Result<ScreenOptions> readScreenOptions(const Arguments& arguments) {
    ScreenOptions options;
    const auto kind = readKind(arguments);
    if (!kind) {
        return tl::unexpected(kind.error());
    }
    options.kind = *kind;
    for (const Belonging& belonging : kBelongings) {
        if (arguments.has(belonging.option) && options.kind != belonging.screen) {
            return misuse(std::string(belonging.option) + " needs --screen " +
                          std::string(belonging.screenName));
        }
    }
    if (arguments.has("--steps") && stepCount(options.kind) == 0) {
        return misuse("--steps needs --screen folder or panel-success");
    }
    if (arguments.has("--page") && !hasPages(options.kind)) {
        return misuse("--page needs a screen that has pages: home, folder, pressed or gallery");
    }
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
        auto identifier = identifierFor(options.kind, option, *word);
        if (!identifier) {
            return tl::unexpected(std::move(identifier.error()));
        }
        options.item = std::move(*identifier);
    }
    options.steps = arguments.has("--steps");
    return options;
}

}  // namespace velmoranth::cli
