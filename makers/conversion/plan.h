// What a theme becomes: which file is made of which, what is left out, and why. Nothing is written
// here.
#pragma once

#include "platform/foundation.h"

#include "makers/conversion/found_themes.h"
#include "makers/conversion/pictures.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::makers {

// What is done to a file on its way.
enum class Work {
    copy,    // byte for byte
    shrink,  // to kLongestSide
    mask,    // its alpha as a gray mask
    write,   // other bytes altogether
};

struct MadeFile {
    std::string source;  // of the theme
    Work work = Work::copy;
    platform::Data bytes = {};  // of Work::write
    // A line a reason; "" for a file that stays what and where it is.
    std::string why = {};
    // Of the lines, in their order.
    std::vector<Repair> repairs = {};
    // The link of the theme by which the source was found; "" where it was found by its own name.
    std::string link = {};

    // The name in the theme that this is made of.
    [[nodiscard]] const std::string& origin() const { return link.empty() ? source : link; }
};

struct Plan {
    std::map<std::string, MadeFile> files;  // by their names in the new theme
    std::vector<LeftOut> leftOut;
    std::vector<LeftOut> notes;  // about files that come along
    std::string packageName;     // as Info.plist says; "" when it says nothing

    // Whether the theme stays as it is, byte for byte.
    [[nodiscard]] bool changesNothing() const;
};

// A plan while the rules go over it: each takes the files that it is about.
class Draft {
  public:
    Draft(const FoundTheme& theme, Pictures& pictures) : theme_(theme), pictures_(pictures) {
        for (const ThemeFile& file : theme.files) {
            rest_.emplace(file.name, file.size);
        }
    }

    // Whether the theme brings the file, or it is made.
    [[nodiscard]] bool has(const std::string& name) const {
        return rest_.contains(name) || plan_.files.contains(name);
    }

    // The same of any file whose name begins so.
    [[nodiscard]] bool hasAny(std::string_view start) const;

    // The files that no rule has taken yet, with their sizes.
    [[nodiscard]] const std::map<std::string, std::uint64_t>& rest() const { return rest_; }

    [[nodiscard]] Pictures& pictures() const { return pictures_; }

    // The whole file.
    [[nodiscard]] desktop::Result<platform::Data> read(const std::string& name) const {
        return readWhole(theme_.folder + "/" + pictures_.sourceOf(name));
    }

    // The source is not taken by this: it may stay where it is as well.
    void make(const std::string& target, MadeFile file) { plan_.files[target] = std::move(file); }

    // What the file of the new theme is made of.
    [[nodiscard]] MadeFile made(const std::string& target) const {
        const auto found = plan_.files.find(target);
        return found == plan_.files.end() ? MadeFile{target} : found->second;
    }

    // The names so far of those that are made below the folder.
    [[nodiscard]] std::vector<std::string> madeBelow(std::string_view folder) const;

    void take(const std::string& name) { rest_.erase(name); }

    void leaveOut(const std::string& name, std::string why, Repair repair,
                  std::string wanted = {}) {
        rest_.erase(name);
        plan_.leftOut.push_back({name, std::move(why), repair, std::move(wanted)});
    }

    // With the table's own reason.
    void leaveOut(const std::string& name, Repair repair) {
        leaveOut(name, std::string(rowOf(repair).why), repair);
    }

    // Why the file cannot be read; "" where it can be, or nothing is known but its name.
    [[nodiscard]] std::string whyUnreadable(const std::string& name) const;

    // The file as it stands, for the table's own reason.
    static MadeFile copied(const std::string& source, Repair repair) {
        return {source, Work::copy, {}, std::string(rowOf(repair).why), {repair}};
    }

    void note(const std::string& name, std::string why) {
        plan_.notes.push_back({name, std::move(why)});
    }

    void setPackageName(std::string name) { plan_.packageName = std::move(name); }

    // What no rule has taken stays where it is.
    [[nodiscard]] Plan finish() &&;

  private:
    const FoundTheme& theme_;
    Pictures& pictures_;
    std::map<std::string, std::uint64_t> rest_;
    Plan plan_;
};

// `calendar` is what is installed on a device for calendars of which a theme says nothing.
[[nodiscard]] Plan planTheme(const FoundTheme& theme, Pictures& pictures,
                             const platform::Dictionary& calendar);

}  // namespace velmoranth::makers
