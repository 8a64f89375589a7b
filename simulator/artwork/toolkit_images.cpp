// The toolkit's own named images: one row an image, drawn in points.
#include "simulator/artwork/blank_picture.h"
#include "simulator/artwork/interface_glyphs.h"
#include "simulator/artwork/toolkit_artwork.h"

#include <array>

namespace velmoranth::simulator {
namespace {

constexpr std::uint32_t kTint = 0x007AFF;
constexpr std::uint32_t kGray = 0x8E8E93;
constexpr std::uint32_t kPaleGray = 0xC7C7CC;
constexpr std::uint32_t kRed = 0xFF3B30;

// A glyph that fills its image.
template <InterfaceGlyph Glyph, int Side>
void filling(Pen& pen, Ink ink) {
    drawMark(pen, Glyph, 0, 0, Side, ink);
}

void backIndicator(Pen& pen, Ink ink) {
    pen.path("M11 2 L2.5 10.5 L11 19").stroke(ink, 2.8);
}

void disclosure(Pen& pen, Ink ink) {
    pen.path("M1.6 1.6 L6.4 6.5 L1.6 11.4").stroke(ink, 2);
}

void grabber(Pen& pen, Ink ink) {
    for (const double y : {0.5, 4.5, 8.5}) {
        pen.roundRect(0, y, 22, 1, 0.5).fill(ink);
    }
}

void selectedRow(Pen& pen, Ink ink) {
    pen.path("M1.5 6.5 L5.3 10.5 L12.5 1.5").stroke(ink, 2);
}

void removeControl(Pen& pen, Ink ink) {
    pen.circle(11, 11, 11).fill(ink);
    pen.line(6, 11, 16, 11).stroke({0xFFFFFF}, 2);
}

struct ToolkitImage {
    std::string_view name;
    double width, height;  // points
    std::uint32_t rgb;
    void (*draw)(Pen& pen, Ink ink);
};

constexpr std::array kImages{
    ToolkitImage{"UIButtonBarSearch", 22, 22, kTint, filling<magnifierMark, 22>},
    ToolkitImage{"UIButtonBarAction", 24, 24, kTint, filling<shareMark, 24>},
    ToolkitImage{"UIButtonBarTrash", 24, 24, kTint, filling<trashMark, 24>},
    ToolkitImage{"UINavigationBarBackIndicatorDefault", 13, 21, kTint, backIndicator},
    ToolkitImage{"UITabBarFavorites", 27, 27, kTint, filling<starMark, 27>},
    ToolkitImage{"UITabBarSearch", 26, 26, kTint, filling<magnifierMark, 26>},
    ToolkitImage{"UITableGrabber", 22, 10, kPaleGray, grabber},
    ToolkitImage{"UITableNext", 8, 13, kPaleGray, disclosure},
    ToolkitImage{"UIPreferencesBlueCheck", 14, 12, kTint, selectedRow},
    ToolkitImage{"UIRemoveControlMinus", 22, 22, kRed, removeControl},
    ToolkitImage{"UISearchFieldIcon", 14, 14, kGray, filling<magnifierMark, 14>},
    ToolkitImage{"UITextFieldClearButton", 16, 16, kPaleGray, filling<crossDiscMark, 16>},
};

constexpr auto kNames = namesOf(kImages);

}  // namespace

FurniturePicture drawToolkitImage(std::string_view name, double scale) {
    const ToolkitImage* image = rowNamed(kImages, name);
    if (image == nullptr) {
        return {};
    }
    return drawnPicture(image->width, image->height, scale, image->width, image->height,
                        [&](Pen& pen) { image->draw(pen, {image->rgb}); });
}

std::span<const std::string_view> toolkitImageNames() {
    return kNames;
}

}  // namespace velmoranth::simulator
