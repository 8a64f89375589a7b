// The stock icons: one row an app. A plate of two quiet tones, a breath of light from above, and
// one glyph.
#include "simulator/artwork/artwork.h"
#include "simulator/artwork/blank_picture.h"
#include "simulator/artwork/glyphs.h"
#include "simulator/artwork/toolkit_artwork.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace velmoranth::simulator {
namespace {

struct StockIcon {
    std::string_view bundleIdentifier;
    std::uint32_t top, bottom;
    std::uint32_t glyphColour, detailColour;
    Glyph glyph;
};

constexpr std::array kStockIcons{
    // clang-format off
    StockIcon{"com.apple.mobilecal",       0xFFFFFF, 0xF3F1EE, 0xDB6A5E, 0x59606C, calendarGlyph},
    StockIcon{"com.apple.mobileslideshow", 0xFFFFFF, 0xEFF2F5, 0x5BA2C9, 0xF6C168, pictureGlyph},
    StockIcon{"com.apple.camera",          0x9BA4AF, 0x5A636F, 0xFFFFFF, 0x66707C, cameraGlyph},
    StockIcon{"com.apple.Maps",            0xF4EFE2, 0xE4DAC3, 0x6BA688, 0xDF705F, mapGlyph},
    StockIcon{"com.apple.mobiletimer",     0x4A505E, 0x262A34, 0xFFFFFF, 0xEE8B52, clockGlyph},
    StockIcon{"com.apple.weather",         0x86C3EC, 0x4685C6, 0xFFFFFF, 0xFFD88A, weatherGlyph},
    StockIcon{"com.apple.news",            0xEBA199, 0xC65A62, 0xFFFFFF, 0xCC656A, newspaperGlyph},
    StockIcon{"com.apple.Home",            0xFFF7EC, 0xF8DEBE, 0xE48F48, 0xFCEBD4, houseGlyph},
    StockIcon{"com.apple.stocks",          0x435266, 0x222934, 0x8FDDB0, 0xFFFFFF, chartGlyph},
    StockIcon{"com.apple.reminders",       0xFFFFFF, 0xEFF0F4, 0x6F7B8B, 0xE98B5B, checklistGlyph},
    StockIcon{"com.apple.mobilenotes",     0xFFFBF0, 0xF9EFD2, 0xC9A052, 0xE3AE4A, notepadGlyph},
    StockIcon{"com.apple.VoiceMemos",      0x544C64, 0x2B2636, 0xF4A79F, 0xFFFFFF, waveformGlyph},
    StockIcon{"com.apple.iBooks",          0xF6BE80, 0xD9853F, 0xFFFFFF, 0xE39A58, bookGlyph},
    StockIcon{"com.apple.AppStore",        0x8FACF2, 0x5662C9, 0xFFFFFF, 0x6A7AD6, bagGlyph},
    StockIcon{"com.apple.podcasts",        0xB79DEB, 0x7556BF, 0xFFFFFF, 0x8468CB, microphoneGlyph},
    StockIcon{"com.apple.tv",              0x474C58, 0x1F222A, 0xFFFFFF, 0xFFFFFF, screenGlyph},
    StockIcon{"com.apple.Health",          0xFFFFFF, 0xF6F0F1, 0xE36C80, 0xFFFFFF, heartGlyph},
    StockIcon{"com.apple.Passbook",        0x59677F, 0x2F3850, 0xF5F7FA, 0x3C4762, walletGlyph},
    StockIcon{"com.apple.Preferences",     0xA9B1BC, 0x6A7380, 0xFFFFFF, 0x838C98, gearGlyph},
    StockIcon{"com.apple.calculator",      0x757D8A, 0x3C434F, 0xFFFFFF, 0xF0A05C, calculatorGlyph},
    StockIcon{"com.apple.MobileStore",     0xCBA2E9, 0x8A5DC0, 0xFFFFFF, 0xA97ED4, starGlyph},
    StockIcon{"com.apple.DocumentsApp",    0xF2F8FE, 0xCADFF4, 0x4186CB, 0x4186CB, folderGlyph},
    StockIcon{"com.apple.facetime",        0x68C6B7, 0x2A8E88, 0xFFFFFF, 0x3FA099, videoCameraGlyph},
    StockIcon{"com.apple.MobileAddressBook", 0xD3C7B8, 0xA99A86, 0xFFFFFF, 0xB0A28F, personCardGlyph},
    StockIcon{"com.apple.compass",         0x5E6878, 0x2D3440, 0xFFFFFF, 0xF07F6A, compassGlyph},
    StockIcon{"com.apple.measure",         0x5A626E, 0x2C323B, 0xF5D377, 0x3B424D, rulerGlyph},
    StockIcon{"com.apple.tips",            0xFBE08E, 0xEBB04A, 0xFFFFFF, 0xF3C866, bulbGlyph},
    StockIcon{"com.apple.Bridge",          0x5E7C84, 0x2E444C, 0xFFFFFF, 0x9BE0CF, watchGlyph},
    // The dock's four.
    StockIcon{"com.apple.mobilephone",     0x72C993, 0x328F66, 0xFFFFFF, 0x3F9C72, handsetGlyph},
    StockIcon{"com.apple.mobilesafari",    0x7DBFEE, 0x3274BC, 0xFFFFFF, 0x4E90CF, globeGlyph},
    StockIcon{"com.apple.mobilemail",      0x93BAF3, 0x4773C9, 0xFFFFFF, 0x6793DD, envelopeGlyph},
    StockIcon{"com.apple.MobileSMS",       0xA3D884, 0x58A650, 0xFFFFFF, 0x79BE67, bubbleGlyph},
    StockIcon{"com.apple.Music",           0xF5A58F, 0xD2576B, 0xFFFFFF, 0xE0737A, notesGlyph},
    // Third-party apps: a thing that the app is about, in a colour of ours.
    StockIcon{"com.google.ios.youtube",    0xC98490, 0x8A4256, 0xFFFFFF, 0xA55A6B, playGlyph},
    StockIcon{"com.burbn.instagram",       0xD9B3A5, 0xA8756B, 0xFFFFFF, 0xB98A7D, printsGlyph},
    StockIcon{"com.saurik.Cydia",          0x8FA08E, 0x566A5A, 0xFFFFFF, 0x6F8472, puzzleGlyph},
    StockIcon{"com.netflix.Netflix",       0x75587A, 0x3D2B46, 0xFFFFFF, 0x5A4262, clapperGlyph},
    StockIcon{"com.google.Gmail",          0xE3AC8E, 0xB56F50, 0xFFFFFF, 0xC88565, atSignGlyph},
    StockIcon{"com.google.chrome.ios",     0x8FC3B6, 0x4A877F, 0xFFFFFF, 0x68A297, browserGlyph},
    StockIcon{"com.facebook.Facebook",     0x86A6B8, 0x446878, 0xFFFFFF, 0x638798, peopleGlyph},
    StockIcon{"net.whatsapp.WhatsApp",     0x9CC0A2, 0x55866A, 0xFFFFFF, 0x74A083, twoBubblesGlyph},
    StockIcon{"com.toyopagroup.picaboo",   0xE6BE86, 0xB98446, 0xFFFFFF, 0xCB9C60, boltGlyph},
    StockIcon{"com.google.Maps",           0xA8BFD8, 0x5E7FA6, 0xFFFFFF, 0x7E9CBF, routeGlyph},
    StockIcon{"com.atebits.Tweetie2",      0xB3B5E0, 0x7073B4, 0xFFFFFF, 0x8E91C8, hashGlyph},
    StockIcon{"com.spotify.client",        0x6C7F86, 0x36464E, 0xFFFFFF, 0x4E6068, headphonesGlyph},
    StockIcon{"com.google.Drive",          0xC9B98C, 0x8F7C4C, 0xFFFFFF, 0xA99765, layersGlyph},
    // clang-format on
};

constexpr auto kIdentifiers = [] {
    std::array<std::string_view, kStockIcons.size()> identifiers;
    std::ranges::transform(kStockIcons, identifiers.begin(), &StockIcon::bundleIdentifier);
    return identifiers;
}();

static_assert(
    [] {
        auto sorted = kIdentifiers;
        std::ranges::sort(sorted);
        return std::ranges::adjacent_find(sorted) == sorted.end();
    }(),
    "an identifier has two rows");

const StockIcon* findStockIcon(std::string_view bundleIdentifier) {
    const auto* row =
        std::ranges::find(kStockIcons, bundleIdentifier, &StockIcon::bundleIdentifier);
    return row == kStockIcons.end() ? nullptr : row;
}

void drawPlate(Pen& pen, std::uint32_t top, std::uint32_t bottom) {
    pen.roundRect(-1, -1, 102, 102, 0).fillGradient({top}, {bottom}, 0, 100);
    pen.glow(50, -10, 85, {0xFFFFFF, 0.14});
}

// The first letter or digit of the identifier's last part, as a capital; '\0' when there is none.
char initialOf(std::string_view bundleIdentifier) {
    const std::size_t dot = bundleIdentifier.find_last_of('.');
    const std::string_view name =
        dot == std::string_view::npos ? bundleIdentifier : bundleIdentifier.substr(dot + 1);
    for (const char c : name) {
        if (c >= 'a' && c <= 'z') {
            return static_cast<char>(c - 'a' + 'A');
        }
        if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) {
            return c;
        }
    }
    return '\0';
}

