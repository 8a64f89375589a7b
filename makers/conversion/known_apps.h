// The apps that themes are made for: their identifiers in the letter case that they have, and the
// names that the home screen shows.
#pragma once

#include <optional>
#include <string_view>

namespace velmoranth::makers {

// The app's own identifier, for one in whatever letter case; nothing for one that is not known.
[[nodiscard]] std::optional<std::string_view> knownIdentifier(std::string_view identifier);

// The identifier of the app of that English name, in whatever letter case and with whatever stands
// for its blanks, or nothing: "app_store".
[[nodiscard]] std::optional<std::string_view> identifierOfName(std::string_view name);

}  // namespace velmoranth::makers
