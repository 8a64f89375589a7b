#include "cli/choice.h"

#include <algorithm>
#include <cstddef>

namespace velmoranth::cli {

bool hasLetters(std::string_view word) {
    return std::ranges::any_of(
        word, [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); });
}

std::string choicesIn(const std::vector<std::string_view>& choices, std::string_view last) {
    std::vector<std::string_view> all = choices;
    if (!last.empty()) {
        all.push_back(last);
    }
    std::string text;
    for (std::size_t i = 0; i < all.size(); ++i) {
        text.append(i == 0 ? "" : i + 1 == all.size() ? " or " : ", ").append(all[i]);
    }
    return text;
}

}  // namespace velmoranth::cli
