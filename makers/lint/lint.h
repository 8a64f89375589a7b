// Everything in a theme that will not do what its maker hopes, from what is known of it: its files,
// its pictures, what a conversion would do to it, and what devices have asked for. Nothing here
// knows where an engine looks; a file that something opens is in its place.
#pragma once

#include "makers/conversion/found_themes.h"
#include "makers/conversion/plan.h"
#include "makers/lint/answers.h"
#include "makers/lint/codes.h"
#include "makers/lint/judged_pictures.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::makers {

struct Finding {
    std::string_view code;  // of codes()
    std::string file;       // in the theme
    std::string reason;     // a clause; the code's own where this has nothing to add
    std::string fix;        // as a clause; "" for none
    // In a text, from 1; 0 for none.
    int line = 0;
    int column = 0;
    bool isMended = false;  // by a conversion

    [[nodiscard]] const CodeRow& row() const { return *codeNamed(code); }

    friend bool operator==(const Finding&, const Finding&) = default;
};

// With the code's own reason and fix where these are empty.
[[nodiscard]] Finding finding(std::string_view code, std::string file, std::string reason = {},
                              std::string fix = {});

struct LintedTheme {
    const FoundTheme& theme;
    const JudgedPictures& pictures;
    const Plan& plan;
    const Answers& answers;
    // What devices find of parts when those that they have found first are gone.
    const Answers& answersBehind;
};

// By severity, code and file.
[[nodiscard]] std::vector<Finding> findingsIn(const LintedTheme& theme);
void sortFindings(std::vector<Finding>& findings);

// Says of each whether the conversion puts an end to it.
void markMended(std::vector<Finding>& findings, const Plan& plan);

// About Info.plist's text: one that does not parse, with the place where it does not.
[[nodiscard]] std::vector<Finding> listFindings(const FoundTheme& theme, const Plan& plan);

}  // namespace velmoranth::makers
