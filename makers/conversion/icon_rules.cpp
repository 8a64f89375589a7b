#include "makers/conversion/icon_rules.h"

#include "makers/conversion/known_apps.h"
#include "makers/conversion/letter_case.h"
#include "makers/conversion/names.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace velmoranth::makers {
namespace {

constexpr std::string_view kIcons = "IconBundles";
constexpr std::string_view kBundles = "Bundles/";
constexpr std::string_view kNamed = "Icons";
constexpr std::string_view kFolders = "Folders/";
constexpr std::string_view kLarge = "-large";

// Where an icon was found: the first is taken before the others, whatever their sizes.
enum class Place { byIdentifier, inBundle, byName };

struct Candidate {
    std::string file;
    PictureName name;  // its base without "-large"
    Place place = Place::byIdentifier;
    bool isLarge = false;
};

// Of a name without scale, device and ending: what speaks against its being an icon's.
Repair whyNoIcon(std::string_view base) {
    const std::string lower = lowerCase(base);
    for (const std::string_view look : {"-dark", "-tinted"}) {
        if (lower.ends_with(look)) {
            return Repair::newerSystem;
        }
    }
    for (const std::string_view leftover : {"-alt", "-old", "-copy", "_old", "_copy"}) {
        if (lower.ends_with(leftover)) {
            return Repair::leftover;
        }
    }
    return base.find(' ') == std::string_view::npos ? Repair::none : Repair::leftover;
}

// The same where a name of an app was expected.
Repair whyNoAppName(std::string_view base) {
    const Repair why = whyNoIcon(base);
    const bool isCopy = identifierOfName(base.substr(0, base.rfind(' '))).has_value();
    return why == Repair::leftover && base.find(' ') != std::string_view::npos && !isCopy
               ? Repair::none
               : why;
}

bool takeLarge(PictureName& name) {
    if (name.base.size() <= kLarge.size() || !name.base.ends_with(kLarge)) {
        return false;
    }
    name.base.resize(name.base.size() - kLarge.size());
    return true;
}

// Scale and device may stand before "-large" too.
PictureName iconName(std::string_view file, bool& isLarge) {
    PictureName name = pictureName(file);
    isLarge = takeLarge(name);
    if (isLarge) {
        const PictureName inner = pictureName(name.base);
        name = {inner.base, std::max(name.scale, inner.scale),
                name.device.empty() ? inner.device : name.device};
    }
    return name;
}

bool isIdentifier(std::string_view base) {
    return base.find('.') != std::string_view::npos || knownIdentifier(base).has_value();
}

// "icon", "Icon-60", "AppIcon60x60", "Icon-Small-50" and so on.
bool isIconKind(std::string_view base) {
    std::string lower = lowerCase(base);
    for (const std::string_view start : {"appicon", "icon"}) {
        if (!lower.starts_with(start)) {
            continue;
        }
        lower.erase(0, start.size());
        for (const std::string_view word : {"-small", "~small"}) {
            if (lower.starts_with(word)) {
                lower.erase(0, word.size());
            }
        }
        return lower.find_first_not_of("0123456789x.-_") == std::string::npos;
    }
    return false;
}

// Of "Folders/NAME.app".
std::optional<std::string_view> identifierOfNamedFolder(std::string_view folder) {
    constexpr std::string_view kApp = ".app";
    if (!folder.starts_with(kFolders) || !folder.ends_with(kApp)) {
        return {};
    }
    folder.remove_prefix(kFolders.size());
    return identifierOfName(folder.substr(0, folder.size() - std::min(folder.size(), kApp.size())));
}

class Icons {
  public:
    explicit Icons(Draft& draft) : draft_(draft) {
        // Some of them are taken on the way.
        std::vector<std::string> files;
        for (const auto& [file, size] : draft.rest()) {
            files.push_back(file);
        }
        isLoose_ = std::ranges::none_of(files, [](const std::string& file) {
            return isThemeFolder(file.substr(0, file.find('/')));
        });
        for (const std::string& file : files) {
            if (isPng(file)) {
                find(file);
            } else if (isLoose_ && folderOf(file).empty() && isOtherPicture(file)) {
                draft_.leaveOut(file, "icons are PNG files; save it as one", Repair::none);
            }
        }
    }

    void make() {
        load();
        std::map<std::string, std::vector<std::string>> spellings;
        for (auto& [identifier, candidates] : candidates_) {
            sort(candidates);
            spellings[lowerCase(identifier)].push_back(identifier);
        }
        for (const auto& [lower, identifiers] : spellings) {
            makeSpellings(identifiers);
        }
    }

