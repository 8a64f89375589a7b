#include "cli/comparison.h"

#include "desktop/imaging/pixels.h"
#include "desktop/imaging/resampling.h"
#include "desktop/text/text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace velmoranth::cli {
namespace {

// A light ground, and gray that reads well on it without shouting.
constexpr std::uint8_t kGround[4] = {0xF4, 0xF2, 0xF2, 0xFF};  // B, G, R, A
const desktop::TextStyle kCaptionStyle{.weight = desktop::FontWeight::medium,
                                       .size = 12,
                                       .color = {0.43, 0.43, 0.45, 1},
                                       .alignment = desktop::TextAlignment::center};

const desktop::TextStyle kTitleStyle{
    .weight = desktop::FontWeight::semibold, .size = 13, .color = {0.2, 0.2, 0.22, 1}};

// Of text.
std::size_t linesAbove(const CaptionedRow& row) {
    const bool hasCaptions = std::ranges::any_of(
        row.pictures, [](const Captioned& captioned) { return !captioned.caption.empty(); });
    return (row.title.empty() ? 0 : 1) + (hasCaptions ? 1 : 0);
}

std::size_t pixels(double points, double scale) {
    return static_cast<std::size_t>(std::lround(points * scale));
}

void copy(const simulator::Picture& source, const Placed& place, simulator::Picture& target) {
    for (std::size_t row = 0; row < source.height; ++row) {
        std::copy_n(source.pixels.data() + row * source.width * 4, source.width * 4,
                    target.pixels.data() + ((place.y + row) * target.width + place.x) * 4);
    }
}

}  // namespace

Arranged inRows(std::span<const CaptionedRow> rows, double margin) {
    const double scale = rows.front().pictures.front().picture.scale;
    const std::size_t gap = pixels(kComparisonGap, scale);
    const std::size_t caption = pixels(kCaptionHeight, scale);
    const std::size_t around = pixels(margin, scale);
    Arranged arranged;
    simulator::Picture& sheet = arranged.picture;
    sheet.scale = scale;
    for (const CaptionedRow& row : rows) {
        Placed place{.x = around, .y = sheet.height + around + linesAbove(row) * caption};
        for (const Captioned& captioned : row.pictures) {
            place.width = captioned.picture.width;
            place.height = captioned.picture.height;
            sheet.width = std::max(sheet.width, place.x + place.width);
            sheet.height = std::max(sheet.height, place.y + place.height);
            arranged.places.push_back(place);
            place.x += place.width + gap;
        }
    }
    sheet.width += around;
    sheet.height += around;
    sheet.pixels.resize(sheet.width * sheet.height * 4);
    for (std::size_t i = 0; i < sheet.pixels.size(); ++i) {
        sheet.pixels[i] = kGround[i % 4];
    }
    const desktop::MutablePixels memory{sheet.pixels.data(), sheet.width, sheet.height,
                                        sheet.width * 4};
    auto place = arranged.places.begin();
    const auto write = [&](const std::string& text, const desktop::TextStyle& style, std::size_t x,
                           std::size_t y, std::size_t width) {
        if (!text.empty()) {
            desktop::drawText(memory, text, style,
                              {{static_cast<double>(x) / scale, static_cast<double>(y) / scale},
                               {static_cast<double>(width) / scale, kCaptionHeight}},
                              scale);
        }
    };
    for (const CaptionedRow& row : rows) {
        write(row.title, kTitleStyle, place->x, place->y - linesAbove(row) * caption,
              sheet.width - place->x);
        for (const Captioned& captioned : row.pictures) {
            copy(captioned.picture, *place, sheet);
            write(captioned.caption, kCaptionStyle, place->x, place->y - caption, place->width);
            ++place;
        }
    }
    return arranged;
}

simulator::Picture sideBySide(const Captioned& left, const Captioned& right) {
    const CaptionedRow row{.pictures = {left, right}};
    return inRows({&row, 1}).picture;
}

simulator::Picture shrunkToWidth(const simulator::Picture& picture, std::size_t width) {
    simulator::Picture result;
    result.width = width;
    result.height = std::max<std::size_t>(
        1, static_cast<std::size_t>(
               std::lround(static_cast<double>(picture.height) * static_cast<double>(width) /
                           static_cast<double>(picture.width))));
    result.pixels =
        desktop::stretch({picture.pixels.data(), picture.width, picture.height, picture.width * 4},
                         {result.width, result.height});
    return result;
}

}  // namespace velmoranth::cli
