// The picture that says that something has been done.
#include "simulator/artwork/blank_picture.h"
#include "simulator/artwork/interface_glyphs.h"
#include "simulator/artwork/toolkit_artwork.h"

namespace velmoranth::simulator {
namespace {

constexpr Ink kPlate{0x1C1C1E, 0.82};
constexpr Ink kMark{0xFFFFFF};
constexpr double kCornerRadius = 11;  // hundredths of the side

}  // namespace

FurniturePicture drawSuccessPlate(double side, double scale) {
    return drawnPicture(side, side, scale, 100, 100, [](Pen& pen) {
        pen.roundRect(0, 0, 100, 100, kCornerRadius).fill(kPlate);
        pen.circle(50, 50, 28).stroke(kMark, 3.5);
        pen.path("M37 51 L46 60.5 L63.5 40.5").stroke(kMark, 5);
    });
}

}  // namespace velmoranth::simulator
