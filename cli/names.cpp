// velmoranth names: what a theme can replace.
#include "cli/choice.h"
#include "cli/commands.h"
#include "cli/device_options.h"
#include "cli/help.h"
#include "cli/late_progress.h"
#include "cli/messages.h"
#include "cli/replaceable_names.h"
#include "desktop/files/cleanup.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <ranges>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<Option, 3> kNamesOptions{
    {kIosOption, kDeviceOption, {"--json", "", "", "say it as JSON, with every file looked for"}}};

std::string sizeText(const std::optional<desktop::PixelSize>& size) {
    return size ? fmt::format("{} × {}", size->width, size->height) : "-";
}

// How many columns of a terminal it takes: the sign between width and height has two bytes.
std::size_t columnsOf(const std::string& text) {
    return text.size() - (text.find("×") != std::string::npos ? 1 : 0);
}

// As it is typed behind `velmoranth explain THEME... --`.
std::string requestText(const ReplaceableName& name) {
    std::string text = forShell(name.question.word);
    if (!name.question.argument.empty()) {
        text += " " + forShell(name.question.argument);
    }
    if (!name.question.bundle.empty()) {
        text += " --bundle " + forShell(name.question.bundle);
    }
    return text;
}

std::string textOf(const std::vector<ReplaceableName>& names) {
    std::size_t sizeWidth = 0;
    std::size_t fileWidth = 0;
    for (const ReplaceableName& name : names) {
        sizeWidth = std::max(sizeWidth, columnsOf(sizeText(name.size)));
        fileWidth = std::max(fileWidth, name.file.size());
    }
    std::string text;
    std::string_view group;
    for (const ReplaceableName& name : names) {
        if (name.group != group) {
            text.append(group.empty() ? "" : "\n").append(name.group).append("\n");
            group = name.group;
        }
        const std::string size = sizeText(name.size);
        const std::string& file = name.file;
        text.append(2 + sizeWidth - columnsOf(size), ' ');
        text.append(size).append("  ").append(file);
        text.append(2 + fileWidth - file.size(), ' ');
        text += requestText(name);
        if (!name.title.empty()) {
            text.append("  (").append(name.title).append(")");
        }
        if (!name.setting.empty()) {
            text.append("  with ").append(name.setting);
        }
        text += "\n";
    }
    return text;
}

std::string jsonOf(const std::vector<ReplaceableName>& names, const NamedDevice& device) {
    Json json{{"version", 1},
              {"device", device.name},
              {"ios", device.configuration.system.major},
              {"names", Json::array()}};
    for (const ReplaceableName& name : names) {
        json["names"].push_back(
            {{"group", name.group},
             {"request", name.question.word},
             {"argument", name.question.argument},
             {"bundle", name.question.bundle},
             {"title", name.title},
             {"file", name.file},
             {"files", name.files},
             {"setting", name.setting},
             {"size", name.size ? Json{{"width", name.size->width}, {"height", name.size->height}}
                                : Json()}});
    }
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

ExitCode runNames(const Arguments& arguments) {
    std::vector<std::string_view> groups;
    const auto all = std::views::transform(nameGroups(), &NameGroup::name);
    for (const std::string& word : arguments.positionals()) {
        const auto found = std::ranges::find(all, word);
        if (found == all.end()) {
            return fail(ExitCode::wrongUsage, notAmong("names", all, word));
        }
        groups.push_back(*found);
    }
    if (groups.empty()) {
        groups.assign(all.begin(), all.end());
    }
    auto configuration = readDeviceOptions(arguments);
    if (!configuration) {
        return fail(ExitCode::wrongUsage, configuration.error());
    }
    const NamedDevice device{arguments.value("--device").value_or("phone"),
                             std::move(*configuration)};
    desktop::cleanUpOnSignals();
    LateProgress progress;
    const auto names = replaceableNames(groups, device, [&](std::size_t done, std::size_t count) {
        progress.show(done, count, "name");
    });
    progress.clear();
    if (!names) {
        return fail(ExitCode::badInput, names.error());
    }
    print(arguments.has("--json") ? jsonOf(*names, device) : textOf(*names));
    return ExitCode::done;
}

std::string groupHelp() {
    std::vector<std::pair<std::string, std::string>> rows;
    for (const NameGroup& group : nameGroups()) {
        rows.emplace_back(group.name, group.summary);
    }
    return "groups:\n" + twoColumns(rows);
}

}  // namespace

Command namesCommand() {
    return {.name = "names",
            .summary = "List every name that a theme can replace.",
            .positionalNames = "[GROUP...]",
            .description =
                "A line has the size in pixels, the file of a theme to give, and the request to "
                "give to "
                "velmoranth explain.",
            .options = kNamesOptions,
            .examples = {"velmoranth names chrome settings",
                         "velmoranth names images --device pad --ios 12 --json"},
            .leastPositionals = 0,
            .mostPositionals = 100,
            .run = runNames,
            .moreHelp = groupHelp};
}

}  // namespace velmoranth::cli
