#include "cli/arguments.h"

namespace velmoranth::cli {

const std::vector<std::string>& Arguments::values(std::string_view name) const {
    static const std::vector<std::string> kNone;
    const auto found = options_.find(name);
    return found == options_.end() ? kNone : found->second;
}

std::optional<std::string> Arguments::value(std::string_view name) const {
    const std::vector<std::string>& all = values(name);
    return all.empty() ? std::nullopt : std::optional<std::string>(all.front());
}

}  // namespace velmoranth::cli
