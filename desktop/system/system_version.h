// A version of the system.
#pragma once

#include <compare>

namespace velmoranth::desktop {

struct SystemVersion {
    int major = 13;
    int minor = 0;
    int patch = 0;

    friend auto operator<=>(const SystemVersion&, const SystemVersion&) = default;
};

}  // namespace velmoranth::desktop