// A square picture in hundredths of its side.
template <typename Draw>
FurniturePicture drawnSquare(double side, double scale, const Draw& draw) {
    return drawnPicture(side, side, scale, 100, 100, draw);
}

// An app's plate with something else than its glyph on it; the app is one of the table's.
template <typename Draw>
FurniturePicture drawOnPlate(std::string_view bundleIdentifier, double side, double scale,
                             const Draw& draw) {
    const StockIcon& icon = *findStockIcon(bundleIdentifier);
    return drawnSquare(side, scale, [&](Pen& pen) {
        drawPlate(pen, icon.top, icon.bottom);
        draw(pen, GlyphInks{{icon.glyphColour}, {icon.detailColour}});
    });
}

}  // namespace

bool hasStockIcon(std::string_view bundleIdentifier) {
    return findStockIcon(bundleIdentifier) != nullptr;
}

std::span<const std::string_view> stockIconIdentifiers() {
    return kIdentifiers;
}

std::vector<std::uint8_t> drawStockIcon(const std::string& bundleIdentifier, int pixels) {
    if (const StockIcon* icon = findStockIcon(bundleIdentifier)) {
        return drawOnPlate(bundleIdentifier, pixels, 1, icon->glyph).bgra;
    }
    return drawnSquare(pixels, 1,
                       [&](Pen& pen) {
                           drawPlate(pen, 0xBFC4CC, 0x8F96A1);
                           letterGlyph(pen, initialOf(bundleIdentifier), {0xFFFFFF});
                       })
        .bgra;
}

