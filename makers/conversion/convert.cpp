#include "makers/conversion/convert.h"

#include "desktop/plist/text_encoding.h"

#include "makers/conversion/followed_links.h"
#include "makers/conversion/names.h"
#include "makers/conversion/written_themes.h"
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>
#include <utility>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestName = 200;  // bytes of a theme's

// As a folder of a device may be called: plain text without slashes, no dot first.
std::string asThemeName(std::string_view text) {
    std::string name;
    while (!text.empty()) {
        const std::size_t length = desktop::characterLength(text);
        const auto first = static_cast<unsigned char>(text.front());
        const bool isPlain =
            length > 0 && first >= 0x20 && first != 0x7F && first != '/' &&
            !(length == 2 && first == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0);
        name += isPlain ? text.substr(0, length) : "_";
        text.remove_prefix(std::max<std::size_t>(length, 1));
        if (name.size() > kLongestName) {
            break;
        }
    }
    while (name.starts_with('.')) {
        name.erase(0, 1);
    }
    return name.empty() ? "Theme" : name;
}

// A number before ".theme", or at the end.
std::string numbered(const std::string& name, int number) {
    constexpr std::string_view kEnding = ".theme";
    const bool hasEnding = name.ends_with(kEnding);
    return name.substr(0, name.size() - (hasEnding ? kEnding.size() : 0)) + " " +
           std::to_string(number) + std::string(hasEnding ? kEnding : "");
}

// Without what a repository's archive adds to the repository's name.
std::string_view withoutBranch(std::string_view name) {
    for (const std::string_view branch : {"-master", "-main"}) {
        if (name.ends_with(branch) && name.size() > branch.size()) {
            name.remove_suffix(branch.size());
        }
    }
    return name;
}

// Of the theme's folder, or, where that says only what kind of things are in it, of the nearest one
// above that says more, up to the input itself.
std::string nameOfTheme(const ThemeInput& input, const FoundTheme& theme) {
    static constexpr std::array<std::string_view, 6> kKinds{"dist",  "src",     "icons",
                                                            "build", "library", "themes"};
    const auto isKind = [](const std::string& name) {
        return std::ranges::find(kKinds, lowerCase(name)) != kKinds.end();
    };
    // What an archive was unpacked into is called as the archive is.
    const auto isInput = [&](const std::string& folder) {
        return input.isArchive ? folderOf(folder) == input.unpacked->path() : folder == input.path;
    };
    std::string folder = theme.folder;
    while (!input.isPackage && isKind(nameOfFolder(folder)) && !isInput(folder)) {
        folder = folderOf(folder);
    }
    const std::string name = folder == theme.folder ? theme.name : nameOfFolder(folder);
    return std::string(withoutBranch(name));
}

std::string sourceIn(const ThemeInput& input, const FoundTheme& theme) {
    const std::string& top = input.isArchive ? input.unpacked->path() : input.path;
    std::string source = fs::path(theme.folder).lexically_relative(top);
    if (input.isArchive) {
        // The folder that it was unpacked into is none of its own.
        const std::size_t slash = source.find('/');
        source = slash == std::string::npos ? "" : source.substr(slash + 1);
    }
    return source == "." ? "" : source;
}

class Converter {
  public:
    explicit Converter(const Conversion& conversion) : conversion_(conversion) {}

    Result<std::vector<ConvertedTheme>> convert() {
        for (const std::string& path : conversion_.inputs) {
            conversion_.progress("reading " + path);
            auto input = openInput(path, Purpose::convert);
            if (!input) {
                return tl::unexpected(std::move(input.error()));
            }
            if (!input->warning.empty()) {
                conversion_.warned(input->warning);
            }
            inputs_.push_back(std::move(*input));
        }
        for (const ThemeInput& input : inputs_) {
            for (const FoundTheme& theme : input.themes) {
                plan(input, theme);
            }
        }
        bool isAllEmpty = true;
        for (auto& [theme, found] : planned_) {
            if (theme.isEmpty()) {
                continue;
            }
            isAllEmpty = false;
            if (auto checked = checkPlace(theme.name); !checked) {
                return tl::unexpected(std::move(checked.error()));
            }
            theme.replaced = filesReplacedAt(inFolder(conversion_.output, theme.name));
        }
        if (!conversion_.isDryRun && !isAllEmpty) {
            if (auto written = write(); !written) {
                return tl::unexpected(std::move(written.error()));
            }
        }
        std::vector<ConvertedTheme> themes;
        themes.reserve(planned_.size());
        for (Planned& planned : planned_) {
            themes.push_back(std::move(planned.theme));
        }
        return themes;
    }

