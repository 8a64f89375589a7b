#include "makers/conversion/plan.h"

#include "makers/conversion/calendar_list.h"
#include "makers/conversion/icon_rules.h"
#include "makers/conversion/image_rules.h"
#include "makers/conversion/left_out.h"
#include "makers/conversion/letter_case.h"

#include <algorithm>
#include <utility>

namespace velmoranth::makers {

bool Plan::changesNothing() const {
    return leftOut.empty() && std::ranges::all_of(files, [](const auto& file) {
               return file.second.work == Work::copy && file.second.source == file.first;
           });
}

bool Draft::hasAny(std::string_view start) const {
    const auto begins = [start](const auto& named) { return named.first.starts_with(start); };
    return std::ranges::any_of(rest_, begins) || std::ranges::any_of(plan_.files, begins);
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
    const LetterCase letters(theme);
    pictures.setSources(letters.sources());
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
    return plan;
}

}  // namespace velmoranth::makers
