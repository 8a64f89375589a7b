#include "cli/extracted_names.h"

#include "cli/folded_name.h"
#include "cli/messages.h"

#include <fmt/core.h>

#include <algorithm>

namespace velmoranth::cli {
namespace {

constexpr std::string_view kPictureEnding = ".png";
// At most, of a name that is too long.
constexpr std::size_t kKeptOfLongName = 180;

std::string spelled(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        text += fmt::format("%{:02X}", static_cast<unsigned char>(byte));
    }
    return text;
}

// Whether the % at the start could be taken for one of ours.
bool looksSpelled(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789ABCDEFabcdef";
    return text.substr(1).starts_with('~') ||
           (text.size() > 2 && text.find_first_not_of(kDigits, 1) > 2);
}

// Every character as it is or spelled, as many as fit into `most` bytes.
std::string spelledWhereNeeded(std::string_view part, std::size_t most) {
    std::string text;
    while (!part.empty()) {
        const std::size_t printable = printableLength(part);
        const std::string_view character = part.substr(0, std::max<std::size_t>(printable, 1));
        const bool stays =
            printable > 0 && character != "/" && !(character == "%" && looksSpelled(part));
        const std::string next = stays ? std::string(character) : spelled(character);
        if (text.size() + next.size() > most) {
            return text;
        }
        text += next;
        part.remove_prefix(character.size());
    }
    return text;
}

bool isLikePictures(std::string_view folder) {
    return folder.size() >= kPictureEnding.size() &&
           folded(folder.substr(folder.size() - kPictureEnding.size())) == kPictureEnding;
}

std::string spelledFolder(std::string_view part) {
    if (part == "." || part == "..") {
        return spelled(part);
    }
    if (!isLikePictures(part)) {
        return spelledWhereNeeded(part, std::string_view::npos);
    }
    const std::size_t stop = part.size() - kPictureEnding.size();
    return spelledWhereNeeded(part.substr(0, stop), std::string_view::npos) + spelled(".") +
           std::string(part.substr(stop + 1));
}

// Takes the folder that the path begins with, and its slash; nothing when no folder is left. A
// slash with no name before it belongs to the name that follows.
std::string_view takeFolder(std::string_view& path) {
    const std::size_t begin = path.find_first_not_of('/');
    const std::size_t end = begin == std::string_view::npos ? begin : path.find('/', begin);
    if (end == std::string_view::npos) {
        return {};
    }
    const std::string_view folder = path.substr(0, end);
    path.remove_prefix(end + 1);
    return folder;
}

}  // namespace

std::string extractedPath(std::string_view name, std::string_view ending, std::size_t number,
                          Slashes slashes) {
    std::string path;
    std::size_t longest = 0;
    std::string_view rest = name.substr(0, kLongestExtractedPath + 1);
    if (slashes == Slashes::makeFolders) {
        for (std::string_view part = takeFolder(rest); !part.empty(); part = takeFolder(rest)) {
            const std::string folder = spelledFolder(part);
            longest = std::max(longest, folder.size());
            path += folder + "/";
        }
    }
    const std::string file = spelledWhereNeeded(rest, std::string_view::npos) + std::string(ending);
    path += file;
    if (std::max(longest, file.size()) > kLongestExtractedPart ||
        std::max(path.size(), name.size()) > kLongestExtractedPath) {
        const std::string behind = "%~" + std::to_string(number) + std::string(ending);
        return spelledWhereNeeded(
                   name, std::min(kKeptOfLongName, kLongestExtractedPart - behind.size())) +
               behind;
    }
    return path;
}

}  // namespace velmoranth::cli
