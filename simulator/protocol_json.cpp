// JSON of the messages. nlohmann-json, because it is the best kept library of its kind and its
// types stay in this file; parsing and reading go without exceptions.

#include "simulator/protocol.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <variant>

namespace velmoranth::simulator {
namespace {

using nlohmann::json;

// Reads the members of an object and remembers whether one of them was missing or of another type.
class Reader {
  public:
    explicit Reader(const json& object) : object_(object), good_(object.is_object()) {}

    [[nodiscard]] bool good() const { return good_; }

    void read(const char* key, std::string& value) {
        if (const json* const member = find(key, &json::is_string)) {
            value = member->get_ref<const std::string&>();
        }
    }

    void read(const char* key, double& value) {
        if (const json* const member = find(key, &json::is_number)) {
            value = member->get<double>();
            good_ = good_ && std::isfinite(value);
        }
    }

    void read(const char* key, bool& value) {
        if (const json* const member = find(key, &json::is_boolean)) {
            value = member->get<bool>();
        }
    }

    void read(const char* key, int& value) {
        if (const json* const member = find(key, &json::is_number_integer)) {
            value = member->get<int>();
        }
    }

    void read(const char* key, std::size_t& value) {
        if (const json* const member = find(key, &json::is_number_unsigned)) {
            value = member->get<std::size_t>();
        }
    }

    // A file name: any bytes, so JSON has it as numbers.
    void readPath(const char* key, std::string& value) {
        value.clear();
        for (const json& byte : array(key)) {
            require(byte.is_number_unsigned() && byte.get<std::size_t>() <= 255);
            value.push_back(good_ ? static_cast<char>(byte.get<unsigned char>()) : '?');
        }
    }

    // An empty object when there is none.
    [[nodiscard]] const json& object(const char* key) {
        static const json kNothing = json::object();
        const json* const member = find(key, &json::is_object);
        return member == nullptr ? kNothing : *member;
    }

    [[nodiscard]] const json& array(const char* key) {
        static const json kNothing = json::array();
        const json* const member = find(key, &json::is_array);
        return member == nullptr ? kNothing : *member;
    }

    [[nodiscard]] bool has(const char* key) const {
        return object_.is_object() && object_.contains(key);
    }

    void require(bool condition) { good_ = good_ && condition; }

  private:
    [[nodiscard]] const json* find(const char* key, bool (json::*fits)() const noexcept) {
        const auto member = good_ ? object_.find(key) : object_.end();
        if (!good_ || member == object_.end() || !((*member).*fits)()) {
            good_ = false;
            return nullptr;
        }
        return &*member;
    }

