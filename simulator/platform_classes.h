// The platform's classes and methods in a home-screen process, as its iOS version has them. What a
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

// Makes the classes and methods known. `system` decides which.
void registerPlatformClasses(const SystemVersion& system, const PlatformObjects& objects);

// The icon's side in points that a format of the platform's icon requests stands for; the home
// screen's for 2 and for every format that is not in the table.
[[nodiscard]] double iconSideOfFormat(int format, double homeScreenIconSide);

// The home screen's format.
inline constexpr int kHomeScreenIconFormat = 2;

}  // namespace velmoranth::simulator
