#include "makers/starter/starter.h"

#include "desktop/files/cleanup.h"
#include "desktop/files/descriptor.h"
#include "desktop/files/file_calls.h"
#include "desktop/files/file_tree.h"
#include "desktop/plist/property_lists.h"

#include "makers/conversion/names.h"
#include "makers/starter/click.h"
#include "makers/starter/starter_pictures.h"
#include <fcntl.h>
#include <stdio.h>  // NOLINT(modernize-deprecated-headers): renameat2() is the system's
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSound = "UISounds/lock.caf";

// How one of the calendar's two texts is written, in points on an icon of 60.
struct Label {
    const char* font;
    double size;
    const char* color;
    double top;
};

platform::Dictionary settingsOf(const Label& label) {
    return {{"FontName", std::string(label.font)},
            {"FontSize", label.size},
            {"TextColor", std::string(label.color)},
            {"TextXoffset", 0.0},
            {"TextYoffset", label.top},
            {"ShadowColor", std::string("000000")},
            {"ShadowXoffset", 0.0},
            {"ShadowYoffset", 0.0},
            {"ShadowBlurRadius", 0.0}};
}

platform::Data infoOf(const Starter& starter) {
    platform::Dictionary info{
        {"PackageName", starter.name},
        {"Version", std::string("1.0")},
        {"IB-MaskIcons", true},  // the mask cuts the calendar too
        {"CalendarIconDaySettings", settingsOf({"HelveticaNeue-Medium", 8.5, "FFFFFF", 4.5})},
        {"CalendarIconDateSettings", settingsOf({"HelveticaNeue-Light", 32, "2B2A28", 20})}};
    if (!starter.author.empty()) {
        info.emplace("Author", starter.author);
    }
    return desktop::writeXmlPropertyList(platform::PropertyList(info));
}

// What lies where, for whoever opens the folder.
platform::Data readme(const Starter& starter) {
    std::string text = "# " + starter.name +
                       "\n\n"
                       "A theme for the home screen. Put your own pictures in the place of these; "
                       "what you delete keeps the phone's own.\n\n"
                       "From the folder that holds this one, so that nothing else comes into "
                       "it:\n\n"
                       "    velmoranth preview *.theme            # draws the home screen\n"
                       "    velmoranth explain *.theme -- dock    # says why something shows as it "
                       "does\n"
                       "    velmoranth pack *.theme               # makes a package that a phone "
                       "installs\n\n"
                       "| File | Points | What it is |\n| --- | --- | --- |\n";
    const auto row = [&](std::string_view name, const std::string& size, std::string_view what) {
        text.append("| `").append(name).append("` | ").append(size).append(" | ").append(what);
        text.append(" |\n");
    };
    row("Info.plist", "", "the theme's name; how the calendar's weekday and day are written");
    row(kMaskName, "60 x 60", "the shape of all app icons: gray, black shows and white hides");
    for (const StarterPicture& picture : starterPictures()) {
        row(picture.name,
            std::to_string(static_cast<int>(picture.width)) + " x " +
                std::to_string(static_cast<int>(picture.height)),
            picture.what);
    }
    row(kSound, "", "the sound of locking the phone");
    text +=
        "\nA picture has three pixels a point. `@2x` and `@3x` beside a plain name are for "
        "screens of that scale.\n";
    return {text.begin(), text.end()};
}

tl::unexpected<Problem> cannotWrite(int error, const std::string& path) {
    Problem problem = desktop::problemOfErrno(error, path);
    problem.message =
        error == EEXIST ? "it is there already" : "the theme cannot be written: " + problem.message;
    return tl::unexpected(std::move(problem));
}

// 0, or the errno.
int writeFile(const std::string& path, const platform::Data& bytes) {
    std::error_code error;
    fs::create_directories(std::string(folderOf(path)), error);
    if (error) {
        return error.value();
    }
    const desktop::Descriptor file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    return file.isOpen()
               ? desktop::writeWhole(desktop::FileCalls(), file.get(), bytes.data(), bytes.size())
               : errno;
}

}  // namespace

std::vector<StarterFile> starterFiles(const Starter& starter) {
    std::vector<StarterFile> files = drawnFiles(Palette(starter.color));
    files.push_back({std::string(kSound), drawClick()});
    files.push_back({"Info.plist", infoOf(starter)});
    files.push_back({"README.md", readme(starter)});
    std::ranges::sort(files, {}, &StarterFile::name);
    return files;
}

Result<void> writeStarter(const Starter& starter, const std::string& path) {
    struct stat status{};
    if (::lstat(path.c_str(), &status) == 0) {
        return cannotWrite(EEXIST, path);
    }
    const auto beside = desktop::makeTemporaryFolderIn(fs::path(path).parent_path());
    if (!beside) {
        return tl::unexpected(Problem{beside.error().message, path});
    }
    const std::string folder = (*beside)->path() + "/theme";
    for (const StarterFile& file : starterFiles(starter)) {
        if (const int error = writeFile(folder + "/" + file.name, file.bytes); error != 0) {
            return cannotWrite(error, path);
        }
    }
    return ::renameat2(AT_FDCWD, folder.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) == 0
               ? Result<void>()
               : cannotWrite(errno, path);
}

}  // namespace velmoranth::makers
