#include "simulator/screens/gallery_screen.h"

#include "desktop/text/text.h"
#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/screens/sheet.h"
#include "simulator/toolkit/view_kit.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace velmoranth::simulator {
namespace {

using desktop::FontWeight;
using desktop::TextAlignment;
using desktop::TextStyle;
using platform::ImageRef;
using platform::Rect;

// Points.
constexpr double kSmallestCellWidth = 86;
constexpr double kSlotSide = 38;
constexpr double kSlotGap = 4;
constexpr double kNameLine = 11;
constexpr double kBundleLine = 9.5;
constexpr double kBelowSlot = 3;
constexpr double kBelowCell = 9;
constexpr double kCellWidth = 2 * kSlotSide + kSlotGap;
constexpr double kAboveSlot = 2;
constexpr double kHeaderHeight = 26;
constexpr double kNameSize = 9;
constexpr double kBundleSize = 7.5;

constexpr platform::Color kPlate{0.91, 0.91, 0.93, 1};
// White clouds are made for it.
constexpr platform::Color kSky{0.36, 0.56, 0.80, 1};

constexpr platform::Color kWallpaper{0.33, 0.38, 0.44, 1};

// As wide as it gets: that of what is replaced.
TextStyle nameStyle() {
    return {.weight = FontWeight::semibold, .size = kNameSize, .alignment = TextAlignment::center};
}

TextStyle bundleStyle() {
    return {.size = kBundleSize, .alignment = TextAlignment::center};
}

const platform::Color& colorOf(GalleryPlate plate) {
    switch (plate) {
        case GalleryPlate::sky:
            return kSky;
        case GalleryPlate::wallpaper:
            return kWallpaper;
        case GalleryPlate::light:
            break;
    }
    return kPlate;
}

}  // namespace

GalleryScreen::GalleryScreen(const ScreenContext& context) : AppScreen(context), items_(context) {
    window().setBackgroundColor(appColors(context.device.system).card);
    layOutPages();
}

std::vector<GalleryScreen::Row> GalleryScreen::rowsOf(std::string_view group) const {
    const Rect area = sheetArea(context());
    const double columns = std::max(1.0, std::floor(area.size.width / kSmallestCellWidth));
    const double pitch = area.size.width / columns;
    const double inset = (pitch - kCellWidth) / 2;
    std::vector<Row> rows;
    for (const GalleryItem& item : items_.all()) {
        if (item.group != group) {
            continue;
        }
        if (rows.empty() || static_cast<double>(rows.back().cells.size()) == columns) {
            rows.emplace_back();
        }
        Row& row = rows.back();
        const double x =
            snapToPixels(area.origin.x + static_cast<double>(row.cells.size()) * pitch + inset,
                         context().scale());
        const Rect slot{{x, kAboveSlot}, {kSlotSide, kSlotSide}};
        Rect second = slot;
        second.origin.x += kSlotSide + kSlotGap;
        row.cells.push_back({&item, slot, second, wholeLines(item.name, nameStyle(), kCellWidth),
                             wholeLines(item.bundle, bundleStyle(), kCellWidth)});
        const GalleryCell& cell = row.cells.back();
        row.height = std::max(
            row.height, kAboveSlot + kSlotSide + kBelowSlot +
                            kNameLine * static_cast<double>(cell.name.size()) +
                            kBundleLine * static_cast<double>(cell.bundle.size()) + kBelowCell);
    }
    return rows;
}

void GalleryScreen::layOutPages() {
    const Rect area = sheetArea(context());
    const double bottom = area.origin.y + area.size.height;
    std::vector<std::string_view> groups;
    for (const GalleryItem& item : items_.all()) {
        if (groups.empty() || groups.back() != item.group) {
            groups.push_back(item.group);
        }
    }
    pages_.emplace_back();
    double y = area.origin.y;
    for (const std::string_view group : groups) {
        bool needsHeader = true;
        for (Row& row : rowsOf(group)) {
            const double header = needsHeader ? kHeaderHeight : 0;
            if (y + header + row.height > bottom && y > area.origin.y) {
                pages_.emplace_back();
                y = area.origin.y;
                needsHeader = true;
            }
            if (needsHeader) {
                pages_.back().headers.push_back({std::string(group), y});
                y += kHeaderHeight;
                needsHeader = false;
            }
            for (GalleryCell& cell : row.cells) {
                cell.before.origin.y += y;
                cell.after.origin.y += y;
                pages_.back().cells.push_back(std::move(cell));
            }
            y += row.height;
        }
    }
}

const std::vector<GalleryCell>& GalleryScreen::cells() const {
    return pages_.at(static_cast<std::size_t>(page_ - 1)).cells;
}

void GalleryScreen::showPage(int page) {
    page_ = std::clamp(page, 1, pageCount());
}

void GalleryScreen::layoutViews() {
    for (const platform::ViewRef& view : window().subviews()) {
        view->removeFromSuperview();
    }
    addSheetBar(
        window(),
        {.title = "Gallery", .note = "Before | After", .page = page_, .pageCount = pageCount()},
        context());
    const AppColors& colors = appColors(context().device.system);
    const double width = context().bounds().size.width;
    for (const Header& header : pages_.at(static_cast<std::size_t>(page_ - 1)).headers) {
        window().addSubview(makeText(
            header.title, {.weight = FontWeight::semibold, .size = 13, .color = colors.text},
            {{kSheetMargin + 2, header.top}, {width, kHeaderHeight}}));
    }
    for (const GalleryCell& cell : cells()) {
        addCell(cell);
    }
    AppScreen::layoutViews();
}

void GalleryScreen::addCell(const GalleryCell& cell) {
    const AppColors& colors = appColors(context().device.system);
    const ImageRef own = cell.item->before();
    const ImageRef answered = cell.item->after();
    const bool isReplaced = !samePixels(own, answered);
    const platform::Color& plate = colorOf(cell.item->plate);
    const bool isStretched = cell.item->place.width > 0;
    // Both at one scale, so that one of another size is seen to be that where the screen shows it.
    double share = 1;
    for (const ImageRef& image : {own, answered}) {
        share = image == nullptr || isStretched
                    ? share
                    : std::min(share, shareInSlot(image->size(), cell.before.size));
    }
    const double scale = context().scale();
    const auto show = [&](const ImageRef& image, const Rect& slot) {
        const ImageRef tinted = context().toolkit.tinted(image, colors.text);
        window().addSubview(makeBox(slot, plate, 4));
        window().addSubview(
            isStretched ? makeStretchedImage(tinted, placeInSlot(cell.item->place, slot, scale))
                        : makeImage(tinted, slot, scale, share));
    };
    show(own, cell.before);
    show(answered, cell.after);

    TextStyle name = nameStyle();
    name.weight = isReplaced ? FontWeight::semibold : FontWeight::regular;
    name.color = isReplaced ? colors.tint : colors.text;
    TextStyle bundle = bundleStyle();
    bundle.color = colors.secondaryText;
    const double left = cell.before.origin.x;
    double top = cell.before.origin.y + kSlotSide + kBelowSlot;
    for (const std::string& line : cell.name) {
        window().addSubview(makeText(line, name, {{left, top}, {kCellWidth, kNameLine}}));
        top += kNameLine;
    }
    for (const std::string& line : cell.bundle) {
        window().addSubview(makeText(line, bundle, {{left, top}, {kCellWidth, kBundleLine}}));
        top += kBundleLine;
    }
}

}  // namespace velmoranth::simulator
