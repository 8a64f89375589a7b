#include "cli/conversion_report.h"

#include "cli/messages.h"
#include "cli/replaced_folder.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>

namespace velmoranth::cli {

using makers::Conversion;
using makers::ConvertedTheme;
using makers::LeftOut;
using makers::MadeFile;
using makers::Plan;

namespace {

// Those that stay what and where they are are not told of.
bool isTold(const MadeFile& file) {
    return !file.why.empty();
}

std::size_t madeIn(const Plan& plan) {
    return static_cast<std::size_t>(
        std::ranges::count_if(plan.files, [](const auto& file) { return isTold(file.second); }));
}

std::string placeOf(const ConvertedTheme& theme) {
    return theme.source.empty() ? theme.input : theme.input + "/" + theme.source;
}

std::string madeText(const std::string& name, const MadeFile& file) {
    const std::string what = name == file.source
                                 ? "changed   " + shown(name)
                                 : "made      " + shown(name) + " from " + shown(file.source);
    std::string text;
    for (std::size_t start = 0; start < file.why.size();) {
        const std::size_t end = std::min(file.why.find('\n', start), file.why.size());
        text += fmt::format("  {}: {}\n", what, shown(file.why.substr(start, end - start)));
        start = end + 1;
    }
    return text;
}

std::string themeText(const ConvertedTheme& theme, const Conversion& conversion) {
    const Plan& plan = theme.plan;
    const std::size_t made = madeIn(plan);
    std::string text =
        theme.isEmpty() ? fmt::format("no theme from {}", shown(placeOf(theme)))
                        : fmt::format("{} from {}: {}", shown(conversion.output + "/" + theme.name),
                                      shown(placeOf(theme)), counted(plan.files.size(), "file"));
    text += theme.isEmpty() ? fmt::format(": nothing of it shows, {} left out\n",
                                          counted(plan.leftOut.size(), "file"))
            : plan.changesNothing()
                ? ", nothing to change\n"
                : fmt::format(", {} made or changed, {} left out\n", made, plan.leftOut.size());
    text += replacedText(theme.replaced, !conversion.isDryRun);
    for (const auto& [name, file] : plan.files) {
        if (isTold(file)) {
            text += madeText(name, file);
        }
    }
    for (const LeftOut& left : plan.leftOut) {
        text += fmt::format("  left out  {}: {}\n", shown(left.name), shown(left.why));
    }
    for (const LeftOut& note : plan.notes) {
        text += fmt::format("  note      {}: {}\n", shown(note.name), shown(note.why));
    }
    return text;
}

using Json = nlohmann::ordered_json;

Json linesOf(const std::vector<LeftOut>& lines) {
    Json json = Json::array();
    for (const LeftOut& line : lines) {
        json.push_back({{"file", line.name}, {"why", line.why}});
    }
    return json;
}

}  // namespace

std::string textOf(const std::vector<ConvertedTheme>& themes, const Conversion& conversion) {
    std::string text;
    for (const ConvertedTheme& theme : themes) {
        text += themeText(theme, conversion);
    }
    if (conversion.isDryRun) {
        text += "Nothing was written.\n";
    }
    return text;
}

std::string jsonOf(const std::vector<ConvertedTheme>& themes, const Conversion& conversion) {
    Json json{{"version", 1},
              {"output", conversion.output},
              {"written", !conversion.isDryRun},
              {"themes", Json::array()}};
    for (const ConvertedTheme& theme : themes) {
        Json made = Json::array();
        for (const auto& [name, file] : theme.plan.files) {
            if (isTold(file)) {
                made.push_back({{"file", name}, {"from", file.source}, {"why", file.why}});
            }
        }
        json["themes"].push_back({{"name", theme.name},
                                  {"input", theme.input},
                                  {"folder", theme.source},
                                  {"files", theme.plan.files.size()},
                                  {"replaced", theme.replaced ? Json(*theme.replaced) : Json()},
                                  {"made", std::move(made)},
                                  {"leftOut", linesOf(theme.plan.leftOut)},
                                  {"notes", linesOf(theme.plan.notes)}});
    }
    return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace velmoranth::cli
