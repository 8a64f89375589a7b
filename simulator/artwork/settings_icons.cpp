// The tiles of the settings' rows: one row a key. A glyph draws in hundredths of the tile, inside a
// live area that reaches from 17 to 83.
#include "simulator/artwork/blank_picture.h"
#include "simulator/artwork/interface_glyphs.h"
#include "simulator/artwork/toolkit_artwork.h"

#include <array>
#include <cstddef>

namespace velmoranth::simulator {
namespace {

constexpr double kSettingsMark = 6;

template <InterfaceGlyph Glyph>
void mark(Pen& pen, Ink ink, Ink /*tile*/) {
    drawMark(pen, Glyph, 16, 16, 68, ink);
}

void plane(Pen& pen, Ink ink, Ink /*tile*/) {
    pen.save();
    pen.turn(90, 50, 50);
    pen.path(
           "M50 13 C54 13 56 18 56 24 V39 L84 57 V64 L56 55 V71 L65 78 V83.5 L50 79.5 L35 83.5 V78 "
           "L44 71 V55 L16 64 V57 L44 39 V24 C44 18 46 13 50 13 Z")
        .fillRounded(ink, 2);
    pen.restore();
}

void bluetooth(Pen& pen, Ink ink, Ink /*tile*/) {
    pen.path("M33 35 L66 64.5 L50 80 V20 L66 35.5 L33 65").stroke(ink, kSettingsMark);
}

void antenna(Pen& pen, Ink ink, Ink /*tile*/) {
    for (const double side : {0.0, 180.0}) {
        for (const double radius : {18.0, 32.0}) {
            pen.arc(50, 40, radius, side - 42, side + 42).stroke(ink, kSettingsMark);
        }
    }
    pen.circle(50, 40, 7.5).fill(ink);
    pen.line(50, 40, 50, 82).stroke(ink, kSettingsMark);
}

void framedDot(Pen& pen, Ink ink, Ink /*tile*/) {
    pen.path("M52 27 H32 Q23 27 23 36 V70 Q23 79 32 79 H66 Q75 79 75 70 V50")
        .stroke(ink, kSettingsMark);
    pen.circle(72, 29, 12.5).fill(ink);
}

void speaker(Pen& pen, Ink ink, Ink /*tile*/) {
    pen.path("M20 42 H31 L46 28 V72 L31 58 H20 Z").fillRounded(ink, 5);
    pen.arc(49, 50, 13, -42, 42).stroke(ink, kSettingsMark);
    pen.arc(49, 50, 28, -45, 45).stroke(ink, kSettingsMark);
}

void hourglass(Pen& pen, Ink ink, Ink /*tile*/) {
    pen.line(29, 19, 71, 19).line(29, 81, 71, 81).stroke(ink, kSettingsMark);
    pen.path("M34 20 V29 C34 40 46 43 46 50 C46 57 34 60 34 71 V80").stroke(ink, 5);
    pen.path("M66 20 V29 C66 40 54 43 54 50 C54 57 66 60 66 71 V80").stroke(ink, 5);
    pen.path("M39 32 H61 C59 39 51 41 50 46 C49 41 41 39 39 32 Z").fill(ink);
    pen.path("M38 78 C39 69 47 68 50 62 C53 68 61 69 62 78 Z").fill(ink);
}

void toggles(Pen& pen, Ink ink, Ink tile) {
    pen.roundRect(18, 23, 64, 24, 12).fill(ink);
    pen.circle(70, 35, 8).fill(tile);
    pen.roundRect(20.5, 55.5, 59, 19, 9.5).stroke(ink, 5);
    pen.circle(31, 65, 6.5).fill(ink);
}

void brightness(Pen& pen, Ink ink, Ink /*tile*/) {
    pen.circle(50, 50, 15).fill(ink);
    pen.turnRound(8, 45, 50, 50,
                  [&](int) { pen.line(50, 18.5, 50, 26).stroke(ink, kSettingsMark); });
}

void blossom(Pen& pen, Ink ink, Ink tile) {
    pen.turnRound(6, 60, 50, 50, [&](int) { pen.ellipse(50, 31, 10.5, 14).fill(ink); });
    pen.circle(50, 50, 12.5).fill(tile);
    pen.circle(50, 50, 8.5).fill(ink);
}

void battery(Pen& pen, Ink ink, Ink /*tile*/) {
    pen.roundRect(16, 34, 60, 32, 9).stroke(ink, 5);
    pen.roundRect(21.5, 39.5, 40, 21, 4).fill(ink);
    pen.path("M81.5 44 C86.5 46 86.5 54 81.5 56 Z").fill(ink);
}

void padlock(Pen& pen, Ink ink, Ink tile) {
    pen.path("M35 48 V36 C35 16 65 16 65 36 V48").stroke(ink, 7);
    pen.roundRect(25, 45, 50, 37, 8).fill(ink);
    pen.circle(50, 60, 5.2).fill(tile);
    pen.line(50, 61, 50, 70).stroke(tile, 5);
}

void pinwheel(Pen& pen, Ink /*ink*/, Ink /*tile*/) {
    constexpr std::array<std::uint32_t, 8> kPetals{0xF5A04C, 0xEFCB52, 0xB7CE62, 0x72BC82,
                                                   0x62A9CC, 0x8189C8, 0xB37FBE, 0xE06A66};
    pen.turnRound(8, 45, 50, 50, [&](int i) {
        pen.roundRect(40.5, 14, 19, 33, 9.5).fill({kPetals.at(static_cast<std::size_t>(i)), 0.86});
    });
}

struct SettingsIcon {
    std::string_view name;
    std::uint32_t tile;
    void (*draw)(Pen& pen, Ink ink, Ink tile);
};

constexpr std::array kIcons{
    SettingsIcon{"AirplaneMode", 0xFF9500, plane},
    SettingsIcon{"WiFi", 0x007AFF, mark<wifiMark>},
    SettingsIcon{"Bluetooth", 0x0A6CE0, bluetooth},
    SettingsIcon{"Cellular", 0x4CD964, antenna},
    SettingsIcon{"Notifications", 0xFF3B30, framedDot},
    SettingsIcon{"Sounds", 0xFF2D55, speaker},
    SettingsIcon{"DoNotDisturb", 0x5856D6, mark<moonMark>},
    SettingsIcon{"ScreenTime", 0x6A5FC9, hourglass},
    SettingsIcon{"General", 0x8E8E93, mark<gearMark>},
    SettingsIcon{"ControlCenter", 0x7D7D83, toggles},
    SettingsIcon{"DisplayBrightness", 0x2F86F6, brightness},
    SettingsIcon{"Wallpaper", 0x38B6D9, blossom},
    SettingsIcon{"Battery", 0x52C75F, battery},
    SettingsIcon{"Privacy", 0x3478F6, padlock},
    SettingsIcon{"PhotosAndCamera", 0xFAFAFC, pinwheel},
};

constexpr auto kSettingsIconNames = namesOf(kIcons);

}  // namespace

FurniturePicture drawSettingsIcon(std::string_view key, double scale) {
    const SettingsIcon* icon = rowNamed(kIcons, key);
    if (icon == nullptr) {
        return {};
    }
    FurniturePicture picture =
        drawnPicture(kSettingsIconSide, kSettingsIconSide, scale, 100, 100, [&](Pen& pen) {
            pen.roundRect(-1, -1, 102, 102, 0).fill({icon->tile});
            icon->draw(pen, {0xFFFFFF}, {icon->tile});
        });
    applyIconShape(picture.bgra, picture.widthPixels);
    return picture;
}

std::span<const std::string_view> settingsIconNames() {
    return kSettingsIconNames;
}

}  // namespace velmoranth::simulator
