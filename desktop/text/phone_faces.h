// The names under which the phone's own faces are known (PostScript, family and full names), for
// iOS 12 and 13, and what each face looks like. phone_faces.cpp is the table.
#pragma once

#include "desktop/text/text.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::desktop {

// The nearest of the faces that the system fonts' packages have.
struct PhoneFace {
    std::string postScriptName;
    std::string family;   // as the phone calls it
    std::string drawnIn;  // a family of TextStyle
    FontWeight weight = FontWeight::regular;
    bool italic = false;
    bool condensed = false;
};

// How a style's words are read, "DemiBoldItalic"; nothing when one of them is unknown.
struct FaceStyle {
    std::string words;     // "Demi Bold Italic"
    std::string spelling;  // the same with the words as they are spelled: "DemiBold Italic"
    FontWeight weight = FontWeight::regular;
    bool italic = false;
    bool condensed = false;
};

[[nodiscard]] std::optional<FaceStyle> faceStyleOf(std::string_view style);

// The faces that a system has, in the order of the table. Versions before 12 are 12, those after 13
// are 13.
[[nodiscard]] const std::vector<PhoneFace>& phoneFaces(int systemVersion);

// Found by its PostScript name, its full name (family and style words: "Avenir Next Demi Bold") or
// its family's, which is that family's most regular face. The spelling counts, case included. Null
// for any other name.
[[nodiscard]] const PhoneFace* phoneFaceNamed(std::string_view name, int systemVersion);

}  // namespace velmoranth::desktop
