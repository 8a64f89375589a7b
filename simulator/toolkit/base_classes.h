// The classes that every process with an interface has, whatever it shows: views, and UIImage with
// the icons of apps.
#pragma once

#include "desktop/runtime/runtime.h"
#include "simulator/device.h"
#include "simulator/toolkit/stock_images.h"

namespace velmoranth::simulator {

// What their methods work with. The references outlive every message.
struct BaseObjects {
    desktop::Runtime& runtime;
    StockImages& stockImages;
    double iconSide;     // points, on the home screen
    double screenScale;  // pixels per point
};

// Makes the classes and methods known. Comes before every other class.
void registerBaseClasses(const SystemVersion& system, const BaseObjects& objects);

// The icon's side in points that a format of the platform's icon requests stands for; the home
// screen's for 2 and for every format that is not in the table.
[[nodiscard]] double iconSideOfFormat(int format, double homeScreenIconSide);

// The home screen's format.
inline constexpr int kHomeScreenIconFormat = 2;

}  // namespace velmoranth::simulator
