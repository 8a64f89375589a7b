#include "simulator/toolkit/toolkit_objects.h"

#include <array>
#include <cstdio>

namespace velmoranth::simulator {
namespace {

// Printed with the object's address and up to two numbers.
template <class... Numbers>
std::string printed(const char* format, const void* object, Numbers... numbers) {
    std::array<char, 256> text{};
    std::snprintf(text.data(), text.size(), format, object, numbers...);
    return text.data();
}

}  // namespace

std::string LoadedBundle::description() const {
    return "NSBundle <" + path_ + "> (loaded)";
}

std::string TraitCollection::description() const {
    const bool isPad = device_.kind == DeviceKind::pad;
    const double scale = device_.screen.scale;
    // The two releases name the traits differently.
    const char* format = nullptr;
    if (device_.system.major < 13) {
        format = isPad ? "<UITraitCollection: %p; _UITraitNameUserInterfaceIdiom = Pad, "
                         "_UITraitNameDisplayScale = %f>"
                       : "<UITraitCollection: %p; _UITraitNameUserInterfaceIdiom = Phone, "
                         "_UITraitNameDisplayScale = %f>";
    } else {
        format = isPad ? "<UITraitCollection: %p; UserInterfaceIdiom = Pad, DisplayScale = %g, "
                         "UserInterfaceStyle = Light>"
                       : "<UITraitCollection: %p; UserInterfaceIdiom = Phone, DisplayScale = %g, "
                         "UserInterfaceStyle = Light>";
    }
    return printed(format, this, scale);
}

std::string SymbolConfiguration::description() const {
    return printed("<UIImageSymbolConfiguration:%p size=%g>", this, pointSize_);
}

}  // namespace velmoranth::simulator
