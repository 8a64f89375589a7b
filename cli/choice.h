// A word that has to be one of several: the one way in which every option that takes a choice says
// what there is, and which of these was meant.
#pragma once

#include "cli/messages.h"
#include "cli/nearest.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// "a, b or c"; "" of none. `last` goes behind them as one more: "a, b or a number".
[[nodiscard]] std::string choicesIn(const std::vector<std::string_view>& choices,
                                    std::string_view last = "");

// Whether there are letters in it.
[[nodiscard]] bool hasLetters(std::string_view word);

// "--screen takes home, folder or pressed, not "hme"; did you mean home?" `taker` is what the word
// was given to. The choices are any range of texts. Numbers are not taken for typing mistakes.
template <class Choices>
[[nodiscard]] std::string notAmong(std::string_view taker, const Choices& choices,
                                   std::string_view word, std::string_view last = "") {
    const std::vector<std::string_view> texts(choices.begin(), choices.end());
    return std::string(taker) + " takes " + choicesIn(texts, last) + ", not " + inQuotes(word) +
           (hasLetters(word) ? suggestion(word, texts) : "");
}

}  // namespace velmoranth::cli
