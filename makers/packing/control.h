// What a package says of itself: its control fields, given by the maker, found in the theme or made
// up from its name, and checked before a phone's installer has to.
#pragma once

#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::makers {

// A field that a package of a theme may have.
struct ControlField {
    std::string_view name;
    // Empty when it is right, else what a right one is.
    std::string_view (*whyWrong)(std::string_view value);
    // Keys of a theme's Info.plist that say it, the first one that is there counts; the field's own
    // name always does, before them.
    std::string_view keys = {};  // separated by blanks
};

// All of them, in the order in which they are written.
[[nodiscard]] std::span<const ControlField> controlFields();

// The field of that name in any case; nullptr when there is none.
[[nodiscard]] const ControlField* controlField(std::string_view name);

// Names and values, both as written.
using ControlValues = std::vector<std::pair<std::string, std::string>>;

// The fields of the package of a theme: those that are given, then what `info`, the theme's own
// property list, says, then what follows from the theme's folder name. A problem names the field
// that is wrong and says what a right one is; one that comes from the theme names Info.plist.
[[nodiscard]] desktop::Result<ControlValues> controlOf(const ControlValues& given,
                                                       const platform::Dictionary& info,
                                                       const std::string& themeName);

// "" when there is none.
[[nodiscard]] std::string valueOf(const ControlValues& control, std::string_view field);

// As the file says it.
[[nodiscard]] std::string textOf(const ControlValues& control, std::uint64_t installedKibibytes);

}  // namespace velmoranth::makers
