#include "makers/packing/packing.h"

#include "desktop/files/cleanup.h"
#include "desktop/files/descriptor.h"
#include "desktop/files/file_calls.h"
#include "desktop/files/file_tree.h"
#include "desktop/plist/property_lists.h"

#include "makers/archives/unpack.h"
#include "makers/conversion/left_out.h"
#include "makers/conversion/names.h"
#include "makers/conversion/pictures.h"
#include "makers/conversion/theme_input.h"
#include <fcntl.h>
#include <stdio.h>  // NOLINT(modernize-deprecated-headers): renameat2() is the system's
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kThemes = "Library/Themes/";
// 2020-01-01, unless the environment says SOURCE_DATE_EPOCH.
constexpr std::int64_t kFixedTime = 1577836800;

// Posts the notice on which the running apps forget what they made of the themes before. A phone
// may lack the program, and an installation does not fail for that.
constexpr std::string_view kScript =
    "#!/bin/sh\n"
    "# Tells the running apps that the themes have changed.\n"
    "if command -v notifyutil >/dev/null 2>&1; then\n"
    "    notifyutil -p com.qor.velmoranththemechanged.prefs >/dev/null 2>&1 || :\n"
    "fi\n"
    "exit 0\n";

std::int64_t timeOfEntries() {
    const char* const given = std::getenv("SOURCE_DATE_EPOCH");  // NOLINT(concurrency-mt-unsafe)
    if (given == nullptr) {
        return kFixedTime;
    }
    char* end = nullptr;
    const long long time = std::strtoll(given, &end, 10);
    constexpr long long kLatest = 0x7FFFFFFF;  // that every installer reads
    return end != given && *end == '\0' && time >= 0 && time <= kLatest ? time : kFixedTime;
}

// As a name of a file on the phone, and in an installer's lists, which are lines.
bool canBeInstalled(std::string_view name) {
    return std::ranges::none_of(name, [](char letter) {
        return static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F;
    });
}

// The file that a link of the theme leads to; nothing when that is none of the theme's files.
std::optional<PackagedFile> behindLink(const fs::path& theme, const std::string& name) {
    std::error_code error;
    const fs::path top = fs::canonical(theme, error);
    const fs::path target = error ? fs::path() : fs::canonical(theme / name, error);
    if (error || !fs::is_regular_file(target, error) ||
        !target.native().starts_with(top.native() + "/")) {
        return std::nullopt;
    }
    const std::uintmax_t size = fs::file_size(target, error);
    return error ? std::nullopt : std::optional(PackagedFile{name, target, size});
}

Result<platform::Dictionary> infoOf(const std::string& folder, const FoundTheme& theme) {
    const bool isThere =
        std::ranges::find(theme.files, "Info.plist", &ThemeFile::name) != theme.files.end();
    if (!isThere) {
        return platform::Dictionary();
    }
    const std::string path = folder + "/Info.plist";
    const auto bytes = readWhole(path);
    if (!bytes) {
        return tl::unexpected(bytes.error());
    }
    const auto list = desktop::parsePropertyList(*bytes);
    if (!list) {
        Problem problem = list.error();
        problem.path = path;
        return tl::unexpected(std::move(problem));
    }
    const auto* const info = list->as<platform::Dictionary>();
    return info == nullptr ? platform::Dictionary() : *info;
}

// Why a file beside the theme's folders stays out. Everything that a theme replaces is in one.
std::string_view whyNotBeside(const std::string& name) {
    if (name.find('/') != std::string::npos) {
        return {};
    }
    if (nameWithoutEnding(name) != name) {
        return "a package or an archive, which is no part of a theme";
    }
    static constexpr std::array<std::string_view, 6> kPictures{".png", ".jpg", ".jpeg",
                                                               ".gif", ".tif", ".tiff"};
    const bool isPicture = std::ranges::any_of(kPictures, [lower = lowerCase(name)](auto ending) {
        return std::string_view(lower).ends_with(ending);
    });
    return isPicture ? kLoosePicture : std::string_view();
}

// The files of the theme that come along; the others are noted.
Result<std::vector<PackagedFile>> filesOf(const FoundTheme& theme, PackagePlan& plan) {
    std::vector<PackagedFile> files;
    for (const ThemeFile& file : theme.files) {
        std::string_view why = whyLeftOut(file.name, file.size);
        if (why.empty()) {
            why = whyNotBeside(file.name);
        }
        if (why.empty()) {
            files.push_back({file.name, theme.folder + "/" + file.name, file.size});
        } else {
            plan.leftOut.push_back({file.name, std::string(why)});
        }
    }
    for (const LeftOut& left : theme.leftOut) {
        if (isClutter(left.name)) {
            plan.leftOut.push_back(left);
            continue;
        }
        auto file = behindLink(theme.folder, left.name);
        if (!file) {
            return tl::unexpected(
                Problem{"it cannot be packed: it is no file, and no link to a file of the theme; "
                        "put the file itself there",
                        theme.folder + "/" + left.name});
        }
        files.push_back(std::move(*file));
    }
    std::ranges::sort(plan.leftOut, {}, &LeftOut::name);
    return files;
}

