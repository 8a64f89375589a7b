// The home screen's own classes and methods, as its iOS version has them. What a
// method does here is what the platform does before anything is replaced; methods reach each other
// by messages only.
#pragma once

#include "desktop/runtime/runtime.h"
#include "platform/uikit.h"
#include "simulator/device.h"
#include "simulator/icons.h"
#include "simulator/stock_images.h"

#include <memory>

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
};

// Makes the classes and methods known, after the base classes. `system` decides which.
void registerPlatformClasses(const SystemVersion& system, const PlatformObjects& objects);

}  // namespace velmoranth::simulator