    const json& object_;
    bool good_;
};

json parse(std::string_view text) {
    return json::parse(text, nullptr, false);
}

// Bytes that are no UTF-8 become U+FFFD.
std::string dump(const json& value) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

json pathToJson(const std::string& path) {
    json bytes = json::array();
    for (const char byte : path) {
        bytes.push_back(static_cast<unsigned char>(byte));
    }
    return bytes;
}

json deviceToJson(const DeviceConfiguration& device) {
    json value = {
        {"system",
         {{"major", device.system.major},
          {"minor", device.system.minor},
          {"patch", device.system.patch},
          {"coreFoundationVersion", device.system.coreFoundationVersion}}},
        {"pad", device.kind == DeviceKind::pad},
        {"screen",
         {{"width", device.screen.width},
          {"height", device.screen.height},
          {"scale", device.screen.scale}}},
        {"landscape", device.orientation == Orientation::landscape},
        {"machine", device.machine},
        {"locale", device.locale},
        {"exactFiles", device.exactFiles},
    };
    if (device.date) {
        value["date"] = device.date->secondsSinceReferenceDate;
    }
    return value;
}

bool deviceFromJson(const json& value, DeviceConfiguration& device) {
    Reader reader(value);
    Reader system(reader.object("system"));
    system.read("major", device.system.major);
    system.read("minor", device.system.minor);
    system.read("patch", device.system.patch);
    system.read("coreFoundationVersion", device.system.coreFoundationVersion);
    Reader screen(reader.object("screen"));
    screen.read("width", device.screen.width);
    screen.read("height", device.screen.height);
    screen.read("scale", device.screen.scale);
    bool pad = false;
    reader.read("pad", pad);
    device.kind = pad ? DeviceKind::pad : DeviceKind::phone;
    bool landscape = false;
    reader.read("landscape", landscape);
    device.orientation = landscape ? Orientation::landscape : Orientation::portrait;
    reader.read("machine", device.machine);
    reader.read("locale", device.locale);
    reader.read("exactFiles", device.exactFiles);
    if (reader.has("date")) {
        device.date.emplace();
        reader.read("date", device.date->secondsSinceReferenceDate);
    }
    return reader.good() && system.good() && screen.good();
}

void readScreenKind(Reader& reader, ScreenKind& kind) {
    std::string name;
    reader.read("screen", name);
    const std::optional<ScreenKind> known = screenKindNamed(name);
    reader.require(known.has_value());
    kind = known.value_or(ScreenKind::home);
}

json iconsToJson(const std::vector<ShownIcon>& icons) {
    json value = json::array();
    for (const ShownIcon& icon : icons) {
        value.push_back({{"bundleIdentifier", icon.bundleIdentifier},
                         {"label", icon.label},
                         {"x", icon.x},
                         {"y", icon.y},
                         {"side", icon.side},
                         {"stockImageRequests", icon.stockImageRequests}});
    }
    return value;
}

void readIcons(Reader& reader, std::vector<ShownIcon>& icons) {
    for (const json& entry : reader.array("icons")) {
        ShownIcon icon;
        Reader members(entry);
        members.read("bundleIdentifier", icon.bundleIdentifier);
        members.read("label", icon.label);
        members.read("x", icon.x);
        members.read("y", icon.y);
        members.read("side", icon.side);
        members.read("stockImageRequests", icon.stockImageRequests);
        reader.require(members.good());
        icons.push_back(std::move(icon));
    }
}

json folderToJson(const ShownFolder& folder) {
    return {{"identifier", folder.identifier},
            {"name", folder.name},
            {"page", folder.page},
            {"pageCount", folder.pageCount},
            {"x", folder.x},
            {"y", folder.y},
            {"width", folder.width},
            {"height", folder.height},
            {"icons", iconsToJson(folder.icons)}};
}

void readFolder(Reader& reader, ShownFolder& folder) {
    Reader members(reader.object("folder"));
    members.read("identifier", folder.identifier);
    members.read("name", folder.name);
    members.read("page", folder.page);
    members.read("pageCount", folder.pageCount);
    members.read("x", folder.x);
    members.read("y", folder.y);
    members.read("width", folder.width);
    members.read("height", folder.height);
    readIcons(members, folder.icons);
    reader.require(members.good());
}

// The name of each action in its JSON is its member "action".
struct ActionWriter {
    json operator()(const OpenFolderAction& action) const {
        return {{"action", "openFolder"}, {"folder", action.folder}};
    }

    json operator()(const TurnFolderPageAction& action) const {
        return {{"action", "turnFolderPage"}, {"page", action.page}};
    }

    json operator()(const PressIconAction& action) const {
        return {{"action", "pressIcon"}, {"icon", action.icon}};
    }

    json operator()(const TapAction& action) const {
        return {{"action", "tap"}, {"x", action.point.x}, {"y", action.point.y}};
    }

