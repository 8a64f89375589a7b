// An icon of the home screen for tests, the systems' version numbers, and colours to tell images
// apart by.
#pragma once

#include "platform/springboard.h"
#include "tests/support/test_device.h"

#include <string>

namespace velmoranth::tests {

inline constexpr double kiOS12 = 1575.17;
inline constexpr double kiOS13 = 1674.102;

inline constexpr Pixel kRed{255, 0, 0, 255};
inline constexpr Pixel kGreen{0, 255, 0, 255};
inline constexpr Pixel kBlue{0, 0, 255, 255};

// An icon whose three identifiers differ, so that a test sees which was asked for.
struct HomeScreenIcon final : platform::SBApplicationIcon {
    platform::NullableString leaf = "com.leaf";
    platform::NullableString node = "com.node";
    platform::NullableString unique = "com.unique";

    [[nodiscard]] std::string className() const override { return "SBApplicationIcon"; }

    [[nodiscard]] platform::NullableString leafIdentifier() const override { return leaf; }

    [[nodiscard]] platform::NullableString nodeIdentifier() const override { return node; }

    [[nodiscard]] platform::NullableString uniqueIdentifier() const override { return unique; }
};

}  // namespace velmoranth::tests
