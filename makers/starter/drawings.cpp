#include "makers/starter/drawings.h"

#include <cmath>

namespace velmoranth::makers {

using simulator::faded;
using simulator::Ink;
using simulator::Pen;

namespace {

constexpr double kIcon = 60;     // points, a phone's icon
constexpr double kPadIcon = 76;  // points

// The colour mixed with another, channel by channel.
std::uint32_t mixed(std::uint32_t color, std::uint32_t other, double share) {
    std::uint32_t result = 0;
    for (const unsigned shift : {0U, 8U, 16U}) {
        const double from = (color >> shift) & 0xFFU;
        const double to = (other >> shift) & 0xFFU;
        result |= static_cast<std::uint32_t>(std::lround(from + (to - from) * share)) << shift;
    }
    return result;
}

void tile(Pen& pen, double side, Ink top, Ink bottom) {
    pen.roundRect(0, 0, side, side, 0).fillGradient(top, bottom, 0, side);
}

void drawOverlay(Pen& pen, double side) {
    constexpr double kRim = 1;
    const double radius = side * kCornerShare;
    pen.roundRect(kRim / 2, kRim / 2, side - kRim, side - kRim, radius - kRim / 2)
        .stroke({0xFFFFFF, 0.35}, kRim);
    pen.save();
    pen.roundRect(0, 0, side, side, radius).clip();
    pen.ellipse(side / 2, -side * 0.35, side * 0.95, side * 0.75).fill({0xFFFFFF, 0.1});
    pen.restore();
}

// Many faint plates, each a little smaller: as soft as a blur.
void drawShadow(Pen& pen, double frame, double icon) {
    constexpr int kPlates = 20;
    constexpr double kDarkness = 0.45;
    const double reach = (frame - icon) / 2;
    const double share = 1 - std::pow(1 - kDarkness, 1.0 / kPlates);
    for (int i = 0; i < kPlates; ++i) {
        const double out = (reach - 3) * (1 - static_cast<double>(i) / kPlates);
        const double side = icon + 2 * out - 4;
        const double start = (frame - side) / 2;
        pen.roundRect(start, start + 3, side, side, icon * kCornerShare + out)
            .fill({0x000000, share});
    }
}

void plate(Pen& pen, double side, const Palette& palette) {
    const double radius = side * kCornerShare;
    pen.roundRect(0, 0, side, side, radius).fill(faded(palette.paper, 0.55));
    pen.roundRect(0.5, 0.5, side - 1, side - 1, radius - 0.5).stroke(faded(palette.paper, 0.6), 1);
}

void dock(Pen& pen, double width, double height, const Palette& palette) {
    constexpr double kRadius = 26;
    pen.roundRect(0, 0, width, height + kRadius, kRadius).fill(faded(palette.paper, 0.5));
    pen.roundRect(0.5, 0.5, width - 1, height + kRadius, kRadius)
        .stroke(faded(palette.paper, 0.6), 1);
}

}  // namespace

Palette::Palette(std::uint32_t rgb) : color{rgb}, deep{mixed(rgb, 0x000000, 0.55)} {}

void compassIcon(Pen& pen, const Palette& palette) {
    tile(pen, kIcon, {mixed(palette.color.rgb, 0xFFFFFF, 0.12)}, palette.color);
    pen.circle(30, 30, 18).stroke(palette.paper, 2.5);
    pen.turnRound(4, 90, 30, 30, [&](int) { pen.line(30, 15.5, 30, 18).stroke(palette.paper, 2); });
    pen.save();
    pen.turn(40, 30, 30);
    pen.path("M 30 17 L 34 30 L 26 30 Z").fill(palette.accent);
    pen.path("M 30 43 L 34 30 L 26 30 Z").fill(palette.paper);
    pen.restore();
}

void calendarIcon(Pen& pen, const Palette& palette) {
    tile(pen, kIcon, palette.paper, palette.paper);
    pen.roundRect(0, 0, kIcon, 19, 0).fill(palette.color);
}

void clockFace(Pen& pen, const Palette& palette) {
    tile(pen, kIcon, {mixed(palette.color.rgb, 0xFFFFFF, 0.12)}, palette.color);
    pen.circle(30, 30, 24).fill(palette.paper);
    pen.turnRound(12, 30, 30, 30, [&](int hour) {
        pen.line(30, 9.5, 30, hour % 3 == 0 ? 12.5 : 10.5)
            .stroke(faded(palette.ink, hour % 3 == 0 ? 1 : 0.5), hour % 3 == 0 ? 1.6 : 1);
    });
}

void overlay(Pen& pen, const Palette& /*palette*/) {
    drawOverlay(pen, kIcon);
}

void padOverlay(Pen& pen, const Palette& /*palette*/) {
    drawOverlay(pen, kPadIcon);
}

void shadow(Pen& pen, const Palette& /*palette*/) {
    drawShadow(pen, 80, kIcon);
}

void padShadow(Pen& pen, const Palette& /*palette*/) {
    drawShadow(pen, 96, kPadIcon);
}

void folderPlate(Pen& pen, const Palette& palette) {
    plate(pen, kIcon, palette);
}

void padFolderPlate(Pen& pen, const Palette& palette) {
    plate(pen, kPadIcon, palette);
}

void folderBackground(Pen& pen, const Palette& palette) {
    pen.roundRect(0, 0, 94, 203, 0)
        .fillGradient(faded(palette.deep, 0.82), faded(palette.deep, 0.92), 0, 203);
}

// It is drawn wider for two digits, so it has no rim that would grow thicker at its sides alone,
// and corners that are round on either.
void badge(Pen& pen, const Palette& palette) {
    pen.roundRect(0.5, 0.5, 23, 23, 8.5)
        .fillGradient({mixed(palette.accent.rgb, 0xFFFFFF, 0.16)}, palette.accent, 0.5, 23.5);
}

void currentDot(Pen& pen, const Palette& palette) {
    pen.circle(4, 4, 3.5).fill(palette.paper);
}

void otherDot(Pen& pen, const Palette& palette) {
    pen.circle(4, 4, 2.75).stroke(faded(palette.paper, 0.8), 1);
}

void searchDot(Pen& pen, const Palette& palette) {
    pen.circle(3.4, 3.4, 2.4).stroke(palette.paper, 1.2);
    pen.line(5.3, 5.3, 7.2, 7.2).stroke(palette.paper, 1.2);
}

void phoneDock(Pen& pen, const Palette& palette) {
    dock(pen, 375, 95, palette);
}

void padDock(Pen& pen, const Palette& palette) {
    dock(pen, 768, 104, palette);
}

void knob(Pen& pen, const Palette& palette) {
    for (int i = 0; i < 6; ++i) {
        pen.circle(25, 26, 15.5 - 0.3 * i).fill({0x000000, 0.03});
    }
    pen.circle(25, 25, 14).fill(palette.paper);
    pen.circle(25, 25, 4).fill(palette.color);
}

void wirelessIcon(Pen& pen, const Palette& palette) {
    tile(pen, 29, {mixed(palette.color.rgb, 0xFFFFFF, 0.12)}, palette.color);
    for (const double radius : {4.5, 9.0, 13.5}) {
        pen.arc(14.5, 21, radius, 225, 315).stroke(palette.paper, 2.2);
    }
    pen.circle(14.5, 21, 1.7).fill(palette.paper);
}

void sun(Pen& pen, const Palette& palette) {
    pen.circle(15, 15, 6.5).fill(palette.accent);
    pen.turnRound(8, 45, 15, 15, [&](int) { pen.line(15, 3, 15, 5.5).stroke(palette.accent, 2); });
}

void chevron(Pen& pen, const Palette& palette) {
    pen.path("M 7 4 L 13 10 L 7 16").stroke(palette.color, 2.2);
}

}  // namespace velmoranth::makers
