// What is said about a file of a theme: for a person, and as JSON.
#include "cli/file_question.h"
#include "cli/messages.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace velmoranth::cli {

using simulator::Question;

namespace {

std::string fileNameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

// A request once, with the devices that send it.
struct RequestRow {
    std::string request;
    std::string devices;
};

// `what` is what all of them have in common with the others.
void addRow(std::vector<RequestRow>& rows, const Opening& opening, const std::string& what) {
    const std::string request = requestOf(opening.question) + what;
    const std::string device = fmt::format("{} iOS {}", opening.device, opening.system);
    const auto known = std::ranges::find(rows, request, &RequestRow::request);
    if (known == rows.end()) {
        rows.push_back({request, device});
    } else {
        known->devices += ", " + device;
    }
}

std::string textOf(std::string_view title, const std::vector<RequestRow>& rows) {
    std::string text;
    for (const RequestRow& row : rows) {
        text +=
            fmt::format("{:<10} {} ({})\n", text.empty() ? title : "", row.request, row.devices);
    }
    return text;
}

std::string requestLines(const FileExplanation& explanation) {
    std::vector<RequestRow> opened;
    for (const Opening& opening : explanation.openings) {
        addRow(opened, opening, "");
    }
    std::vector<RequestRow> beside;
    for (const TakenBeside& taken : explanation.beside) {
        addRow(beside, taken.opening, ", which takes " + shown(fileNameOf(taken.file)));
    }
    return textOf("opened by", opened) + textOf("looked for", beside);
}

// Of a file in whose place those of the screens' scales are taken.
std::string takenBeside(const FileExplanation& explanation, const std::string& name) {
    const TakenBeside& taken = explanation.beside.front();
    return fmt::format(
        "{} is looked for by {}; {} beside it is taken for the screen's scale, and it shows itself "
        "where no such name is there",
        name, requestOf(taken.opening.question), shown(fileNameOf(taken.file)));
}

// What no request of the device's own opens.
std::string notOpened(const FileExplanation& explanation, const std::string& name) {
    if (const auto& hidden = explanation.hidden) {
        return fmt::format("{} is opened by no request: {} is opened in its place by {}", name,
                           shown(hidden->file.theme + "/" + hidden->file.name),
                           requestOf(hidden->question));
    }
    if (const auto& reason = explanation.reason) {
        return fmt::format("{} is opened by no request: {} is {}; with it {}, {} opens it", name,
                           reason->key, reason->isOn ? "on" : "off", reason->isOn ? "off" : "on",
                           requestOf(reason->question));
    }
    if (const auto& question = explanation.onceFirst) {
        return fmt::format("{} is opened by no request: {} opens it once {} is the first theme",
                           name, requestOf(*question), shown(explanation.theme));
    }
    const std::string near =
        explanation.wanted.empty()
            ? ""
            : "; the nearest name that is looked for is " + shown(explanation.wanted.front());
    if (explanation.openings.empty()) {
        return fmt::format("{} is opened by no request{}", name,
                           near.empty() ? "; nothing like it is looked for" : near);
    }
    const Question& question = explanation.openings.front().question;
    const bool isApp = simulator::questionRowNamed(question.word)->argument == "ID";
    return fmt::format("{} is opened by {} alone, {}{}", name, requestOf(question),
                       isApp ? "an app that the simulated device does not have"
                             : "which the simulated device does not ask for",
                       near);
}

}  // namespace

std::string textOf(const FileExplanation& explanation) {
    const std::string name = shown(explanation.theme + "/" + explanation.name);
    const std::string text = requestLines(explanation);
    const bool isOwn = !explanation.openings.empty() && explanation.openings.front().isOwn;
    if (!explanation.problem.empty()) {
        return text + fmt::format("{} is opened and gives nothing: {}.\n", name,
                                  shown(explanation.problem));
    }
    if (explanation.openings.empty() && !explanation.beside.empty()) {
        return text + takenBeside(explanation, name) + ".\n";
    }
    return text + (isOwn ? fmt::format("{} is opened by {}.\n", name,
                                       requestOf(explanation.openings.front().question))
                         : notOpened(explanation, name) + ".\n");
}

std::string jsonOf(const FileExplanation& explanation) {
    using Json = nlohmann::ordered_json;
    const auto asked = [](const Question& question) {
        return Json{{"request", question.word},
                    {"argument", question.argument},
                    {"bundle", question.bundle}};
    };
    Json json{{"version", 1},
              {"theme", explanation.theme},
              {"file", explanation.name},
              {"openedBy", Json::array()},
              {"beside", Json::array()},
              {"problem", explanation.problem},
              {"hidden", nullptr},
              {"reason", nullptr},
              {"onceFirst", nullptr},
              {"wanted", explanation.wanted}};
    for (const Opening& opening : explanation.openings) {
        Json one = asked(opening.question);
        one.update({{"device", opening.device}, {"ios", opening.system}, {"isOwn", opening.isOwn}});
        json["openedBy"].push_back(std::move(one));
    }
    for (const TakenBeside& taken : explanation.beside) {
        Json one = asked(taken.opening.question);
        one.update({{"device", taken.opening.device},
                    {"ios", taken.opening.system},
                    {"file", taken.file}});
        json["beside"].push_back(std::move(one));
    }
    if (const auto& hidden = explanation.hidden) {
        json["hidden"] = asked(hidden->question);
        json["hidden"].update({{"theme", hidden->file.theme}, {"file", hidden->file.name}});
    }
    if (const auto& reason = explanation.reason) {
        json["reason"] = asked(reason->question);
        json["reason"].update({{"setting", reason->key}, {"isOn", reason->isOn}});
    }
    if (const auto& question = explanation.onceFirst) {
        json["onceFirst"] = asked(*question);
    }
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace velmoranth::cli
