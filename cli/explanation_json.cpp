// An explanation as JSON: docs/themes/explain.md has the form, whose version goes up with any
// change that a reader could stumble over.
#include "cli/asked_file_json.h"
#include "cli/dead_links.h"
#include "cli/explanation.h"

#include <nlohmann/json.hpp>

namespace velmoranth::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kVersion = 1;

template <class T>
Json orNull(const std::optional<T>& value) {
    return value ? jsonOf(*value) : Json();
}

Json reasonOf(const std::optional<SwitchReason>& reason) {
    return reason ? Json{{"setting", reason->key},
                         {"isOn", reason->isOn},
                         {"file", orNull(reason->file)},
                         {"brings", reason->brings ? Json(reason->brings->name) : Json()},
                         {"ends", reason->ends ? Json(reason->ends->name) : Json()}}
                  : Json();
}

Json sizeOf(const std::optional<simulator::Picture>& picture) {
    return picture ? Json{{"width", picture->width}, {"height", picture->height}} : Json();
}

Json unused(const NearMiss& miss) {
    return {{"theme", miss.theme}, {"file", miss.name}, {"wanted", miss.wanted}};
}

// Names are a file system's: bytes that are no UTF-8 become U+FFFD.
std::string written(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// Null for none.
Json otherSystemOf(const std::optional<OnOtherSystem>& other) {
    return other ? Json{{"ios", other->major},
                        {"theme", other->file.theme},
                        {"file", other->file.name}}
                 : Json();
}

}  // namespace

Json jsonOf(const AskedFile& file) {
    Json json{{"state", record::wordOf(file.state)}, {"theme", file.theme}, {"file", file.name}};
    if (!file.answer.empty()) {
        json["answer"] = file.answer;
    }
    if (!file.reason.empty()) {
        json["reason"] = file.reason;
    }
    return json;
}

std::string jsonOf(const NearMiss& miss) {
    Json json{{"version", kVersion}};
    json.update(unused(miss));
    return written(json);
}

std::string jsonOfDeadLink(const std::string& theme, const std::string& name) {
    Json json{{"version", kVersion}};
    json.update(unused({theme, name, ""}));
    json["reason"] = kIsDeadLink;
    return written(json);
}

std::string jsonOf(const Explanation& explanation) {
    Json json{
        {"version", kVersion},
        {"request", explanation.question.word},
        {"argument", explanation.question.argument},
        {"bundle", explanation.question.bundle},
        {"methods", explanation.methods},
        {"files", Json::array()},
        {"shown", orNull(explanation.shown)},
        {"hidden", orNull(explanation.hidden)},
        {"effects", Json::object()},
        {"brokenEffects", Json::object()},
        {"drawn", Json::array()},
        {"reason", reasonOf(explanation.reason)},
        {"findings", explanation.findings},
        {"size", sizeOf(explanation.picture)},
        {"stockSize", sizeOf(explanation.stock)},
        {"isStock", explanation.isStock},
        {"isKept", explanation.isKept},
        {"later", Json::array()},
        {"needsRespring", explanation.needsRespring},
        {"unused", Json::array()},
        {"firstTheme", explanation.firstTheme},
        {"onOtherSystem", otherSystemOf(explanation.onOtherSystem)},
        {"wanted", explanation.wanted},
        {"failure", explanation.failure ? Json(desktop::toLine(*explanation.failure)) : Json()},
        {"summary", summaryOf(explanation)}};
    for (const AskedFile& file : explanation.files) {
        json["files"].push_back(jsonOf(file));
    }
    for (const Effect& effect : explanation.effects) {
        json["effects"][std::string(effect.name)] = jsonOf(effect.file);
    }
    for (const Effect& effect : explanation.brokenEffects) {
        json["brokenEffects"][std::string(effect.name)] = jsonOf(effect.file);
    }
    for (const DrawingStep& step : explanation.drawn) {
        json["drawn"].push_back({{"what", step.what},
                                 {"message", step.message},
                                 {"before", step.before},
                                 {"after", step.after}});
    }
    for (const simulator::Question& later : explanation.later) {
        json["later"].push_back({{"request", later.word}, {"argument", later.argument}});
    }
    for (const NearMiss& miss : explanation.nearMisses) {
        json["unused"].push_back(unused(miss));
    }
    return written(json);
}

}  // namespace velmoranth::cli
