// What a person asks a device for by a word: each question is the message that the phone sends in
// such a moment, sent once, in a process that has the class.
#pragma once

#include "simulator/screen_kinds.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::simulator {

struct Question {
    std::string word;      // of questionRows()
    std::string argument;  // "" where the word takes none
    std::string bundle;    // identifier, for an image of a bundle; "" for the toolkit's own

    friend bool operator==(const Question&, const Question&) = default;
};

struct QuestionRow {
    std::string_view word;
    // What stands behind the word: "" for nothing, "a|b" for one of these, otherwise a name for it.
    std::string_view argument;
    std::string_view summary;
    ProcessKind process;
    int firstSystem = 12;  // iOS
};

// In the order in which they are listed to a user.
[[nodiscard]] std::span<const QuestionRow> questionRows();
// Null for a word that no row has.
[[nodiscard]] const QuestionRow* questionRowNamed(std::string_view word);

// Whether an argument fits its row: there, or not, or one of those to choose from.
[[nodiscard]] bool takesArgument(const QuestionRow& row, std::string_view argument);

// What the stock device has for such a question, none twice: its apps, or names of its pictures; of
// that bundle, or of the toolkit's own. Empty where every argument is as good as another, and for a
// row without one.
[[nodiscard]] std::vector<std::string> knownArguments(const QuestionRow& row,
                                                      std::string_view bundle = {});

// The identifiers of the stock device's bundles that images are asked of by name.
[[nodiscard]] std::vector<std::string> knownBundles();

}  // namespace velmoranth::simulator
