#include "makers/lint/answers.h"

#include "makers/conversion/names.h"

#include <algorithm>
#include <utility>

namespace velmoranth::makers {
namespace {

std::string keyOf(const simulator::Question& question) {
    return question.word + '\n' + question.argument + '\n' + question.bundle;
}

}  // namespace

const FileAsked* AskedRequest::opened() const {
    const auto found = std::ranges::find_if(files, &FileAsked::isOpened);
    return found == files.end() ? nullptr : &*found;
}

const FileAsked* AskedRequest::find(const std::string& name) const {
    const auto found = std::ranges::find(files, name, &FileAsked::name);
    return found == files.end() ? nullptr : &*found;
}

void Answers::add(AskedRequest asked) {
    for (const FileAsked& file : asked.files) {
        const bool isPart = asked.kind == RequestKind::part;
        if (file.isOpened()) {
            opened_.insert(file.name);
            if (isPart) {
                parts_.insert(file.name);
            }
            if (asked.kind != RequestKind::unusual) {
                usual_.insert(file.name);
                if (file.isBeside) {
                    // The name without a scale was asked for, and would be opened without this one.
                    const std::string plain = plainName(file.name);
                    opened_.insert(plain);
                    usual_.insert(plain);
                    if (isPart) {
                        parts_.insert(plain);
                    }
                } else {
                    byName_.emplace(asked.kind, file.name);
                }
            }
        } else if (!file.isBeside && asked.kind != RequestKind::unusual) {
            wanted_.insert(file.name);
            if (isPart) {
                wantedParts_.insert(file.name);
            }
        }
    }
    places_.emplace(keyOf(asked.question), asked_.size());
    asked_.push_back(std::move(asked));
}

std::vector<const AskedRequest*> Answers::about(const simulator::Question& question) const {
    std::vector<const AskedRequest*> found;
    const auto [first, last] = places_.equal_range(keyOf(question));
    for (auto place = first; place != last; ++place) {
        found.push_back(&asked_[place->second]);
    }
    return found;
}

}  // namespace velmoranth::makers