  private:
    struct Planned {
        ConvertedTheme theme;
        const FoundTheme* found;
    };

    void plan(const ThemeInput& input, const FoundTheme& theme) {
        conversion_.progress("looking at " + theme.name);
        Pictures pictures(theme.folder);
        Plan planned = planTheme(theme, pictures, conversion_.calendar);
        // An archive that is one theme has no folder to name it.
        const bool isNameless = input.isArchive && theme.isTop && !planned.packageName.empty();
        const std::string first =
            asThemeName(isNameless ? planned.packageName : nameOfTheme(input, theme));
        std::string name = first;
        for (int number = 2; !names_.insert(lowerCase(name)).second; ++number) {
            name = numbered(first, number);
        }
        planned_.push_back(
            {{input.path, sourceIn(input, theme), std::move(name), std::move(planned), {}},
             &theme});
    }

    // Where the theme is to go: nothing there, unless it may be replaced, and no input.
    Result<void> checkPlace(const std::string& name) const {
        const std::string path = inFolder(conversion_.output, name);
        std::error_code error;
        const fs::path place = fs::weakly_canonical(path, error);
        for (const ThemeInput& input : inputs_) {
            const fs::path other = fs::canonical(input.path, error);
            if (error) {
                continue;  // it is none that has a place, as what came on standard input
            }
            if (isWithin(place, other) || isWithin(other, place)) {
                return tl::unexpected(Problem{
                    "the theme would be put into an input or in its place; choose another folder",
                    path});
            }
        }
        return checkThemePlace(path, conversion_.replacesThemes);
    }

    static bool isWithin(const fs::path& path, const fs::path& folder) {
        return std::ranges::mismatch(folder, path).in1 == folder.end();
    }

    Result<void> write() const {
        auto written = WrittenThemes::create(conversion_.output);
        if (!written) {
            return tl::unexpected(std::move(written.error()));
        }
        std::size_t all = 0;
        for (const auto& [theme, found] : planned_) {
            all += theme.plan.files.size();
        }
        std::size_t count = 0;
        for (const auto& [theme, found] : planned_) {
            if (theme.isEmpty()) {
                continue;
            }
            auto done = written->write(theme.name, found->folder, theme.plan,
                                       [&] { conversion_.written(++count, all); });
            if (!done) {
                return done;
            }
        }
        return written->place(conversion_.replacesThemes);
    }

    const Conversion& conversion_;
    std::vector<ThemeInput> inputs_;
    std::vector<Planned> planned_;
    std::set<std::string> names_;  // in lower case: not every machine tells cases apart
};

}  // namespace

Result<std::vector<ConvertedTheme>> convertThemes(const Conversion& conversion) {
    return Converter(conversion).convert();
}

bool hasEmptyInput(const std::vector<ConvertedTheme>& themes) {
    return std::ranges::any_of(themes, [&](const ConvertedTheme& empty) {
        return std::ranges::all_of(themes, [&](const ConvertedTheme& theme) {
            return theme.input != empty.input || theme.isEmpty();
        });
    });
}

HiddenPictures hiddenPictures(const FoundTheme& theme) {
    Pictures pictures;
    const SplitTheme split = splitTheme(theme);
    const Plan plan = planTheme(split.own, pictures, {});
    std::set<std::string> names;
    for (const ThemeFile& file : followLinks(split.own).theme.files) {
        names.insert(file.name);
    }
    HiddenPictures hidden;
    // What the loader finds with a scale in its name shows, if only on devices of that scale.
    const auto isFoundWithScale = [&](const std::string& target) {
        const std::size_t end = target.rfind('.');
        return std::ranges::any_of(std::array{"@2x", "@3x"}, [&](const char* scale) {
            return names.contains(target.substr(0, end) + scale + target.substr(end));
        });
    };
    // One picture may come to show in several places; as an icon before others.
    std::map<std::string, bool> isIcon;
    for (const auto& [target, file] : plan.files) {
        const bool isOfOther = std::ranges::find(file.repairs, Repair::similarIcon) !=
                               file.repairs.end();  // which shows itself
        if (!isOfOther && !names.contains(target) && !isFoundWithScale(target)) {
            isIcon[file.origin()] |= target.starts_with("IconBundles/");
        }
    }
    for (const auto& [file, is] : isIcon) {
        if (::access((theme.folder + "/" + file).c_str(), R_OK) == 0 || errno != EACCES) {
            ++(is ? hidden.icons : hidden.others);
        }
    }
    return hidden;
}

}  // namespace velmoranth::makers
