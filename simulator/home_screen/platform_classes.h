// The home screen's own classes and methods, as its iOS version has them. What a
// method does here is what the platform does before anything is replaced; methods reach each other
// by messages only.
#pragma once

#include "desktop/imaging/images.h"
#include "desktop/runtime/runtime.h"
#include "platform/foundation.h"
#include "platform/uikit.h"
#include "simulator/device.h"
#include "simulator/home_screen/icons.h"
#include "simulator/toolkit/stock_images.h"
#include "simulator/toolkit/toolkit_images.h"

#include <memory>
#include <optional>

namespace velmoranth::simulator {

// What the methods work with. The references outlive every message.
struct PlatformObjects {
    desktop::Runtime& runtime;
    StockImages& stockImages;
    // What icon views ask on iOS 13.
    std::shared_ptr<IconImageCache> iconImageCache;
    double iconSide;     // points, on the home screen
    double pageDotSide;  // points
    double screenScale;  // pixels per point
    const desktop::DesktopImages& images;
    // Where the clock's face lies.
    const ToolkitImages& toolkit;
    platform::Dates& dates;
    // What the hands of the clock show; nothing is the time of the platform's own pictures.
    std::optional<platform::Date> date;
};

// A miniature's side as a share of the folder icon's: 13 points on 60.
inline constexpr double kGridCellShare = 13.0 / 60;

// Makes the classes and methods known, after the base classes. `system` decides which.
void registerPlatformClasses(const SystemVersion& system, const PlatformObjects& objects);

}  // namespace velmoranth::simulator
