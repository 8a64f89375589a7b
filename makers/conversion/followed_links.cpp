#include "makers/conversion/followed_links.h"

#include "makers/archives/unpack.h"
#include "makers/conversion/names.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace velmoranth::makers {
namespace {

namespace fs = std::filesystem;

// As many as a device follows to find one file.
constexpr int kMostLinks = 40;
constexpr ArchiveLimits kMostAll;

constexpr const char* kLeadsOut = "a link that leads out of the theme";
constexpr const char* kLeadsNowhere = "a link that leads nowhere";
constexpr const char* kLoop = "a link that leads back to itself";

using Parts = std::deque<std::string>;

Parts partsOf(std::string_view path) {
    Parts parts;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        if (const std::string_view part = path.substr(0, end); !part.empty() && part != ".") {
            parts.emplace_back(part);
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return parts;
}

class Follower {
  public:
    explicit Follower(const FoundTheme& theme)
        : place_(partsOf("Library/Themes/" + theme.name)), followed_{theme, {}} {
        for (const ThemeFile& file : theme.files) {
            sizes_.emplace(file.name, file.size);
            addFoldersOf(file.name);
        }
        for (const LeftOut& left : theme.leftOut) {
            std::error_code error;
            const fs::path end = fs::read_symlink(fs::path(theme.folder) / left.name, error);
            if (!error) {
                links_.emplace(left.name, end.string());
                addFoldersOf(left.name);
            }
        }
    }

    FollowedTheme follow() && {
        std::vector<LeftOut> rest;
        for (LeftOut& left : followed_.theme.leftOut) {
            const char* const why = links_.contains(left.name) ? take(left.name, left.name) : "";
            if (why != nullptr) {
                left.why = *why == '\0' ? left.why : why;
                rest.push_back(std::move(left));
            }
        }
        followed_.theme.leftOut = std::move(rest);
        for (const auto& [name, file] : followed_.links) {
            followed_.theme.files.push_back({name, sizes_.at(file)});
        }
        std::ranges::sort(followed_.theme.files, {}, &ThemeFile::name);
        return std::move(followed_);
    }

  private:
    struct End {
        std::string name;           // in the theme
        const char* why = nullptr;  // it leads to nothing of the theme
    };

    void addFoldersOf(std::string_view name) {
        for (std::string_view folder = folderOf(name);
             !folder.empty() && folders_.emplace(folder).second; folder = folderOf(folder)) {
        }
    }

    [[nodiscard]] bool isInTheme(const Parts& path) const {
        return path.size() >= place_.size() &&
               std::equal(place_.begin(), place_.end(), path.begin());
    }

    [[nodiscard]] std::string nameOf(const Parts& path) const {
        std::string name;
        for (std::size_t i = place_.size(); i < path.size(); ++i) {
            name = inFolder(name, path[i]);
        }
        return name;
    }

    // Where a name of the theme leads, part by part.
    [[nodiscard]] End endOf(const std::string& name) const {
        Parts path = place_;
        Parts rest = partsOf(name);
        for (int links = 0; !rest.empty();) {
            const std::string part = std::move(rest.front());
            rest.pop_front();
            if (part == "..") {
                if (!path.empty()) {
                    path.pop_back();
                }
                continue;
            }
            path.push_back(part);
            if (!isInTheme(path)) {
                continue;
            }
            const auto link = links_.find(nameOf(path));
            if (link == links_.end()) {
                if (!rest.empty() && sizes_.contains(nameOf(path))) {
                    return {{}, kLeadsNowhere};
                }
                continue;
            }
            if (++links > kMostLinks) {
                return {{}, kLoop};
            }
            path.pop_back();
            if (link->second.starts_with('/')) {
                path.clear();
            }
            const Parts end = partsOf(link->second);
            rest.insert(rest.begin(), end.begin(), end.end());
        }
        return isInTheme(path) ? End{nameOf(path)} : End{{}, kLeadsOut};
    }

    // Takes what the link leads to by `shown`, the name that it has by the links before it. Null,
    // or why nothing was taken.
    const char* take(const std::string& link, const std::string& shown, int depth = 0) {
        const End end = endOf(link);
        if (end.why != nullptr) {
            return end.why;
        }
        if (const auto file = sizes_.find(end.name); file != sizes_.end()) {
            return add(shown, end.name);
        }
        // Folders of nothing but links to such folders may name any number of ways.
        const bool isAround = ++steps_ > kMostAll.entries || end.name.empty() ||
                              link.starts_with(end.name + "/") ||
                              shown.starts_with(end.name + "/") || depth > kMostLinks;
        if (isAround) {
            return kLoop;
        }
        return folders_.contains(end.name) ? takeFolder(end.name, shown, depth) : kLeadsNowhere;
    }

    const char* takeFolder(const std::string& folder, const std::string& shown, int depth) {
        const std::string start = folder + "/";
        for (auto file = sizes_.lower_bound(start);
             file != sizes_.end() && file->first.starts_with(start); ++file) {
            if (const char* const why =
                    add(shown + file->first.substr(folder.size()), file->first)) {
                return why;
            }
        }
        for (auto link = links_.lower_bound(start);
             link != links_.end() && link->first.starts_with(start); ++link) {
            // One that leads to nothing is told of where it is itself.
            static_cast<void>(
                take(link->first, shown + link->first.substr(folder.size()), depth + 1));
        }
        return nullptr;
    }

    const char* add(const std::string& shown, const std::string& file) {
        bytes_ += sizes_.at(file);
        if (followed_.links.size() + sizes_.size() >= kMostAll.entries || bytes_ > kMostAll.bytes) {
            return "a link, with which the theme would be too large";
        }
        followed_.links.emplace(shown, file);
        return nullptr;
    }

    Parts place_;  // of the theme on a device
    FollowedTheme followed_;
    std::map<std::string, std::uint64_t> sizes_;
    std::map<std::string, std::string> links_;  // by their names
    std::set<std::string, std::less<>> folders_;
    std::uint64_t bytes_ = 0;
    std::size_t steps_ = 0;
};

}  // namespace

FollowedTheme followLinks(const FoundTheme& theme) {
    if (theme.leftOut.empty()) {
        return {theme, {}};
    }
    return Follower(theme).follow();
}

}  // namespace velmoranth::makers
