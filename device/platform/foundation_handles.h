// Handles of Foundation's objects.
#pragma once

#include "platform/foundation.h"

#include "device/platform/handle.h"

namespace velmoranth::device {

// NSBundle.
class BundleHandle final : public Handle<platform::Bundle> {
  public:
    using Handle::Handle;

    [[nodiscard]] platform::NullableString bundleIdentifier() const override;
};

template <>
struct HandleFor<platform::Bundle> {
    using Type = BundleHandle;
};

}  // namespace velmoranth::device