    json operator()(const AdvanceAction& action) const {
        return {{"action", "advance"}, {"seconds", action.seconds}};
    }
};

using ReadAction = ScreenAction (*)(Reader& reader);

constexpr std::array<std::pair<const char*, ReadAction>, 5> kActions{{
    {"openFolder",
     [](Reader& reader) -> ScreenAction {
         OpenFolderAction action;
         reader.read("folder", action.folder);
         return action;
     }},
    {"turnFolderPage",
     [](Reader& reader) -> ScreenAction {
         TurnFolderPageAction action;
         reader.read("page", action.page);
         return action;
     }},
    {"pressIcon",
     [](Reader& reader) -> ScreenAction {
         PressIconAction action;
         reader.read("icon", action.icon);
         return action;
     }},
    {"tap",
     [](Reader& reader) -> ScreenAction {
         TapAction action;
         reader.read("x", action.point.x);
         reader.read("y", action.point.y);
         return action;
     }},
    {"advance",
     [](Reader& reader) -> ScreenAction {
         AdvanceAction action;
         reader.read("seconds", action.seconds);
         return action;
     }},
}};

}  // namespace

std::string requestToJson(const ScreenRequest& request) {
    // Where log lines go and how long things may take is the launcher's business.
    return dump({{"device", deviceToJson(request.device)},
                 {"rootFolder", pathToJson(request.rootFolder)},
                 {"loadEngine", request.loadEngine},
                 {"enginePath", pathToJson(request.enginePath)},
                 {"page", request.page},
                 {"screen", std::string(definitionOf(request.screen).name)},
                 {"item", request.item},
                 {"folderPage", request.folderPage}});
}

std::optional<ScreenRequest> requestFromJson(std::string_view text) {
    const json value = parse(text);
    ScreenRequest request;
    Reader reader(value);
    reader.require(deviceFromJson(reader.object("device"), request.device));
    reader.readPath("rootFolder", request.rootFolder);
    reader.read("loadEngine", request.loadEngine);
    reader.readPath("enginePath", request.enginePath);
    reader.read("page", request.page);
    readScreenKind(reader, request.screen);
    reader.read("item", request.item);
    reader.read("folderPage", request.folderPage);
    return reader.good() ? std::optional(std::move(request)) : std::nullopt;
}

std::string actionToJson(const ScreenAction& action) {
    return dump(std::visit(ActionWriter{}, action));
}

std::optional<ScreenAction> actionFromJson(std::string_view text) {
    const json value = parse(text);
    Reader reader(value);
    std::string name;
    reader.read("action", name);
    for (const auto& [known, read] : kActions) {
        if (name == known) {
            ScreenAction action = read(reader);
            return reader.good() ? std::optional(std::move(action)) : std::nullopt;
        }
    }
    return std::nullopt;
}

std::string screenToJson(const ScreenHeader& header) {
    json value = {{"width", header.width},
                  {"height", header.height},
                  {"scale", header.scale},
                  {"icons", iconsToJson(header.icons)},
                  {"page", header.page},
                  {"pageCount", header.pageCount},
                  {"peakMemoryBytes", header.peakMemoryBytes}};
    if (header.folder) {
        value["folder"] = folderToJson(*header.folder);
    }
    return dump(value);
}

std::optional<ScreenHeader> screenFromJson(std::string_view text) {
    const json value = parse(text);
    ScreenHeader header;
    Reader reader(value);
    reader.read("width", header.width);
    reader.read("height", header.height);
    reader.read("scale", header.scale);
    reader.read("page", header.page);
    reader.read("pageCount", header.pageCount);
    reader.read("peakMemoryBytes", header.peakMemoryBytes);
    readIcons(reader, header.icons);
    if (reader.has("folder")) {
        readFolder(reader, header.folder.emplace());
    }
    return reader.good() ? std::optional(std::move(header)) : std::nullopt;
}

std::string problemToJson(const desktop::Problem& problem) {
    json value = {{"message", problem.message}, {"path", problem.path}};
    if (problem.offset) {
        value["offset"] = *problem.offset;
    }
    return dump(value);
}

std::optional<desktop::Problem> problemFromJson(std::string_view text) {
    const json value = parse(text);
    desktop::Problem problem;
    Reader reader(value);
    reader.read("message", problem.message);
    reader.read("path", problem.path);
    if (reader.has("offset")) {
        std::size_t offset = 0;
        reader.read("offset", offset);
        problem.offset = offset;
    }
    return reader.good() ? std::optional(std::move(problem)) : std::nullopt;
}

}  // namespace velmoranth::simulator
