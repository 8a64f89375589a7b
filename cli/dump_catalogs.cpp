#include "cli/dump_catalogs.h"

#include "cli/catalog_input.h"
#include "cli/messages.h"
#include "desktop/catalog_pictures/draw_picture.h"
#include "desktop/plist/property_lists.h"
#include "simulator/screens/stock_pictures.h"

#include "makers/conversion/pictures.h"
#include "makers/skeleton/unlike_pictures.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <tuple>
#include <utility>

namespace velmoranth::cli {

using catalog::Attribute;
using catalog::Catalog;
using catalog::Facet;
using catalog::Rendition;
using desktop::Problem;
using desktop::Result;
using makers::Place;
using simulator::DeviceConfiguration;
using simulator::Question;

namespace {

namespace fs = std::filesystem;

// A theme has no more files.
constexpr std::size_t kMostCatalogNames = 100'000;

// The identifier of the bundle that the folder is, "" when it does not say one.
std::string identifierOfBundle(const std::string& folder) {
    for (const char* const name : {"Info.plist", "Resources/Info.plist", "Contents/Info.plist"}) {
        const auto bytes = makers::readWhole(fs::path(folder) / name);
        const auto list = bytes ? desktop::parsePropertyList(*bytes)
                                : Result<platform::PropertyList>(tl::unexpected(bytes.error()));
        const auto* const values = list ? list->as<platform::Dictionary>() : nullptr;
        const auto found = values == nullptr ? platform::Dictionary::const_iterator()
                                             : values->find("CFBundleIdentifier");
        if (values != nullptr && found != values->end() &&
            found->second.as<std::string>() != nullptr) {
            return *found->second.as<std::string>();
        }
    }
    return {};
}

}  // namespace

Result<DumpCatalog> DumpCatalog::open(const std::string& input) {
    const auto found = findCatalog(input, FileLayout::apart);
    if (!found) {
        return tl::unexpected(found.error());
    }
    if (found->bytes) {
        return tl::unexpected(Problem{"--from takes a file or a folder, not standard input"});
    }
    if (!found->note.empty()) {
        note(found->note);
    }
    auto opened = found->open();
    if (!opened) {
        return tl::unexpected(std::move(opened.error()));
    }
    if (opened->facets().size() > kMostCatalogNames) {
        return tl::unexpected(
            Problem{"it has more than 100,000 names, and no theme has as many files", found->file});
    }
    for (const std::string& warning : opened->warnings()) {
        warn(shown(found->file) + ": " + warning);
    }
    const bool isFolder = fs::is_directory(input);
    return DumpCatalog(input, isFolder ? identifierOfBundle(input) : "", std::move(*opened));
}

std::vector<Question> DumpCatalog::questions() const {
    std::vector<Question> questions;
    for (const Facet& facet : catalog_.facets()) {
        const std::vector<std::size_t> renditions = catalog_.renditionsOf(facet);
        const bool isPicture = std::ranges::any_of(renditions, [&](std::size_t index) {
            return catalog_.renditions()[index].isPicture();
        });
        if (isPicture && !bundle_.empty()) {
            questions.push_back({"image", std::string(facet.name), bundle_});
        }
    }
    return questions;
}

std::string DumpCatalog::whyNothing() const {
    if (bundle_.empty()) {
        return "none of its names is asked for; give the folder of its bundle, with its Info.plist";
    }
    return questions().empty() ? "it has no pictures"
                               : "it has no picture for such a screen that a theme can show";
}

// The best first: those for the kind of device, and of several copies the oldest.
std::vector<const Rendition*> DumpCatalog::renditionsFor(const Facet& facet,
                                                         const DeviceConfiguration& device) const {
    constexpr std::uint16_t kPhone = 1;
    constexpr std::uint16_t kPad = 2;
    constexpr std::uint32_t kPercent = 100;
    const std::uint16_t idiom = device.kind == simulator::DeviceKind::pad ? kPad : kPhone;
    const auto scale = static_cast<std::uint32_t>(std::lround(device.screen.scale)) * kPercent;
    std::vector<const Rendition*> fitting;
    for (const std::size_t index : catalog_.renditionsOf(facet)) {
        const Rendition& rendition = catalog_.renditions()[index];
        const std::uint16_t given = catalog_.attribute(rendition, Attribute::idiom);
        const bool isSize =
            rendition.kind == catalog::Kind::vector || rendition.scalePercent == scale;
        if (rendition.isPicture() && isSize && (given == 0 || given == idiom) &&
            catalog_.attribute(rendition, Attribute::appearance) == 0) {
            fitting.push_back(&rendition);
        }
    }
    const auto rank = [&](const Rendition* rendition) {
        return std::tuple(catalog_.attribute(*rendition, Attribute::idiom) != idiom,
                          rendition->kind == catalog::Kind::vector,
                          catalog_.attribute(*rendition, Attribute::displayGamut),
                          catalog_.attribute(*rendition, Attribute::subtype),
                          catalog_.attribute(*rendition, Attribute::deploymentTarget));
    };
    std::ranges::stable_sort(fitting, {}, rank);
    return fitting;
}

void DumpCatalog::answer(Place& place, const DeviceConfiguration& device) const {
    const std::string_view bundle = simulator::catalogOf(place.question);
    if (bundle.empty() || (!bundle_.empty() && bundle_ != bundle)) {
        return;
    }
    const Facet* const facet = catalog_.facet(place.question.argument);
    if (facet == nullptr) {
        return;
    }
    place.why = "the catalog has no picture of it for such a screen";
    for (const Rendition* const rendition : renditionsFor(*facet, device)) {
        auto drawn = desktop::drawPicture(catalog_, *rendition, device.screen.scale);
        if (!drawn) {
            place.why = drawn.error().message;
            continue;
        }
        place.picture = {.width = drawn->width,
                         .height = drawn->height,
                         .scale = device.screen.scale,
                         .pixels = std::move(drawn->bgra)};
        place.from = input_;
        if (rendition->isTemplate() && place.unlike.empty()) {
            place.unlike = makers::kFilledWithColor;
        }
        place.why.clear();
        return;
    }
}

}  // namespace velmoranth::cli
