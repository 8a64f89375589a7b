#include "makers/conversion/left_out.h"

#include "makers/conversion/names.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::makers {
namespace {

struct Ending {
    std::string_view ending;
    std::string_view why;
};

constexpr std::array<Ending, 11> kEndings{{
    {".strings", "texts are not themed"},
    {".psd", "the maker's own file, not a picture that is read"},
    {".ai", "the maker's own file, not a picture that is read"},
    {".sketch", "the maker's own file, not a picture that is read"},
    {".xcf", "the maker's own file, not a picture that is read"},
    {".sh", "a script, which no theme runs"},
    {".py", "a script, which no theme runs"},
    {".js", "a script, which no theme runs"},
    {".command", "a script, which no theme runs"},
    {".bat", "a script, which no theme runs"},
    {".scpt", "a script, which no theme runs"},
}};

struct Reason {
    std::string_view why;
    Repair repair = Repair::none;
};

Reason reasonToLeaveOut(const std::string& name, std::uint64_t size) {
    if (isClutter(name)) {
        return {rowOf(Repair::clutter).why, Repair::clutter};
    }
    const std::string lower = lowerCase(name);
    for (const Ending& row : kEndings) {
        if (lower.ends_with(row.ending)) {
            return {row.why, Repair::noThemeFile};
        }
    }
    if (isPng(name) && size == 0) {
        return {"the file is empty", Repair::noPicture};
    }
    if (folderOf(name).empty()) {
        if (lower.starts_with("wallpaper") || lower.starts_with("lockbackground")) {
            return {"wallpapers are not themed", Repair::noThemeFile};
        }
        if (name == "Icon.png") {
            return {"the theme's own icon, which no phone shows", Repair::noThemeFile};
        }
    }
    return {};
}

std::string_view whyWithoutEffect(std::string_view name) {
    const std::string lower = lowerCase(name);
    if (name.starts_with("Fonts/") && (lower.ends_with(".ttf") || lower.ends_with(".otf"))) {
        return "has no effect until it is installed on the phone by hand";
    }
    if (name.starts_with("UISounds/") && !lower.ends_with(".caf")) {
        return "has no effect: only .caf files are asked for";
    }
    if (name.starts_with("AnemoneEffects/") && (lower.find("underlay") != std::string::npos ||
                                                lower.find("springboard") != std::string::npos)) {
        return "has no effect: nothing looks for it";
    }
    return {};
}

}  // namespace

std::string_view whyLeftOut(const std::string& name, std::uint64_t size) {
    return reasonToLeaveOut(name, size).why;
}

void leaveOutWhatIsNoTheme(Draft& draft) {
    const auto files = draft.rest();
    for (const auto& [name, size] : files) {
        if (const Reason reason = reasonToLeaveOut(name, size); !reason.why.empty()) {
            draft.leaveOut(name, std::string(reason.why), reason.repair);
        } else if (const std::string why = draft.whyUnreadable(name); !why.empty()) {
            draft.leaveOut(name, "it cannot be read: " + why, Repair::unreadable);
        }
    }
}

void noteWithoutEffect(Draft& draft) {
    const bool hasFace = std::ranges::any_of(
        std::array{"com.apple.SpringBoardHome", "com.apple.springboard"}, [&](const char* bundle) {
            return draft.hasAny("Bundles/" + std::string(bundle) + "/ClockIconBackgroundSquare");
        });
    if (draft.has(kClockIcon) && !hasFace) {
        draft.note(kClockIcon,
                   "has no effect on iOS 13, which draws the clock upon a face of its own");
    }
    for (const auto& [name, size] : draft.rest()) {
        if (const std::string_view why = whyWithoutEffect(name); !why.empty()) {
            draft.note(name, std::string(why));
        }
    }
}

}  // namespace velmoranth::makers
