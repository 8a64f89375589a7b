// Where things lie in an open folder: the panel in the middle of the screen, and in it a grid of
// icons for each page of the folder. Points, snapped to the screen's pixels.
#pragma once

#include "platform/core_graphics.h"
#include "simulator/device.h"
#include "simulator/home_screen/apps.h"
#include "simulator/home_screen/home_screen_layout.h"

#include <vector>

namespace velmoranth::simulator {

struct FolderLayout {
    platform::Rect panel;  // on the screen
    double panelRadius;    // of its continuous corners
    // The rest in the panel.
    std::vector<std::vector<IconSlot>> pages;  // at least one
    platform::Rect title;
    double titleSize;          // of the type
    platform::Point pageDots;  // centre of the page control
};

[[nodiscard]] FolderLayout layoutFolder(const HomeScreenMetrics& metrics,
                                        const ScreenDescription& screen, const Folder& folder);

}  // namespace velmoranth::simulator
