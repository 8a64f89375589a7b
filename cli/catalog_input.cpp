#include "cli/catalog_input.h"

#include "cli/messages.h"
#include "desktop/core_ui/bundles.h"
#include "desktop/files/descriptor.h"
#include "tools/catalog_extraction.h"

#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;

namespace {

namespace fs = std::filesystem;

bool isStep(const fs::path& name) {
    return name.empty() || name == "." || name == "..";
}

// The path with a name for the item and for its folder, as the folders of the pictures are named
// for both.
fs::path named(const std::string& input) {
    std::error_code error;
    fs::path path = fs::absolute(input, error);
    if (!path.has_filename()) {  // slashes at its end
        path = path.parent_path();
    }
    const bool isNamed = !isStep(path.filename()) && !isStep(path.parent_path().filename());
    const fs::path resolved = isNamed ? path : fs::canonical(path, error);
    return error ? path : resolved;
}

// `folder` as the user wrote it, `name` without the bundle's ending. As the system does, Assets.car
// is taken before the catalog of the bundle's own name, wherever both are.
Result<std::string> catalogOfBundle(const std::string& folder, const std::string& name) {
    const std::string ownName = name + ".car";
    for (const std::string& file : {std::string("Assets.car"), ownName}) {
        for (const char* place : desktop::kResourceFolders) {
            std::string path = (fs::path(folder) / place / file).string();
            std::error_code error;
            if (const auto status = fs::status(path, error);
                fs::exists(status) && !fs::is_directory(status)) {
                return path;
            }
        }
    }
    return tl::unexpected(Problem{"there is no Assets.car or " + shown(ownName) +
                                      " in this folder, in its Resources or its "
                                      "Contents/Resources: give the folder that has one, or "
                                      "another .car file",
                                  folder});
}

}  // namespace

Result<CatalogInput> findCatalog(const std::string& input) {
    struct stat status{};
    if (::stat(input.c_str(), &status) != 0) {
        return tl::unexpected(desktop::problemOfErrno(errno, input));
    }
    const std::string path = named(input).string();
    const bool isFolder = S_ISDIR(status.st_mode);
    CatalogInput found{input, tools::extractionFolder(path, ""), {}};
    if (isFolder) {
        Result<std::string> file = catalogOfBundle(input, fs::path(path).stem().string());
        if (!file) {
            return tl::unexpected(std::move(file.error()));
        }
        found.file = std::move(*file);
    }
    if (tools::isCatalogFile(path) == isFolder) {
        found.note =
            shown(input) + (isFolder ? " ends in \"car\" but is a folder: taken for a bundle"
                                     : " does not end in \"car\" but is a file: taken for "
                                       "a catalog");
    }
    found.below.erase(0, found.below.find_first_not_of('/'));
    return found;
}

}  // namespace velmoranth::cli
