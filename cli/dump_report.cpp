#include "cli/dump_report.h"

#include "cli/explanation.h"
#include "cli/messages.h"
#include "cli/replaced_folder.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

using makers::EmptyPlace;
using makers::SkeletonFile;

namespace {

// What the unchanged skeleton shows otherwise than the system does without it, and no picture can
// mend. The page about dump says the same.
struct Otherwise {
    bool (*isOn)(const DumpedDevice& device);
    std::string_view what;
};

constexpr std::array<Otherwise, 7> kOtherwise{{
    {[](const DumpedDevice& /*device*/) { return true; },
     "where an app's icon is smaller than on the home screen, that one is made smaller, and the "
     "system draws each size by itself"},
    {[](const DumpedDevice& /*device*/) { return true; },
     "the plates of folders and dock are blurred wallpaper, and a picture lets it through as it "
     "is"},
    {[](const DumpedDevice& /*device*/) { return true; },
     "an open folder's plate does not blur what is behind it while theming is on, with whatever "
     "theme"},
    {[](const DumpedDevice& device) { return device.system == 12; },
     "on iOS 12 the clock's icon is a picture like others, and stands at 9:41"},
    {[](const DumpedDevice& device) { return device.system == 13 && device.name != "pad"; },
     "on iOS 13 a long weekday reaches the edges of the calendar's icon, and the system writes it "
     "smaller"},
    {[](const DumpedDevice& device) { return device.system == 13 && device.name == "phone-667"; },
     "on a smaller phone with iOS 13 the tails of the weekday's letters are paler by a trace"},
    {[](const DumpedDevice& device) { return device.system == 13 && device.name == "pad"; },
     "on a pad with iOS 13 the calendar's icon is plain white with smaller letters"},
}};

std::vector<std::string_view> shownOtherwise(const std::vector<DumpedDevice>& devices) {
    std::vector<std::string_view> texts;
    for (const Otherwise& row : kOtherwise) {
        if (std::ranges::any_of(devices, row.isOn)) {
            texts.push_back(row.what);
        }
    }
    return texts;
}

std::string devicesText(const Dump& dump) {
    std::string text;
    for (const DumpedDevice& device : dump.devices) {
        text +=
            fmt::format("{}{} with iOS {}", text.empty() ? "" : ", ", device.name, device.system);
    }
    return text;
}

using Json = nlohmann::ordered_json;

Json jsonOfFile(const std::string& name, const SkeletonFile& file) {
    Json json{{"file", name}};
    if (!file.question.word.empty()) {
        json["request"] = requestOf(file.question);
    }
    if (file.width > 0) {
        json["width"] = file.width;
        json["height"] = file.height;
    }
    if (!file.from.empty()) {
        json["from"] = file.from;
    }
    return json;
}

}  // namespace

std::string textOf(const Dump& dump) {
    if (dump.skeleton == nullptr) {
        return fmt::format("{}: {}, of {}\n", shown(dump.folder),
                           counted(dump.raw.size(), "picture"), devicesText(dump)) +
               replacedText(dump.replaced, true);
    }
    std::string text =
        fmt::format("{}: {}, of {}\n", shown(dump.folder),
                    counted(dump.skeleton->files().size(), "file"), devicesText(dump)) +
        replacedText(dump.replaced, true);
    std::map<std::string, std::vector<const EmptyPlace*>> byReason;
    for (const EmptyPlace& empty : dump.skeleton->empty()) {
        byReason[empty.why].push_back(&empty);
    }
    for (const auto& [why, places] : byReason) {
        const std::string rest =
            places.size() > 1 ? fmt::format(" and {} more", places.size() - 1) : "";
        text +=
            fmt::format("  left out  {}{}: {}\n", shown(places.front()->name), rest, shown(why));
    }
    for (const std::string_view what : shownOtherwise(dump.devices)) {
        text += fmt::format("  otherwise {}\n", what);
    }
    return text;
}

std::string jsonOf(const Dump& dump) {
    Json json{{"version", 1},
              {"folder", dump.folder},
              {"replaced", dump.replaced ? Json(*dump.replaced) : Json()},
              {"devices", Json::array()},
              {"files", Json::array()}};
    for (const DumpedDevice& device : dump.devices) {
        json["devices"].push_back({{"device", device.name}, {"ios", device.system}});
    }
    for (const std::string& file : dump.raw) {
        json["files"].push_back({{"file", file}});
    }
    if (dump.skeleton != nullptr) {
        for (const auto& [name, file] : dump.skeleton->files()) {
            json["files"].push_back(jsonOfFile(name, file));
        }
        json["otherwise"] = shownOtherwise(dump.devices);
        json["leftOut"] = Json::array();
        for (const EmptyPlace& empty : dump.skeleton->empty()) {
            json["leftOut"].push_back(
                {{"file", empty.name}, {"request", requestOf(empty.question)}, {"why", empty.why}});
        }
    }
    return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace velmoranth::cli
