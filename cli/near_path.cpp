#include "cli/near_path.h"

#include "cli/messages.h"
#include "cli/nearest.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace velmoranth::cli {
namespace {

namespace fs = std::filesystem;

// Of a folder with more nobody has looked at all names, and looking would take its time.
constexpr std::size_t kMostNames = 10000;

std::vector<std::string> namesIn(const fs::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(folder.empty() ? "." : folder, error);
    while (!error && entry != fs::directory_iterator() && names.size() < kMostNames) {
        if (std::string name = entry->path().filename(); isPlainText(name)) {
            names.push_back(std::move(name));
        }
        entry.increment(error);
    }
    std::ranges::sort(names);  // the file system's order is nobody's
    return names;
}

// "Sunset" of "Sunset.theme", which is left away as often as not.
std::string_view withoutEnding(std::string_view name) {
    return name.substr(0, std::min(name.rfind('.'), name.size()));
}

}  // namespace

std::string nearPath(const std::string& path) {
    std::error_code error;
    fs::path wanted(path);
    if (path.empty() || fs::symlink_status(wanted, error).type() != fs::file_type::not_found) {
        return {};
    }
    if (!wanted.has_filename()) {  // slashes at its end
        wanted = wanted.parent_path();
    }
    const std::string name = wanted.filename();
    const std::vector<std::string> names = namesIn(wanted.parent_path());
    const auto isTheSame = [&](const std::string& other) {
        return editDistance(withoutEnding(other), name) == 0;
    };
    std::string near;
    if (const auto same = std::ranges::find_if(names, isTheSame); same != names.end()) {
        near = *same;
    } else if (const auto found =
                   nearestName(name, std::vector<std::string_view>(names.begin(), names.end()))) {
        near = *found;
    }
    return near.empty() ? near : (wanted.parent_path() / near).string();
}

desktop::Problem withNearPath(desktop::Problem problem, std::span<const std::string> given) {
    if (std::ranges::find(given, problem.path) != given.end()) {
        if (const std::string near = nearPath(problem.path); !near.empty()) {
            problem.message += "; did you mean " + shown(near) + "?";
        }
    }
    return problem;
}

}  // namespace velmoranth::cli
