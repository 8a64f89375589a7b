// Themes in any layout that is in circulation become themes that the engine shows.
#pragma once

#include "desktop/result/result.h"
#include "platform/foundation.h"

#include "makers/conversion/plan.h"
#include "makers/conversion/theme_input.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velmoranth::makers {

struct Conversion {
    std::vector<std::string> inputs;
    std::string output;           // the folder that the themes are put into; made when missing
    bool isDryRun = false;        // nothing is written
    bool replacesThemes = false;  // themes of these names in the output give way
    platform::Dictionary calendar = {};  // as planTheme's
    // Told what is being done, a few words.
    std::function<void(const std::string& what)> progress = [](const std::string& /*what*/) {};
    // Told, in a line each, what is odd about inputs.
    std::function<void(const std::string& line)> warned = [](const std::string& /*line*/) {};
    // Told how many of all files are written.
    std::function<void(std::size_t done, std::size_t all)> written = [](std::size_t /*done*/,
                                                                        std::size_t /*all*/) {};
};

struct ConvertedTheme {
    std::string input;   // as the user gave it
    std::string source;  // the theme's folder in it, "" when it is the whole input
    std::string name;    // of its new folder
    Plan plan;
    // How many files the folder has that it takes the place of; nothing when there is none.
    std::optional<std::size_t> replaced = {};

    // Nothing of it comes along, so that it gets no folder.
    [[nodiscard]] bool isEmpty() const { return plan.files.empty(); }
};

// Whether nothing of one of the inputs, or of several, has become a theme.
[[nodiscard]] bool hasEmptyInput(const std::vector<ConvertedTheme>& themes);

// All themes are written beside their places first and then put into them, so that one is there as
// a whole or not at all. Nothing is written when anything is wrong with an input, when the output
// has a theme of the name and it may not be replaced, or when a theme would be put into an input or
// in its place. The inputs stay as they are.
[[nodiscard]] desktop::Result<std::vector<ConvertedTheme>> convertThemes(
    const Conversion& conversion);

// Of how many pictures, lying under names that nothing looks for, convertThemes would make some
// that show; by their names alone, and whether they can be read.
struct HiddenPictures {
    std::size_t icons = 0;
    std::size_t others = 0;

    [[nodiscard]] std::size_t all() const { return icons + others; }
};

[[nodiscard]] HiddenPictures hiddenPictures(const FoundTheme& theme);

}  // namespace velmoranth::makers
