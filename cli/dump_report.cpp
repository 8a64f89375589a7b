#include "cli/dump_report.h"

#include "cli/explanation.h"
#include "cli/messages.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <map>

namespace velmoranth::cli {

using makers::EmptyPlace;
using makers::SkeletonFile;

namespace {

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
                           counted(dump.raw.size(), "picture"), devicesText(dump));
    }
    std::string text =
        fmt::format("{}: {}, of {}\n", shown(dump.folder),
                    counted(dump.skeleton->files().size(), "file"), devicesText(dump));
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
    return text;
}

std::string jsonOf(const Dump& dump) {
    Json json{{"version", 1},
              {"folder", dump.folder},
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
        json["leftOut"] = Json::array();
        for (const EmptyPlace& empty : dump.skeleton->empty()) {
            json["leftOut"].push_back(
                {{"file", empty.name}, {"request", requestOf(empty.question)}, {"why", empty.why}});
        }
    }
    return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace velmoranth::cli
