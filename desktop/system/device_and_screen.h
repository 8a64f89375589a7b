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
    explicit DesktopDevice(InterfaceIdiom idiom) : idiom_(idiom) {}

    [[nodiscard]] bool respondsToUserInterfaceIdiom() override { return true; }

    [[nodiscard]] int userInterfaceIdiom() override { return static_cast<int>(idiom_); }

  private:
    InterfaceIdiom idiom_;
};

class DesktopScreen final : public platform::Screen {
  public:
    // Pixels per point: 1, 2 or 3 on the platform's screens.
    explicit DesktopScreen(double scale) : scale_(scale) {}

    [[nodiscard]] double scale() override { return scale_; }

  private:
    double scale_;
};

}  // namespace velmoranth::desktop