  private:
    void find(const std::string& file) {
        const std::string_view folder = folderOf(file);
        if (isFixedAtTop(file)) {
            return;
        }
        Candidate candidate{file, {}, Place::byIdentifier};
        candidate.name = iconName(file, candidate.isLarge);
        if (folder == kIcons || (folder.empty() && isIdentifier(candidate.name.base))) {
            Repair why = whyNoIcon(pictureName(file).base);
            why = why == Repair::none ? whyNoIcon(candidate.name.base) : why;
            if (why != Repair::none) {
                draft_.leaveOut(file, why);
            } else {
                add(candidate.name.base, candidate);
            }
        } else if (folder == kNamed || (folder.empty() && isLoose_)) {
            findNamed(candidate);
        } else if (folder.empty() && identifierOfName(candidate.name.base) && isSquare(file)) {
            findNamed(candidate);
        } else if (folder.starts_with(kBundles)) {
            const std::string_view identifier = folder.substr(kBundles.size());
            if (isApp(identifier) && isIconKind(candidate.name.base)) {
                candidate.place = Place::inBundle;
                add(std::string(identifier), candidate);
            }
        } else if (const auto identifier = identifierOfNamedFolder(folder)) {
            if (isIconKind(candidate.name.base)) {
                candidate.place = Place::inBundle;
                add(std::string(*identifier), candidate);
            }
        }
    }

    void findNamed(Candidate& candidate) {
        const std::string& base = candidate.name.base;
        candidate.place = Place::byName;
        if (const auto identifier = identifierOfName(base)) {
            add(std::string(*identifier), candidate);
        } else if (isIdentifier(base) && whyNoIcon(base) == Repair::none) {
            candidate.place = Place::byIdentifier;
            add(base, candidate);
        } else if (const Repair why = whyNoAppName(base); why != Repair::none) {
            draft_.leaveOut(candidate.file, why);
        } else {
            draft_.leaveOut(candidate.file, "no app of that name is known", Repair::none);
        }
    }

    void add(const std::string& identifier, const Candidate& candidate) {
        candidates_[identifier].push_back(candidate);
    }

    void load() {
        std::vector<std::string> names;
        for (const auto& [identifier, candidates] : candidates_) {
            for (const Candidate& candidate : candidates) {
                names.push_back(candidate.file);
            }
        }
        draft_.pictures().load(names);
    }

    // Of a picture that may be of something else: a screen, say.
    bool isSquare(const std::string& file) const {
        if (draft_.pictures().isByNames()) {
            return false;
        }
        draft_.pictures().load({file});
        const PictureFacts& picture = draft_.pictures().facts(file);
        return picture.isPicture() && picture.isSquare();
    }

    const PictureFacts& facts(const Candidate& candidate) const {
        return draft_.pictures().facts(candidate.file);
    }

    // The one that is taken first. What is no picture is left out.
    void sort(std::vector<Candidate>& candidates) {
        for (const Candidate& candidate : candidates) {
            if (!facts(candidate).isPicture()) {
                draft_.leaveOut(candidate.file, facts(candidate).problem, Repair::noPicture);
            }
        }
        std::erase_if(candidates,
                      [this](const Candidate& candidate) { return !facts(candidate).isPicture(); });
        const auto rank = [this](const Candidate& candidate) {
            const PictureFacts& picture = facts(candidate);
            return std::tuple(candidate.place, !(candidate.isLarge && candidate.name.isPlain()),
                              !picture.isSquare(), ~picture.area(), !candidate.name.device.empty(),
                              -candidate.name.scale, folderOf(candidate.file) != kIcons,
                              candidate.file);
        };
        std::ranges::sort(candidates, {}, rank);
    }

    // The same identifier in several letter cases, of which one may be the app's own.
    void makeSpellings(const std::vector<std::string>& identifiers) {
        const auto known = knownIdentifier(identifiers.front());
        const std::string own(known.value_or(std::string_view()));
        std::string taken;  // the file that the app's own identifier has
        if (std::ranges::find(identifiers, own) != identifiers.end()) {
            taken = makeIcon(own, own);
        }
        for (const std::string& identifier : identifiers) {
            if (identifier == own) {
                continue;
            }
            const std::vector<Candidate>& candidates = candidates_.at(identifier);
            if (known && !candidates.empty() && !taken.empty() &&
                isSame(candidates.front().file, taken)) {
                leaveOut(candidates, "the same picture as " + taken, targetOf(own));
            } else if (known && taken.empty()) {
                taken = makeIcon(identifier, own);
            } else {
                makeIcon(identifier, identifier);
            }
        }
    }

