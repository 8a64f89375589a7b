// The letters, small and capital, of what is looked for in a theme. A phone tells them apart.
#pragma once

#include "makers/conversion/found_themes.h"
#include "makers/conversion/plan.h"

#include <map>
#include <string>
#include <string_view>

namespace velmoranth::makers {

// Whether folders of that name are a theme's own, in whatever letters where no other folder would
// be called so.
[[nodiscard]] bool isThemeFolder(std::string_view name);

// Whether it is a picture beside the theme's folders that a device looks for there, in whatever
// letters.
[[nodiscard]] bool isFixedAtTop(const std::string& file);

// The file's name in the letters that are looked for: its folders, a fixed name, scale, device and
// ending. The same name where these are right, or nothing of the kind is looked for.
[[nodiscard]] std::string inLettersLookedFor(const std::string& file);

// The names of a theme's files while rules go over them, in the letters that are looked for. A file
// that has such a name already keeps it, and the other one its own.
class LetterCase {
  public:
    explicit LetterCase(const FoundTheme& theme);

    // The theme with these names.
    [[nodiscard]] const FoundTheme& theme() const { return theme_; }

    // What a file of theme() is really called, of those that have another name.
    [[nodiscard]] const std::map<std::string, std::string>& sources() const { return sources_; }

    // Gives the sources of the theme() that was planned their real names back.
    void restore(Plan& plan) const;

  private:
    FoundTheme theme_;
    std::map<std::string, std::string> sources_;
    std::map<std::string, std::string> spare_;  // real names, and what is there in their place
};

}  // namespace velmoranth::makers
