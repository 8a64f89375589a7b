#include "cli/catalog_input.h"

#include "cli/messages.h"
#include "desktop/core_ui/bundles.h"
#include "desktop/files/descriptor.h"
#include "tools/catalog_extraction.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <system_error>
#include <utility>

namespace velmoranth::cli {

using catalog::Catalog;
using desktop::Problem;
using desktop::Result;

namespace {

namespace fs = std::filesystem;

constexpr const char* kStandardInput = "standard input";

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

// Everything of it, up to the limit.
Result<std::vector<std::uint8_t>> readStandardInput() {
    constexpr std::size_t kMost = std::size_t{512} * 1024 * 1024;
    constexpr std::size_t kPiece = std::size_t{1024} * 1024;
    std::vector<std::uint8_t> bytes;
    while (true) {
        const std::size_t size = bytes.size();
        bytes.resize(size + kPiece);
        const ssize_t count = ::read(STDIN_FILENO, bytes.data() + size, kPiece);
        const int error = errno;
        bytes.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count == 0) {
            return bytes;
        }
        if (count < 0 && error != EINTR) {
            return tl::unexpected(desktop::problemOfErrno(error, kStandardInput));
        }
        if (bytes.size() > kMost) {
            return tl::unexpected(Problem{
                "there are more than 512 MiB, the limit: give the file itself", kStandardInput});
        }
    }
}

std::string foldersFor(const fs::path& path, bool isFolder, FileLayout layout) {
    if (layout == FileLayout::system) {
        const std::string folders = tools::extractionFolder(path.string(), "");
        return folders.substr(std::min(folders.find_first_not_of('/'), folders.size()));
    }
    return isFolder && layout == FileLayout::apart ? path.filename().string() : "";
}

}  // namespace

Result<Catalog> CatalogInput::open() const {
    return bytes ? Catalog::fromBytes(*bytes, file) : Catalog::open(file);
}

Result<CatalogInput> findCatalog(const std::string& input, FileLayout layout) {
    if (input == "-") {
        auto bytes = readStandardInput();
        if (!bytes) {
            return tl::unexpected(std::move(bytes.error()));
        }
        return CatalogInput{kStandardInput, {}, {}, std::move(*bytes)};
    }
    struct stat status{};
    if (::stat(input.c_str(), &status) != 0) {
        return tl::unexpected(desktop::problemOfErrno(errno, input));
    }
    if (!S_ISDIR(status.st_mode) && !S_ISREG(status.st_mode)) {
        const std::string what = S_ISFIFO(status.st_mode)   ? "a pipe"
                                 : S_ISSOCK(status.st_mode) ? "a socket"
                                                            : "a device";
        return tl::unexpected(Problem{"this is " + what +
                                          ", and no file; give a .car file or the folder of a "
                                          "bundle, or - for standard input",
                                      input});
    }
    const fs::path path = named(input);
    const bool isFolder = S_ISDIR(status.st_mode);
    CatalogInput found{input, foldersFor(path, isFolder, layout), {}, {}};
    if (isFolder) {
        Result<std::string> file = catalogOfBundle(input, path.stem().string());
        if (!file) {
            return tl::unexpected(std::move(file.error()));
        }
        found.file = std::move(*file);
    }
    if (tools::isCatalogFile(path.string()) == isFolder) {
        found.note =
            shown(input) + (isFolder ? " ends in \"car\" but is a folder: taken for a bundle"
                                     : " does not end in \"car\" but is a file: taken for "
                                       "a catalog");
    }
    return found;
}

}  // namespace velmoranth::cli
