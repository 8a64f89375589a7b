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
constexpr double kCellHeight = 76;
constexpr double kHeaderHeight = 26;
constexpr double kNameSize = 9;
constexpr double kBundleSize = 7.5;

constexpr platform::Color kPlate{0.91, 0.91, 0.93, 1};
// White clouds are made for it.
constexpr platform::Color kSky{0.36, 0.56, 0.80, 1};

constexpr platform::Color kWallpaper{0.33, 0.38, 0.44, 1};

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

void GalleryScreen::layOutPages() {
    const Rect area = sheetArea(context());
    const double top = area.origin.y;
    const double bottom = top + area.size.height;
    const double columns = std::max(1.0, std::floor(area.size.width / kSmallestCellWidth));
    const double pitch = area.size.width / columns;
    const double inset = (pitch - 2 * kSlotSide - kSlotGap) / 2;

    pages_.emplace_back();
    double y = top;
    double column = 0;
    std::string_view group;
    const auto endRow = [&] {
        y += column > 0 ? kCellHeight : 0;
        column = 0;
    };
    for (const GalleryItem& item : items_.all()) {
        bool needsHeader = item.group != group;
        if (needsHeader || column == columns) {
            endRow();
        }
        const double header = needsHeader ? kHeaderHeight : 0;
        if (column == 0 && y + header + kCellHeight > bottom && y > top) {
            pages_.emplace_back();
            y = top;
            needsHeader = true;
        }
        if (needsHeader) {
            group = item.group;
            pages_.back().headers.push_back({std::string(group), y});
            y += kHeaderHeight;
        }
        const double x = snapToPixels(area.origin.x + column * pitch + inset, context().scale());
        const Rect slot{{x, y + 2}, {kSlotSide, kSlotSide}};
        Rect second = slot;
        second.origin.x += kSlotSide + kSlotGap;
        pages_.back().cells.push_back({&item, slot, second});
        ++column;
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
    const auto show = [&](const ImageRef& image, const Rect& slot) {
        window().addSubview(makeBox(slot, plate, 4));
        window().addSubview(
            makeImage(context().toolkit.tinted(image, colors.text), slot, context().scale()));
    };
    show(own, cell.before);
    show(answered, cell.after);

    const double width = 2 * kSlotSide + kSlotGap;
    const double top = cell.before.origin.y + kSlotSide + 3;
    const TextStyle name{.weight = isReplaced ? FontWeight::semibold : FontWeight::regular,
                         .size = kNameSize,
                         .color = isReplaced ? colors.tint : colors.text,
                         .alignment = TextAlignment::center};
    const TextStyle bundle{
        .size = kBundleSize, .color = colors.secondaryText, .alignment = TextAlignment::center};
    const double left = cell.before.origin.x;
    window().addSubview(makeText(shortenedInTheMiddle(cell.item->name, name, width), name,
                                 {{left, top}, {width, 12}}));
    window().addSubview(makeText(shortenedInTheMiddle(cell.item->bundle, bundle, width), bundle,
                                 {{left, top + 12}, {width, 10}}));
}

}  // namespace velmoranth::simulator
