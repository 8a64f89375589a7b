// A data provider on Linux: the samples of an image, shared with it.
#pragma once

#include "desktop/image_io/image_io.h"
#include "platform/core_graphics.h"

#include <memory>
#include <string>
#include <utility>

namespace velmoranth::desktop {

class DesktopDataProvider final : public platform::DataProvider {
  public:
    explicit DesktopDataProvider(Samples samples) : samples_(std::move(samples)) {}

    // Nil for nil.
    [[nodiscard]] static platform::DataProviderRef of(Samples samples) {
        return samples == nullptr ? nullptr
                                  : std::make_shared<DesktopDataProvider>(std::move(samples));
    }

    [[nodiscard]] std::string className() const override { return "__NSCFType"; }

    [[nodiscard]] const Samples& samples() const { return samples_; }

  private:
    Samples samples_;
};

// Nil for nil and for a provider of another kind.
[[nodiscard]] inline Samples samplesOf(const platform::DataProviderRef& provider) {
    const auto own = std::dynamic_pointer_cast<DesktopDataProvider>(provider);
    return own == nullptr ? nullptr : own->samples();
}

}  // namespace velmoranth::desktop
