// The patterns of --name, for names of pictures.
#pragma once

#include <string_view>

namespace velmoranth::cli {

// Whether the whole name fits. In a pattern * stands for any letters, also none and "/", ? for one,
// [abc] and [a-z] for one of these, [!abc] for one that is not; a backslash takes away the meaning
// of what follows, and what is never closed is a "[". A letter is a code point, and so is a byte
// that is no UTF-8. Time grows with the product of both lengths at most.
[[nodiscard]] bool fitsPattern(std::string_view name, std::string_view pattern);

}  // namespace velmoranth::cli
