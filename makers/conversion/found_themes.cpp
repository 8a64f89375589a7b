#include "makers/conversion/found_themes.h"

#include "makers/archives/unpack.h"
#include "makers/conversion/icon_rules.h"
#include "makers/conversion/letter_case.h"
#include "makers/conversion/names.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;

namespace {

namespace fs = std::filesystem;

// A folder may hold what an archive may.
constexpr ArchiveLimits kLimits;

constexpr std::array<std::string_view, 5> kPackageFolders{
    "Library/Themes", "var/jb/Library/Themes", "private/var/jb/Library/Themes", "var/stash/Themes",
    "private/var/stash/Themes"};

// A folder, as far as themes are concerned.
struct Node {
    std::map<std::string, Node> folders;
    std::vector<ThemeFile> files;  // named without folders
    std::vector<LeftOut> leftOut;
};

class Reader {
  public:
    Result<void> read(const fs::path& path, Node& node) {
        std::error_code error;
        for (fs::directory_iterator entry(path, error), end; !error && entry != end;
             entry.increment(error)) {
            if (++entries_ > kLimits.entries) {
                return tl::unexpected(Problem{
                    "it has more than " + std::to_string(kLimits.entries) + " files and folders"});
            }
            if (auto added = add(*entry, node); !added) {
                return added;
            }
        }
        if (error) {
            return tl::unexpected(Problem{"the folder cannot be read: " + error.message(), path});
        }
        std::ranges::sort(node.files, {}, &ThemeFile::name);
        std::ranges::sort(node.leftOut, {}, &LeftOut::name);
        return {};
    }

  private:
    Result<void> add(const fs::directory_entry& entry, Node& node) {
        // What the folder itself says of the entry is enough, but for the size.
        std::error_code error;
        const std::string name = entry.path().filename();
        const bool isLink = entry.is_symlink(error);
        if (!error && !isLink && entry.is_directory(error)) {
            return read(entry.path(), node.folders[name]);
        }
        const bool isFile = !error && !isLink && entry.is_regular_file(error);
        if (error) {
            return tl::unexpected(Problem{error.message(), entry.path()});
        }
        if (!isFile) {
            node.leftOut.push_back(
                {name, isLink ? "a link, which is not followed" : kNeitherFileNorFolder});
            return {};
        }
        const std::uint64_t size = entry.file_size(error);
        bytes_ += error ? 0 : size;
        if (bytes_ > kLimits.bytes) {
            return tl::unexpected(
                Problem{"it holds more than " + std::to_string(kLimits.bytes) + " bytes"});
        }
        node.files.push_back({name, error ? 0 : size});
        return {};
    }

    std::size_t entries_ = 0;
    std::uint64_t bytes_ = 0;
};

bool hasThemeFolder(const Node& node) {
    return std::ranges::any_of(node.folders,
                               [](const auto& folder) { return isThemeFolder(folder.first); });
}

bool isNamedTheme(const std::string& name) {
    constexpr std::string_view kEnding = ".theme";
    return name.size() > kEnding.size() && lowerCase(name).ends_with(kEnding);
}

// One that no theme's folder of its own would be.
bool holdsIcons(const Node& node) {
    return std::ranges::any_of(node.files,
                               [](const ThemeFile& file) { return isSurelyIcon(file.name); });
}

bool isTheme(const Node& node, const std::string& name) {
    return hasThemeFolder(node) || isNamedTheme(name) || holdsIcons(node);
}

bool holdsPicturesNamedForApps(const Node& node) {
    return std::ranges::any_of(node.files,
                               [](const ThemeFile& file) { return isNamedForApp(file.name); });
}

enum class Mark {
    certain,  // a theme's folders, its name, or icons
    loose,    // or pictures that are called as apps are
};

class Finder {
  public:
    // `splits` off: what lies in a theme belongs to it, whatever it is called.
    Finder(std::vector<FoundTheme>& themes, bool splits, Mark mark = Mark::certain)
        : themes_(themes), splits_(splits), mark_(mark) {}

    // Takes the themes in and below the node.
    void look(const Node& node, const std::string& path, const std::string& name, bool isTop) {
        if (isMarked(node, name)) {
            take(node, path, name, isTop);
            return;
        }
        for (const auto& [below, folder] : node.folders) {
            if (!isClutter(below)) {
                look(folder, inFolder(path, below), below, false);
            }
        }
    }

    // Whatever is in it.
    void take(const Node& node, const std::string& path, const std::string& name, bool isTop) {
        const std::size_t index = themes_.size();
        themes_.push_back({path, name, isTop, {}});
        addFiles(index, node, "", true);
    }

  private:
    void addFiles(std::size_t index, const Node& node, const std::string& below, bool isRoot) {
        for (const ThemeFile& file : node.files) {
            themes_[index].files.push_back({inFolder(below, file.name), file.size});
        }
        for (const LeftOut& left : node.leftOut) {
            themes_[index].leftOut.push_back({inFolder(below, left.name), left.why});
        }
        for (const auto& [name, folder] : node.folders) {
            const bool isOwn = isRoot && isThemeFolder(name);
            if (!isOwn && (isInKnown(below) || !isNestedTheme(folder, name))) {
                addFiles(index, folder, inFolder(below, name), false);
            } else if (isOwn) {
                addFiles(index, folder, name, false);
            } else {
                take(folder, themes_[index].folder + "/" + inFolder(below, name), name, false);
            }
        }
    }

