// Everything in a theme that will not do what its maker hopes, from what is known of it: its files,
// its pictures, what a conversion would do to it, and what devices have asked for. Nothing here
// knows where an engine looks; a file that something opens is in its place.
#pragma once

#include "makers/conversion/found_themes.h"
#include "makers/conversion/plan.h"
#include "makers/lint/answers.h"
#include "makers/lint/codes.h"
#include "makers/lint/judged_pictures.h"

#include <map>
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
    // The name that a file is missing under, where that is what is wrong.
    std::string wanted = {};
    // Of a conversion: whether what was meant shows afterwards, or the file has no part in it.
    bool isMended = false;
    bool isLeftOut = false;

    [[nodiscard]] const CodeRow& row() const { return *codeNamed(code); }

    friend bool operator==(const Finding&, const Finding&) = default;
};

// With the code's own reason and fix where these are empty.
[[nodiscard]] Finding finding(std::string_view code, std::string file, std::string reason = {},
                              std::string fix = {}, std::string wanted = {});

struct LintedTheme {
    const FoundTheme& theme;                          // its links followed
    const std::map<std::string, std::string>& links;  // as in FollowedTheme
    const std::vector<FoundTheme>& nested;            // folders of it that are themes of their own
    const JudgedPictures& pictures;
    const Plan& plan;
    const Answers& answers;
    // What devices find of parts when those that they have found first are gone.
    const Answers& answersBehind;
};

// By severity, code and file.
[[nodiscard]] std::vector<Finding> findingsIn(const LintedTheme& theme);
void sortFindings(std::vector<Finding>& findings);

// Says of each what the conversion does about it.
void markConverted(std::vector<Finding>& findings, const Plan& plan);

// About Info.plist's text: one that does not parse, with the place where it does not.
[[nodiscard]] std::vector<Finding> listFindings(const FoundTheme& theme, const Plan& plan);

}  // namespace velmoranth::makers
