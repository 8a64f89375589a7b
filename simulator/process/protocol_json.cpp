// JSON of the messages. nlohmann-json, because it is the best kept library of its kind; its types
// and its exceptions stay in this file.

#include "simulator/process/protocol.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <variant>
#include <vector>

// Nothing is null.
template <class T>
struct nlohmann::adl_serializer<std::optional<T>> {
    // NOLINTBEGIN(readability-identifier-naming): the library's names.
    static void to_json(json& value, const std::optional<T>& optional) {
        value = optional ? json(*optional) : json();
    }

    static void from_json(const json& value, std::optional<T>& optional) {
        optional = value.is_null() ? std::nullopt : std::optional(value.get<T>());
    }

    // NOLINTEND(readability-identifier-naming)
};

namespace velmoranth::platform {

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Date, secondsSinceReferenceDate)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Point, x, y)

}  // namespace velmoranth::platform

namespace velmoranth {
namespace {

// A file name: any bytes, so JSON has it as numbers.
std::vector<std::uint8_t> bytesOf(const std::string& path) {
    return {path.begin(), path.end()};
}

std::string pathOf(const nlohmann::json& bytes) {
    const auto path = bytes.get<std::vector<std::uint8_t>>();
    return {path.begin(), path.end()};
}

}  // namespace
}  // namespace velmoranth

namespace velmoranth::desktop {

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Problem, message, path, offset)

// NOLINTBEGIN(readability-identifier-naming): the library looks for these names.
static void to_json(nlohmann::json& value, const Graft& graft) {
    value = {{"place", bytesOf(graft.place)}, {"folder", bytesOf(graft.folder)}};
}

static void from_json(const nlohmann::json& value, Graft& graft) {
    graft = {pathOf(value.at("place")), pathOf(value.at("folder"))};
}

static void to_json(nlohmann::json& value, const DeviceFiles& files) {
    value = {{"folder", bytesOf(files.folder)}, {"grafts", files.grafts}};
}

static void from_json(const nlohmann::json& value, DeviceFiles& files) {
    files.folder = pathOf(value.at("folder"));
    value.at("grafts").get_to(files.grafts);
}

// NOLINTEND(readability-identifier-naming)

}  // namespace velmoranth::desktop

namespace velmoranth::simulator {

using nlohmann::json;

namespace {

// The names of the actions, in the order of the variant.
constexpr std::array<const char*, std::variant_size_v<ScreenAction>> kActionNames{
    "openFolder", "turnFolderPage", "pressIcon", "tap", "advance"};

}  // namespace

NLOHMANN_JSON_SERIALIZE_ENUM(DeviceKind, {{DeviceKind::phone, "phone"}, {DeviceKind::pad, "pad"}})
NLOHMANN_JSON_SERIALIZE_ENUM(Orientation, {{Orientation::portrait, "portrait"},
                                           {Orientation::landscape, "landscape"}})
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SystemVersion, major, minor, patch, coreFoundationVersion)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ScreenDescription, width, height, scale)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(DeviceConfiguration, system, kind, screen, orientation, machine,
                                   locale, date, exactFiles)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ShownIcon, bundleIdentifier, label, x, y, side,
                                   stockImageRequests)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ShownFolder, identifier, name, page, pageCount, x, y, width,
                                   height, icons)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ScreenHeader, width, height, scale, icons, folder, page,
                                   pageCount, peakMemoryBytes)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Question, word, argument, bundle)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(NamedApp, identifier, name)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(OpenFolderAction, folder)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(TurnFolderPageAction, page)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(PressIconAction, icon)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(TapAction, point)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(AdvanceAction, seconds)

// NOLINTBEGIN(readability-identifier-naming): the library looks for these names.
static void to_json(json& value, const ScreenAction& action) {
    std::visit([&](const auto& one) { value = one; }, action);
    value["action"] = kActionNames.at(action.index());
}

static void from_json(const json& value, ScreenAction& action) {
    const auto& name = value.at("action").get_ref<const std::string&>();
    const auto read = [&]<class Action>(const char* candidate, Action one) {
        if (name == candidate) {
            value.get_to(one);
            action = one;
        }
    };
    [&]<std::size_t... Index>(std::index_sequence<Index...> /*all*/) {
        (read(kActionNames[Index], std::variant_alternative_t<Index, ScreenAction>()), ...);
    }(std::make_index_sequence<kActionNames.size()>());
}

// Where log lines go and how long things may take is the launcher's business.
static void to_json(json& value, const ScreenRequest& request) {
    value = {{"device", request.device},
             {"deviceFiles", request.deviceFiles},
             {"loadEngine", request.loadEngine},
             {"enginePath", bytesOf(request.enginePath)},
             {"page", request.page},
             {"screen", definitionOf(request.screen).name},
             {"item", request.item},
             {"folderPage", request.folderPage},
             {"isRecorded", request.isRecorded},
             {"wallpaperFile", bytesOf(request.wallpaperFile)},
             {"apps", request.apps},
             {"withoutScreen", request.withoutScreen}};
}

static void from_json(const json& value, ScreenRequest& request) {
    value.at("device").get_to(request.device);
    value.at("deviceFiles").get_to(request.deviceFiles);
    value.at("loadEngine").get_to(request.loadEngine);
    request.enginePath = pathOf(value.at("enginePath"));
    value.at("page").get_to(request.page);
    request.screen = screenKindNamed(value.at("screen").get_ref<const std::string&>())
                         .value_or(ScreenKind::home);
    value.at("item").get_to(request.item);
    value.at("folderPage").get_to(request.folderPage);
    value.at("isRecorded").get_to(request.isRecorded);
    request.wallpaperFile = pathOf(value.at("wallpaperFile"));
    value.at("apps").get_to(request.apps);
    value.at("withoutScreen").get_to(request.withoutScreen);
}

// NOLINTEND(readability-identifier-naming)

// Bytes that are no UTF-8 become U+FFFD.
template <class T>
std::string toJson(const T& value) {
    return json(value).dump(-1, ' ', false, json::error_handler_t::replace);
}

template <class T>
std::optional<T> fromJson(std::string_view text) {
    try {
        T value = json::parse(text).get<T>();
        // The library makes numbers fit, takes an unknown name for the first, and passes over more
        // members: whatever it changed is not what we write.
        return toJson(value) == text ? std::optional(std::move(value)) : std::nullopt;
    } catch (const json::exception&) {
        return std::nullopt;
    }
}

template std::string toJson(const ScreenRequest&);
template std::string toJson(const ScreenAction&);
template std::string toJson(const Question&);
template std::string toJson(const std::vector<Question>&);
template std::string toJson(const ScreenHeader&);
template std::string toJson(const desktop::Problem&);
template std::optional<ScreenRequest> fromJson(std::string_view);
template std::optional<ScreenAction> fromJson(std::string_view);
template std::optional<Question> fromJson(std::string_view);
template std::optional<std::vector<Question>> fromJson(std::string_view);
template std::optional<ScreenHeader> fromJson(std::string_view);
template std::optional<desktop::Problem> fromJson(std::string_view);

}  // namespace velmoranth::simulator