    static bool isInKnown(const std::string& below) {
        return isThemeFolder(below.substr(0, below.find('/')));
    }

    [[nodiscard]] bool isNestedTheme(const Node& node, const std::string& name) const {
        return splits_ && !isClutter(name) && isMarked(node, name);
    }

    [[nodiscard]] bool isMarked(const Node& node, const std::string& name) const {
        return isTheme(node, name) || (mark_ == Mark::loose && holdsPicturesNamedForApps(node));
    }

    std::vector<FoundTheme>& themes_;
    bool splits_;
    Mark mark_;
};

Result<Node> readTree(const std::string& folder) {
    Node root;
    if (auto read = Reader().read(folder, root); !read) {
        Problem problem = std::move(read.error());
        problem.path = problem.path.empty() ? folder : problem.path;
        return tl::unexpected(std::move(problem));
    }
    return root;
}

void sortFiles(std::vector<FoundTheme>& themes) {
    for (FoundTheme& theme : themes) {
        std::ranges::sort(theme.files, {}, &ThemeFile::name);
        std::ranges::sort(theme.leftOut, {}, &LeftOut::name);
    }
    std::ranges::sort(themes, {}, &FoundTheme::folder);
}

}  // namespace

std::string nameOfFolder(const std::string& folder) {
    std::string_view path = folder;
    while (path.ends_with('/')) {
        path.remove_suffix(1);
    }
    const std::string_view name = fileOf(path);
    if (!name.empty() && name != "." && name != "..") {
        return std::string(name);
    }
    std::error_code error;
    return fs::canonical(folder, error).filename();
}

bool isClutter(std::string_view path) {
    while (!path.empty()) {
        const std::string_view part = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(part.size() + 1, path.size()));
        if (part == "__MACOSX" || part.starts_with("._") || part == ".DS_Store" ||
            part == "Thumbs.db" || part == "desktop.ini" || part == ".git" || part == ".svn") {
            return true;
        }
    }
    return false;
}

Result<std::vector<FoundTheme>> findThemesIn(const std::string& folder) {
    const auto root = readTree(folder);
    if (!root) {
        return tl::unexpected(root.error());
    }
    std::vector<FoundTheme> themes;
    // A picture beside themes may well be called "Photos.png" and be no icon.
    for (const Mark mark : {Mark::certain, Mark::loose}) {
        if (themes.empty()) {
            Finder(themes, true, mark).look(*root, folder, nameOfFolder(folder), true);
        }
    }
    sortFiles(themes);
    return themes;
}

Result<FoundTheme> themeAsGiven(const std::string& folder) {
    const auto root = readTree(folder);
    if (!root) {
        return tl::unexpected(root.error());
    }
    std::vector<FoundTheme> themes;
    Finder(themes, false).take(*root, folder, nameOfFolder(folder), true);
    sortFiles(themes);
    return std::move(themes.front());
}

SplitTheme splitTheme(const FoundTheme& theme) {
    Node root;
    const auto nodeOf = [&root](std::string_view folder) {
        Node* node = &root;
        while (!folder.empty()) {
            const std::string_view part = folder.substr(0, folder.find('/'));
            folder.remove_prefix(std::min(part.size() + 1, folder.size()));
            node = &node->folders[std::string(part)];
        }
        return node;
    };
    for (const ThemeFile& file : theme.files) {
        nodeOf(folderOf(file.name))->files.push_back({std::string(fileOf(file.name)), file.size});
    }
    for (const LeftOut& left : theme.leftOut) {
        nodeOf(folderOf(left.name))->leftOut.push_back({std::string(fileOf(left.name)), left.why});
    }
    std::vector<FoundTheme> themes;
    const Mark mark = isTheme(root, theme.name) ? Mark::certain : Mark::loose;
    Finder(themes, true, mark).take(root, theme.folder, theme.name, theme.isTop);
    sortFiles(themes);
    SplitTheme split{std::move(themes.front()), {}};
    themes.erase(themes.begin());
    split.nested = std::move(themes);
    return split;
}

Result<std::vector<FoundTheme>> findThemesInPackage(const std::string& folder, bool asGiven) {
    const auto root = readTree(folder);
    if (!root) {
        return tl::unexpected(root.error());
    }
    std::vector<FoundTheme> themes;
    Finder finder(themes, !asGiven);
    for (const std::string_view place : kPackageFolders) {
        const Node* node = &*root;
        for (std::string_view rest = place; node != nullptr && !rest.empty();) {
            const std::string part(rest.substr(0, rest.find('/')));
            rest.remove_prefix(std::min(part.size() + 1, rest.size()));
            const auto below = node->folders.find(part);
            node = below == node->folders.end() ? nullptr : &below->second;
        }
        if (node == nullptr) {
            continue;
        }
        for (const auto& [name, theme] : node->folders) {
            const std::string path = inFolder(inFolder(folder, place), name);
            if (asGiven) {
                finder.take(theme, path, name, false);
            } else {
                finder.look(theme, path, name, false);
            }
        }
    }
    sortFiles(themes);
    return themes;
}

}  // namespace velmoranth::makers