    // Of the best candidate for `identifier`; its file, or "" without one.
    std::string makeIcon(const std::string& identifier, const std::string& targetIdentifier) {
        const std::vector<Candidate>& candidates = candidates_.at(identifier);
        if (candidates.empty()) {
            return {};
        }
        const Candidate& best = candidates.front();
        const PictureFacts& picture = facts(best);
        const std::string target = targetOf(targetIdentifier);
        const bool isLarger = std::max(picture.width, picture.height) > kLongestSide;
        MadeFile made =
            best.file == target ? MadeFile{best.file} : Draft::copied(best.file, Repair::iconName);
        if (isLarger) {
            made.work = Work::shrink;
            made.repairs.push_back(Repair::smallerIcon);
            made.why = "made smaller: " + std::to_string(picture.width) + " × " +
                       std::to_string(picture.height) + " pixels are more than any icon shows";
        }
        draft_.make(target, std::move(made));
        if (best.place != Place::inBundle) {
            draft_.take(best.file);
        }
        std::vector<Candidate> others(candidates.begin() + 1, candidates.end());
        if (best.file == target) {
            std::erase_if(others, [&](const Candidate& other) { return isBeside(other, target); });
        }
        leaveOut(others, best.file + " is taken for the app", target);
        return best.file;
    }

    // Whether screens of its scale take it in the place of the other one, whose name it has.
    static bool isBeside(const Candidate& candidate, const std::string& target) {
        return candidate.name.scale > 1 && candidate.name.device.empty() &&
               candidate.file == target.substr(0, target.size() - std::string_view(".png").size()) +
                                     "@" + std::to_string(candidate.name.scale) + "x.png";
    }

    static std::string targetOf(const std::string& identifier) {
        return std::string(kIcons) + "/" + identifier + std::string(kLarge) + ".png";
    }

    // What lies in a bundle may be asked for by its name as well, so it stays.
    void leaveOut(const std::vector<Candidate>& candidates, const std::string& why,
                  const std::string& wanted) {
        for (const Candidate& candidate : candidates) {
            if (candidate.place != Place::inBundle) {
                draft_.leaveOut(candidate.file, why, Repair::otherIcon, wanted);
            }
        }
    }

    bool isSame(const std::string& a, const std::string& b) const {
        if (draft_.pictures().isByNames()) {
            return false;
        }
        const auto first = draft_.read(a);
        const auto second = draft_.read(b);
        return first && second && *first == *second;
    }

    Draft& draft_;
    bool isLoose_ = false;  // whether it has none of a theme's own folders
    std::map<std::string, std::vector<Candidate>> candidates_;
};

}  // namespace

bool isApp(std::string_view identifier) {
    if (knownIdentifier(identifier)) {
        return true;
    }
    const std::string lower = lowerCase(identifier);
    for (const std::string_view other : {"framework", "bundle", "preferences", "prefs"}) {
        if (lower.ends_with(other)) {
            return false;
        }
    }
    return !lower.starts_with("com.apple.") && lower.find('.') != std::string::npos;
}

bool isNamedForApp(std::string_view file) {
    bool isLarge = false;
    return isPng(file) && !isClutter(file) && identifierOfName(iconName(file, isLarge).base);
}

bool isSurelyIcon(std::string_view file) {
    if (!isPng(file) || isClutter(file)) {
        return false;
    }
    bool isLarge = false;
    const PictureName name = iconName(file, isLarge);
    return whyNoIcon(name.base) == Repair::none &&
           (knownIdentifier(name.base) || std::ranges::count(name.base, '.') >= 2);
}

void moveNamedFolders(Draft& draft) {
    const auto files = draft.rest();
    for (const auto& [file, size] : files) {
        if (!file.starts_with(kFolders)) {
            continue;
        }
        const std::string_view below = std::string_view(file).substr(kFolders.size());
        const std::string_view app = below.substr(0, below.find('/'));
        const auto identifier = identifierOfNamedFolder(std::string(kFolders) + std::string(app));
        if (!identifier || app.size() == below.size()) {
            draft.leaveOut(file, "no app of that name is known", Repair::none);
            continue;
        }
        const std::string target = std::string(kBundles) + std::string(*identifier) +
                                   std::string(below.substr(app.size()));
        if (draft.has(target)) {
            draft.leaveOut(file, target + " is there", Repair::none);
        } else {
            draft.make(target, Draft::copied(file, Repair::appFolder));
            draft.take(file);
        }
    }
}

void makeIcons(Draft& draft) {
    Icons(draft).make();
}

}  // namespace velmoranth::makers
