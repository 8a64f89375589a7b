// What the starter's pictures show. Each draws in points, from (0, 0) to the picture's size.
// Private to the folder.
#pragma once

#include "simulator/artwork/pen.h"

#include <cstdint>

namespace velmoranth::makers {

// Corner radius of the icons as a share of their side, rounder than the platform's own: the mask
// cuts it and the other pictures keep to it.
inline constexpr double kCornerShare = 0.32;

// The colours that go with the maker's.
struct Palette {
    explicit Palette(std::uint32_t color);

    simulator::Ink color;  // the maker's own
    simulator::Ink deep;   // darker, behind everything
    simulator::Ink paper{0xFAF6EE};
    simulator::Ink ink{0x2B2A28};     // text and lines on paper
    simulator::Ink accent{0xE2603F};  // what calls for attention
};

using Drawing = void (*)(simulator::Pen& pen, const Palette& palette);

void compassIcon(simulator::Pen& pen, const Palette& palette);       // 60 x 60
void calendarIcon(simulator::Pen& pen, const Palette& palette);      // 60 x 60
void clockFace(simulator::Pen& pen, const Palette& palette);         // 60 x 60
void overlay(simulator::Pen& pen, const Palette& palette);           // 60 x 60
void padOverlay(simulator::Pen& pen, const Palette& palette);        // 76 x 76
void shadow(simulator::Pen& pen, const Palette& palette);            // 80 x 80
void padShadow(simulator::Pen& pen, const Palette& palette);         // 96 x 96
void folderPlate(simulator::Pen& pen, const Palette& palette);       // 60 x 60
void padFolderPlate(simulator::Pen& pen, const Palette& palette);    // 76 x 76
void folderBackground(simulator::Pen& pen, const Palette& palette);  // 94 x 203
void badge(simulator::Pen& pen, const Palette& palette);             // 24 x 24
void currentDot(simulator::Pen& pen, const Palette& palette);        // 8 x 8
void otherDot(simulator::Pen& pen, const Palette& palette);          // 8 x 8
void searchDot(simulator::Pen& pen, const Palette& palette);         // 8 x 8
void phoneDock(simulator::Pen& pen, const Palette& palette);         // 375 x 95
void padDock(simulator::Pen& pen, const Palette& palette);           // 768 x 104
void knob(simulator::Pen& pen, const Palette& palette);              // 50 x 50
void wirelessIcon(simulator::Pen& pen, const Palette& palette);      // 29 x 29
void sun(simulator::Pen& pen, const Palette& palette);               // 30 x 30
void chevron(simulator::Pen& pen, const Palette& palette);           // 20 x 20

}  // namespace velmoranth::makers
