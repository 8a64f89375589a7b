// Every name that a theme can replace: what a device's own tables have to ask for, asked of a
// device whose theme has nothing.
#pragma once

#include "cli/device_options.h"
#include "desktop/imaging/pixels.h"
#include "desktop/result/result.h"
#include "simulator/screens/question_rows.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

struct NameGroup {
    std::string_view name;  // as it is typed
    std::string_view summary;
};

// In the order in which they are listed to a user.
[[nodiscard]] std::span<const NameGroup> nameGroups();

struct ReplaceableName {
    std::string_view group;
    simulator::Question question;
    std::string title = {};  // what a person calls it; "" for nothing else than its name
    std::vector<std::string> files = {};  // of a theme, in the order in which they are looked for
    std::string setting = {};             // that has them looked for; "" where themes alone do
    // The one of them to take: the first but those that have an ending twice. Of parts that keep
    // their own size its sibling for the screen's scale.
    std::string file = {};
    // What fills the place of the device's own picture under that name: of a name for 3 pixels a
    // point, these many. Pixels.
    std::optional<desktop::PixelSize> size =
        {};  // nothing where the device has no picture of its own
};

// Those of the groups, in the device's order, each with a file at least. `progress` may be told now
// and then how many of how many are done.
[[nodiscard]] desktop::Result<std::vector<ReplaceableName>> replaceableNames(
    std::span<const std::string_view> groups, const NamedDevice& device,
    const std::function<void(std::size_t done, std::size_t all)>& progress);

}  // namespace velmoranth::cli
