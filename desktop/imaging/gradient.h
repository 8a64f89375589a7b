// A gradient: colours at positions, straight alpha in between.
#pragma once

#include "platform/core_graphics.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::desktop {

class DesktopGradient final : public platform::Gradient {
  public:
    struct Stop {
        double location = 0;  // 0 to 1
        platform::Color color;
    };

    // Nil when the space is indexed, there is no stop, the components do not divide into stops of
    // the space's components and alpha, the locations are not one for each stop, or a number is not
    // finite. Components and locations are clamped to 0..1; stops are ordered by location.
    [[nodiscard]] static std::shared_ptr<DesktopGradient> create(
        platform::ColorSpace space, const std::vector<double>& components,
        const std::optional<std::vector<double>>& locations);

    explicit DesktopGradient(std::vector<Stop> stops) : stops_(std::move(stops)) {}

    [[nodiscard]] std::string className() const override { return "__NSCFType"; }

    // The colour at t; before the first stop and after the last theirs.
    [[nodiscard]] platform::Color colorAt(double t) const;

  private:
    std::vector<Stop> stops_;
};

}  // namespace velmoranth::desktop
