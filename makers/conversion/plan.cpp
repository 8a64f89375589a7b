#include "makers/conversion/plan.h"

#include "desktop/files/descriptor.h"

#include "makers/conversion/calendar_list.h"
#include "makers/conversion/followed_links.h"
#include "makers/conversion/icon_rules.h"
#include "makers/conversion/image_rules.h"
#include "makers/conversion/left_out.h"
#include "makers/conversion/letter_case.h"
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <utility>

namespace velmoranth::makers {
namespace {

// What the rules call the files of the theme, and what these are really called.
std::map<std::string, std::string> sourcesOf(const LetterCase& letters,
                                             const FollowedTheme& followed) {
    std::map<std::string, std::string> sources = followed.links;
    for (const auto& [name, given] : letters.sources()) {
        const auto link = followed.links.find(given);
        sources[name] = link == followed.links.end() ? given : link->second;
    }
    return sources;
}

void putFilesForLinks(Plan& plan, const FollowedTheme& followed) {
    for (auto& [target, made] : plan.files) {
        const auto link = followed.links.find(made.source);
        if (link != followed.links.end()) {
            const RepairRow& row = rowOf(Repair::link);
            made.why = std::string(row.why) + (made.why.empty() ? "" : "\n" + made.why);
            made.repairs.insert(made.repairs.begin(), row.repair);
            made.link = std::exchange(made.source, link->second);
        }
    }
}

}  // namespace

bool Plan::changesNothing() const {
    return leftOut.empty() && std::ranges::all_of(files, [](const auto& file) {
               return file.second.work == Work::copy && file.second.source == file.first;
           });
}

bool Draft::hasAny(std::string_view start) const {
    const auto begins = [start](const auto& named) { return named.first.starts_with(start); };
    return std::ranges::any_of(rest_, begins) || std::ranges::any_of(plan_.files, begins);
}

std::string Draft::whyUnreadable(const std::string& name) const {
    const std::string path = theme_.folder + "/" + pictures_.sourceOf(name);
    return pictures_.isByNames() || ::access(path.c_str(), R_OK) == 0
               ? ""
               : desktop::problemOfErrno(errno, path).message;
}

std::vector<std::string> Draft::madeBelow(std::string_view folder) const {
    std::vector<std::string> names;
    for (const auto& [name, file] : plan_.files) {
        if (name.starts_with(folder)) {
            names.push_back(name);
        }
    }
    return names;
}

Plan Draft::finish() && {
    for (const auto& [name, size] : rest_) {
        plan_.files.try_emplace(name, MadeFile{name});
    }
    plan_.leftOut.insert(plan_.leftOut.end(), theme_.leftOut.begin(), theme_.leftOut.end());
    std::ranges::sort(plan_.leftOut, {}, &LeftOut::name);
    std::ranges::sort(plan_.notes, {}, &LeftOut::name);
    return std::move(plan_);
}

Plan planTheme(const FoundTheme& theme, Pictures& pictures, const platform::Dictionary& calendar) {
    const FollowedTheme followed = followLinks(theme);
    const LetterCase letters(followed.theme);
    pictures.setSources(sourcesOf(letters, followed));
    Draft draft(letters.theme(), pictures);
    leaveOutWhatIsNoTheme(draft);
    makeIcons(draft);
    moveNamedFolders(draft);
    makeMasks(draft);
    makeImages(draft);
    makeCalendarList(draft, calendar);
    noteWithoutEffect(draft);
    Plan plan = std::move(draft).finish();
    letters.restore(plan);
    putFilesForLinks(plan, followed);
    return plan;
}

}  // namespace velmoranth::makers
