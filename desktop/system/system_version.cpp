#include "desktop/system/system_version.h"

namespace velmoranth::desktop {
namespace {

struct Release {
    SystemVersion version;
    double number;
};

// The values that the public headers of the theos project list (version.h), ascending.
constexpr Release kReleases[] = {
    {{11, 3, 0}, 1452.23},  {{12, 0, 0}, 1556.00},  {{12, 1, 0}, 1560.10},  {{12, 2, 0}, 1570.15},
    {{12, 3, 0}, 1575.13},  {{12, 4, 0}, 1575.17},  {{12, 5, 0}, 1575.23},  {{13, 0, 0}, 1665.15},
    {{13, 1, 0}, 1671.101}, {{13, 2, 0}, 1673.126}, {{13, 3, 0}, 1674.102}, {{13, 4, 0}, 1675.129},
    {{13, 5, 0}, 1676.104}, {{13, 6, 0}, 1677.104}, {{14, 0, 0}, 1751.108},
};

}  // namespace

std::optional<double> coreFoundationVersionNumber(const SystemVersion& version) {
    std::optional<double> number;
    for (const Release& release : kReleases) {
        if (version >= release.version) {
            number = release.number;
        }
    }
    return number;
}

}  // namespace velmoranth::desktop
