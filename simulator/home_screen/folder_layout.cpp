#include "simulator/home_screen/folder_layout.h"

#include <cstddef>

namespace velmoranth::simulator {
namespace {

// Points.
struct FolderMetrics {
    std::size_t columns;
    std::size_t rows;
    double panelSide;
    double panelRadius;
    platform::Point firstIcon;  // in the panel
    double pitchX;
    double pitchY;
    double titleSize;
    double titleAbovePanel;  // its centre
    double dotsAboveBottom;  // their centre
};

// Phone: icons, title and dots after a real 750 × 1334 screenshot of an open folder measured by
// pixel, the panel after a public re-creation of the screen that agrees with it; its radius is an
// estimate. Pad: estimates throughout.
constexpr FolderMetrics kPhone{.columns = 3,
                               .rows = 3,
                               .panelSide = 305,
                               .panelRadius = 38,
                               .firstIcon = {26.5, 26.5},
                               .pitchX = 96,
                               .pitchY = 90,
                               .titleSize = 36,
                               .titleAbovePanel = 61,
                               .dotsAboveBottom = 9};
constexpr FolderMetrics kPad{.columns = 4,
                             .rows = 4,
                             .panelSide = 500,
                             .panelRadius = 38,
                             .firstIcon = {44, 36},
                             .pitchX = 112,
                             .pitchY = 113,
                             .titleSize = 42,
                             .titleAbovePanel = 61,
                             .dotsAboveBottom = 12};

constexpr double kTitleHeightShare = 1.25;

}  // namespace

FolderLayout layoutFolder(const HomeScreenMetrics& metrics, const ScreenDescription& screen,
                          const Folder& folder) {
    const FolderMetrics& own = metrics.kind == DeviceKind::pad ? kPad : kPhone;
    const auto snap = [&](double points) { return snapToPixels(points, screen.scale); };
    FolderLayout layout{.panel = {{snap((screen.width - own.panelSide) / 2),
                                   snap((screen.height - own.panelSide) / 2)},
                                  {own.panelSide, own.panelSide}},
                        .panelRadius = own.panelRadius,
                        .pages = {},
                        .title = {},
                        .titleSize = own.titleSize,
                        .pageDots = {own.panelSide / 2, own.panelSide - own.dotsAboveBottom}};
    // As wide as the screen, so that a long name has room.
    const double titleHeight = snap(own.titleSize * kTitleHeightShare);
    layout.title = {{-layout.panel.origin.x, snap(-own.titleAbovePanel - titleHeight / 2)},
                    {screen.width, titleHeight}};
    const std::size_t perPage = own.columns * own.rows;
    layout.pages.resize(folder.apps.empty() ? 1 : (folder.apps.size() + perPage - 1) / perPage);
    for (std::size_t i = 0; i < folder.apps.size(); ++i) {
        const std::size_t place = i % perPage;
        const std::size_t rowIndex = place / own.columns;
        const auto column = static_cast<double>(place % own.columns);
        const auto row = static_cast<double>(rowIndex);
        // The panel starts at a whole pixel, so what is snapped in it lies on pixels too.
        layout.pages[i / perPage].push_back({{&folder.apps[i], nullptr},
                                             {{snap(own.firstIcon.x + column * own.pitchX),
                                               snap(own.firstIcon.y + row * own.pitchY)},
                                              {metrics.iconSide, metrics.iconSide}}});
    }
    return layout;
}

}  // namespace velmoranth::simulator
