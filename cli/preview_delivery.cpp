#include "cli/preview_delivery.h"

#include "cli/asked_file_json.h"
#include "cli/messages.h"
#include "cli/picture_file.h"
#include "simulator/picture_file.h"
#include "simulator/screen_kinds.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace velmoranth::cli {

using desktop::Result;

namespace {

using Json = nlohmann::ordered_json;

constexpr int kVersion = 1;

std::string nameOf(const simulator::SystemVersion& system) {
    return fmt::format("{}.{}", system.major, system.minor);
}

bool isSideways(const NamedDevice& device) {
    return device.configuration.orientation == simulator::Orientation::landscape;
}

// The file that the picture is compared with.
std::string expectedFile(const PreviewOptions& options, const std::string& file) {
    return options.extent == PreviewExtent::allScreens
               ? std::filesystem::path(options.expected) / std::filesystem::path(file).filename()
               : std::filesystem::path(options.expected);
}

Result<Verdict> judge(const PreviewOptions& options, const simulator::Picture& picture,
                      const std::string& file) {
    Verdict verdict;
    verdict.expected = expectedFile(options, file);
    std::error_code ignored;
    verdict.isThere = std::filesystem::exists(verdict.expected, ignored);
    if (!verdict.isThere) {
        return verdict;
    }
    const auto expected = simulator::readPictureFile(verdict.expected, "an expected one");
    if (!expected) {
        return tl::unexpected(expected.error());
    }
    verdict.deviation = deviationOf(picture, *expected, options.tolerance);
    if (verdict.deviation.isSameSize && !verdict.deviation.isNone()) {
        verdict.difference = differenceFile(file);
        if (auto written = writePicture(differencePicture(picture, *expected, options.tolerance),
                                        verdict.difference);
            !written) {
            return tl::unexpected(std::move(written.error()));
        }
    }
    return verdict;
}

std::string textOf(const Verdict& verdict, const DeliveredPicture& picture) {
    const std::string expected = shown(verdict.expected);
    if (!verdict.isThere) {
        return "nothing to compare with: there is no " + expected;
    }
    const Deviation& deviation = verdict.deviation;
    if (deviation.isNone()) {
        return "as in " + expected +
               (deviation.largest == 0 ? std::string()
                                       : fmt::format(", within {} of 255", deviation.largest));
    }
    return "not as in " + expected + ": " + deviation.text(picture.width, picture.height) +
           (verdict.difference.empty() ? std::string() : ", see " + shown(verdict.difference));
}

Json jsonOf(const ShownScreen& screen) {
    Json json{{"screen", screen.screen},
              {"page", screen.page},
              {"pages", screen.pageCount},
              {"device", screen.device.name},
              {"ios", nameOf(screen.device.configuration.system)},
              {"orientation", isSideways(screen.device) ? "landscape" : "portrait"},
              {"x", screen.place.x},
              {"y", screen.place.y},
              {"width", screen.place.width},
              {"height", screen.place.height},
              {"methods", screen.methods},
              {"files", Json::array()}};
    for (const AskedFile& file : screen.files) {
        json["files"].push_back(jsonOf(file));
    }
    return json;
}

Json jsonOf(const Verdict& verdict, bool isAsExpected) {
    return {{"file", verdict.expected},
            {"isThere", verdict.isThere},
            {"isAsExpected", isAsExpected},
            {"isSameSize", verdict.deviation.isSameSize},
            {"pixels", verdict.deviation.pixels},
            {"largest", verdict.deviation.largest},
            {"difference", verdict.difference.empty() ? Json() : Json(verdict.difference)}};
}

}  // namespace

bool isAsExpected(const DeliveredPicture& picture) {
    return !picture.verdict || (picture.verdict->isThere && picture.verdict->deviation.isNone());
}

ShownScreen shownScreen(const simulator::RenderedScreen& screen, simulator::ScreenKind kind,
                        const NamedDevice& device, const Placed& place) {
    return {.screen = simulator::definitionOf(kind).name,
            .page = screen.page,
            .pageCount = screen.pageCount,
            .device = device,
            .place = place,
            .methods = methodsOf(screen.record),
            .files = askedFiles(screen.record)};
}

Result<DeliveredPicture> deliver(const PreviewOptions& options, const simulator::Picture& picture,
                                 const std::string& file, std::vector<ShownScreen> screens) {
    if (auto written = writePicture(picture, file); !written) {
        return tl::unexpected(std::move(written.error()));
    }
    DeliveredPicture delivered{.file = file,
                               .width = picture.width,
                               .height = picture.height,
                               .screens = std::move(screens),
                               .verdict = {}};
    if (!options.expected.empty()) {
        auto verdict = judge(options, picture, file);
        if (!verdict) {
            return tl::unexpected(std::move(verdict.error()));
        }
        delivered.verdict = std::move(*verdict);
    }
    return delivered;
}

std::string textOf(const DeliveredPicture& picture) {
    std::string text =
        fmt::format("{}: {} × {} pixels, ", shown(picture.file), picture.width, picture.height);
    if (picture.screens.size() == 1) {
        const NamedDevice& device = picture.screens.front().device;
        text += fmt::format("iOS {}, {}{}", nameOf(device.configuration.system), device.name,
                            isSideways(device) ? ", landscape" : "");
    } else {
        text += counted(picture.screens.size(), "screen");
    }
    text += "\n";
    if (picture.verdict) {
        text += shown(picture.file) + ": " + textOf(*picture.verdict, picture) + "\n";
    }
    return text;
}

std::string jsonOf(std::span<const DeliveredPicture> pictures,
                   std::span<const std::string> themes) {
    Json json{{"version", kVersion},
              {"themes", std::vector<std::string>(themes.begin(), themes.end())},
              {"pictures", Json::array()}};
    for (const DeliveredPicture& picture : pictures) {
        Json screens = Json::array();
        for (const ShownScreen& screen : picture.screens) {
            screens.push_back(jsonOf(screen));
        }
        json["pictures"].push_back(
            {{"file", picture.file},
             {"width", picture.width},
             {"height", picture.height},
             {"screens", std::move(screens)},
             {"expected",
              picture.verdict ? jsonOf(*picture.verdict, isAsExpected(picture)) : Json()}});
    }
    // Names are a file system's: bytes that are no UTF-8 become U+FFFD.
    return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

ExitCode tell(const PreviewOptions& options, std::span<const DeliveredPicture> pictures,
              std::span<const std::string> themes) {
    if (options.isJson) {
        print(jsonOf(pictures, themes));
    } else if (!options.writesToStandardOutput()) {
        for (const DeliveredPicture& picture : pictures) {
            print(textOf(picture));
        }
    }
    static_cast<void>(flushResults());
    return std::ranges::all_of(pictures, isAsExpected) ? ExitCode::done : ExitCode::nothingFound;
}

}  // namespace velmoranth::cli