std::string stockIconLook(const std::string& bundleIdentifier) {
    // No app's identifier has a space.
    return hasStockIcon(bundleIdentifier) ? bundleIdentifier
                                          : "letter " + std::string(1, initialOf(bundleIdentifier));
}

std::vector<std::uint8_t> drawClockFace(int pixels) {
    return drawClockBackground(pixels, 1).bgra;
}

FurniturePicture drawCalendarBase(double side, double scale) {
    return drawOnPlate("com.apple.mobilecal", side, scale, [](Pen&, const GlyphInks&) {});
}

FurniturePicture drawClockBackground(double side, double scale) {
    return drawOnPlate("com.apple.mobiletimer", side, scale, clockFaceGlyph);
}

FurniturePicture drawClockHands(double side, double scale, int hour, int minute, int second) {
    const StockIcon& icon = *findStockIcon("com.apple.mobiletimer");
    return drawnSquare(side, scale, [&](Pen& pen) {
        clockHands(pen, {{icon.glyphColour}, {icon.detailColour}}, hour, minute, second);
    });
}

FurniturePicture drawClockFace(double side, double scale, int hour, int minute, int second) {
    return drawOnPlate("com.apple.mobiletimer", side, scale, [&](Pen& pen, const GlyphInks& inks) {
        clockFaceGlyph(pen, inks);
        clockHands(pen, inks, hour, minute, second);
    });
}

}  // namespace velmoranth::simulator
