#include "cli/catalog_selection.h"

#include "cli/arguments.h"
#include "cli/choice.h"
#include "cli/name_pattern.h"
#include "cli/numbers.h"
#include "cli/rendition_attributes.h"
#include "desktop/catalog/pictures.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace velmoranth::cli {

using catalog::Attribute;
using catalog::Catalog;
using catalog::Rendition;

namespace {

template <class Value>
bool isWanted(const std::vector<Value>& wanted, const Value& value) {
    return wanted.empty() || std::ranges::find(wanted, value) != wanted.end();
}

// 0 for none. As the name of its file has it.
int wholeScale(const Catalog& catalog, const Rendition& rendition) {
    return rendition.isPicture()
               ? static_cast<int>(std::trunc(catalog::pictureScale(catalog, rendition)))
               : static_cast<int>(rendition.scalePercent / 100);
}

std::vector<std::string> idiomNames() {
    std::vector<std::string> names;
    for (std::uint16_t number = 0;; ++number) {
        std::string name = catalog::idiomName(number);
        if (name == std::to_string(number)) {
            return names;
        }
        names.push_back(std::move(name));
    }
}

}  // namespace

bool Selection::takesName(std::string_view name) const {
    return names.empty() || std::ranges::any_of(names, [&](const std::string& pattern) {
               return fitsPattern(name, pattern);
           });
}

bool Selection::takes(const Catalog& catalog, const Rendition& rendition) const {
    return isWanted(scales, wholeScale(catalog, rendition)) &&
           isWanted(idioms, catalog.attribute(rendition, Attribute::idiom)) &&
           (appearances.empty() || isWanted(appearances, appearanceWord(catalog, rendition)));
}

desktop::Result<std::uint16_t> idiomNumber(std::string_view name) {
    const std::vector<std::string> names = idiomNames();
    if (const auto found = std::ranges::find(names, name); found != names.end()) {
        return static_cast<std::uint16_t>(found - names.begin());
    }
    if (const auto number = parseInteger(name, 0, std::numeric_limits<std::uint16_t>::max())) {
        return static_cast<std::uint16_t>(*number);
    }
    return misuse(notAmong("--idiom", names, name, "a number"));
}

}  // namespace velmoranth::cli
