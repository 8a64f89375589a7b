// Versions of the system, and what the platform's framework says of itself on each.
#pragma once

#include <compare>
#include <optional>

namespace velmoranth::desktop {

struct SystemVersion {
    int major = 13;
    int minor = 0;
    int patch = 0;

    friend auto operator<=>(const SystemVersion&, const SystemVersion&) = default;
};

// kCFCoreFoundationVersionNumber of that iOS release; point releases share their minor release's.
// A release between two known ones has the earlier one's; nothing before 11.3, the first known.
[[nodiscard]] std::optional<double> coreFoundationVersionNumber(const SystemVersion& version);

}  // namespace velmoranth::desktop
