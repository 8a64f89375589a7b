// What the tests of the replaced methods that give images share: bundles and icons to ask for, and
// what a look-up in the theme A and a redrawing send.
#pragma once

#include "device/library/rows_support.h"
#include "device/standins/core_ui.h"

#include <string>
#include <vector>

namespace velmoranth::standins {

// What an app icon's own image asks for besides.
inline constexpr const char* kAsksForiOS12 =
    "-[NSProcessInfo isOperatingSystemAtLeastVersion:] 12 0 0";

// Where the theme A has an image.
[[nodiscard]] std::string bundleFile(const std::string& identifier, const std::string& name);
[[nodiscard]] std::string looseFile(const std::string& name);
[[nodiscard]] std::string iconFile(const std::string& identifier);
// The same as the path of an image from there: "/Library/Themes/A/…".
[[nodiscard]] std::string themePath(const std::string& file);

// A look-up that finds nothing.
[[nodiscard]] Lines missesInBundle(const std::string& identifier, const std::string& name);
[[nodiscard]] Lines missesLoose(const std::string& name);
// The image of that name, "" for none, is drawn at another size.
[[nodiscard]] Lines redraws(CGSize size, const std::string& image);

// The user changes the theme.
void changeTheme();

// A string that no copy of it is taken for.
[[nodiscard]] NSString* ownString(const char* text, const std::string& name);
// A class of that name that inherits all from `parent`.
[[nodiscard]] Class heirOf(Class parent, const char* name);

// A process whose platform methods each give another image per call.
class ImageRows : public ReplacedMethods {
  protected:
    explicit ImageRows(const SystemVersion& system = kiOS13);

    // The method's next answers are the images, in order, however often it is asked before.
    void answerInTurn(const std::string& method);
    // Which answer that is; -1 for none.
    [[nodiscard]] int answeredBy(id image) const;

    // A bundle of the phone's with that identifier; none at all for null.
    static NSBundle* bundleOf(const char* identifier);
    static SBIcon* iconOf(NSString* identifier);

    // 20 × 10, 21 × 10 and so on.
    std::vector<UIImage*> images;
};

}  // namespace velmoranth::standins
