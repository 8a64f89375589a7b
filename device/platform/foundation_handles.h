// Handles of Foundation's objects.
#pragma once

#include "platform/foundation.h"

#include "device/platform/handle.h"

namespace velmoranth::device {

// NSBundle.
template <>
struct HandleFor<platform::Bundle> final : Handle<platform::Bundle, NSBundle> {
    using Handle::Handle;

    [[nodiscard]] platform::NullableString bundleIdentifier() const override;
};

}  // namespace velmoranth::device
