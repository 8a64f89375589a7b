// The current device and the main screen, as given.
#pragma once

#include "platform/uikit.h"

namespace velmoranth::desktop {

enum class InterfaceIdiom {
    phone = platform::kUserInterfaceIdiomPhone,
    pad = platform::kUserInterfaceIdiomPad
};

class DesktopDevice final : public platform::Device {
  public:
    // `orientation` as platform::Device has it.
    explicit DesktopDevice(InterfaceIdiom idiom, int orientation = kPortrait)
        : idiom_(idiom), orientation_(orientation) {}

    static constexpr int kPortrait = 1;

    [[nodiscard]] bool respondsToUserInterfaceIdiom() override { return true; }

    [[nodiscard]] int userInterfaceIdiom() override { return static_cast<int>(idiom_); }

    [[nodiscard]] int orientation() override { return orientation_; }

  private:
    InterfaceIdiom idiom_;
    int orientation_;
};

class DesktopScreen final : public platform::Screen {
  public:
    // Pixels per point: 1, 2 or 3 on the platform's screens.
    // `size` in points, as the screen is held.
    explicit DesktopScreen(double scale, platform::Size size = {}) : scale_(scale), size_(size) {}

    [[nodiscard]] double scale() override { return scale_; }

    [[nodiscard]] platform::Rect bounds() override { return {{0, 0}, size_}; }

  private:
    double scale_;
    platform::Size size_;
};

}  // namespace velmoranth::desktop