Result<void> copyToStandardOutput(const std::string& path) {
    const desktop::Descriptor from(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    std::array<char, std::size_t{64} * 1024> block{};
    while (true) {
        const ssize_t count = ::read(from.get(), block.data(), block.size());
        const int error = count > 0
                              ? desktop::writeWhole(desktop::FileCalls(), STDOUT_FILENO,
                                                    block.data(), static_cast<std::size_t>(count))
                              : (count < 0 ? errno : 0);
        if (error != 0) {
            Problem problem = desktop::problemOfErrno(error, "standard output");
            problem.message = "the package cannot be written: " + problem.message;
            return tl::unexpected(std::move(problem));
        }
        if (count == 0) {
            return {};
        }
    }
}

tl::unexpected<Problem> cannotPlace(int error, const std::string& path) {
    Problem problem = desktop::problemOfErrno(error, path);
    problem.message = error == EEXIST ? "it is there already; --force replaces it"
                                      : "the package cannot be written: " + problem.message;
    return tl::unexpected(std::move(problem));
}

Result<std::unique_ptr<desktop::RemovedAtEnd>> folderBeside(const std::string& path) {
    auto folder = path == "-" ? desktop::makeTemporaryFolder()
                              : desktop::makeTemporaryFolderIn(fs::path(path).parent_path());
    if (!folder) {
        folder.error().message = "the package cannot be written: " + folder.error().message;
        folder.error().path = path;
    }
    return folder;
}

}  // namespace

Result<PackagePlan> planPackage(const std::string& folder, const ControlValues& given) {
    struct stat status{};
    if (::stat(folder.c_str(), &status) != 0) {
        return tl::unexpected(notThere(errno, folder));
    }
    if (!S_ISDIR(status.st_mode)) {
        return tl::unexpected(Problem{"it is no theme's folder", folder});
    }
    const auto theme = themeAsGiven(folder);
    if (!theme) {
        return tl::unexpected(theme.error());
    }
    const std::string name = nameOfFolder(folder);
    if (name.empty() || !canBeInstalled(name)) {
        return tl::unexpected(Problem{"the folder's name cannot be a theme's", folder});
    }
    const auto info = infoOf(folder, *theme);
    if (!info) {
        return tl::unexpected(info.error());
    }
    PackagePlan plan;
    plan.installed = "/" + std::string(kThemes) + name;
    auto files = filesOf(*theme, plan);
    if (!files) {
        return tl::unexpected(std::move(files.error()));
    }
    if (files->empty()) {
        return tl::unexpected(Problem{"there is nothing in the theme to pack", folder});
    }
    std::uint64_t kibibytes = 0;  // that its files take, each in whole ones
    for (PackagedFile& file : *files) {
        if (!canBeInstalled(file.name)) {
            return tl::unexpected(
                Problem{"a file's name has control characters; give it another", file.source});
        }
        plan.bytes += file.size;
        kibibytes += (file.size + 1023) / 1024;
        file.name.insert(0, std::string(kThemes) + name + "/");
    }
    auto control = controlOf(given, *info, name);
    if (!control) {
        Problem problem = std::move(control.error());
        problem.path = problem.path.empty() ? "" : folder + "/" + problem.path;
        return tl::unexpected(std::move(problem));
    }
    plan.control = std::move(*control);
    plan.package = {.control = textOf(plan.control, kibibytes),
                    .script = std::string(kScript),
                    .files = std::move(*files),
                    .time = timeOfEntries()};
    return plan;
}

std::string fileNameOf(const ControlValues& control) {
    // An epoch is no part of a file's name.
    std::string version = valueOf(control, "Version");
    version.erase(0, version.find(':') + 1);
    return valueOf(control, "Package") + "_" + version + "_" + valueOf(control, "Architecture") +
           ".deb";
}

Result<void> checkPackagePlace(const std::string& folder, const std::string& path) {
    std::error_code error;
    const fs::path theme = fs::canonical(folder, error);
    const fs::path below = fs::path(path).parent_path();
    const fs::path place = fs::weakly_canonical(below.empty() ? "." : below, error);
    if (path != "-" && !error && std::ranges::mismatch(theme, place).in1 == theme.end()) {
        return tl::unexpected(
            Problem{"the package would lie in the theme that it is made of; choose another place "
                    "with -o",
                    path});
    }
    return {};
}

Result<void> writePlannedPackage(const PackagePlan& plan, const std::string& path, bool replaces,
                                 const std::function<void(std::size_t files)>& progress) {
    struct stat status{};
    if (path != "-" && ::lstat(path.c_str(), &status) == 0) {  // before the work
        if (!S_ISREG(status.st_mode)) {
            return tl::unexpected(Problem{"it is there already, and is no file", path});
        }
        if (!replaces) {
            return cannotPlace(EEXIST, path);
        }
    }
    const fs::path place = fs::path(path).parent_path();
    if (std::error_code error; path != "-" && !place.empty()) {
        fs::create_directories(place, error);
        if (error && !fs::is_directory(place)) {
            return cannotPlace(error.value(), path);
        }
    }
    auto folder = folderBeside(path);
    if (!folder) {
        return tl::unexpected(std::move(folder.error()));
    }
    const std::string file = (*folder)->path() + "/package";
    if (auto written = writePackage(plan.package, file, progress); !written) {
        Problem problem = std::move(written.error());
        problem.path = problem.path.empty() ? path : problem.path;
        return tl::unexpected(std::move(problem));
    }
    if (path == "-") {
        return copyToStandardOutput(file);
    }
    const unsigned flags = replaces ? 0 : RENAME_NOREPLACE;
    return ::renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, path.c_str(), flags) == 0
               ? Result<void>()
               : cannotPlace(errno, path);
}

}  // namespace velmoranth::makers
