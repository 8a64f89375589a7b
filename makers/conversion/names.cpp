#include "makers/conversion/names.h"

#include <algorithm>
#include <array>

namespace velmoranth::makers {
namespace {

constexpr std::array<std::string_view, 3> kDevices{"ipadpro", "ipad", "iphone"};
constexpr std::string_view kPng = ".png";

// Takes a scale or a device off the end of the base; false where there is none.
bool takeSuffix(PictureName& name) {
    const std::string lower = lowerCase(name.base);
    for (const int scale : {1, 2, 3}) {
        const std::string suffix = "@" + std::to_string(scale) + "x";
        if (lower.ends_with(suffix) && lower.size() > suffix.size()) {
            name.base.resize(name.base.size() - suffix.size());
            name.scale = std::max(name.scale, scale);
            return true;
        }
    }
    for (const std::string_view device : kDevices) {
        const std::string suffix = "~" + std::string(device);
        if (lower.ends_with(suffix) && lower.size() > suffix.size()) {
            name.base.resize(name.base.size() - suffix.size());
            name.device = device;
            return true;
        }
    }
    return false;
}

}  // namespace

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return lower;
}

std::string_view folderOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

std::string_view fileOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string inFolder(std::string_view folder, std::string_view file) {
    return folder.empty() ? std::string(file) : std::string(folder) + "/" + std::string(file);
}

bool isPng(std::string_view path) {
    return path.size() > kPng.size() && lowerCase(path.substr(path.size() - kPng.size())) == kPng;
}

bool isOtherPicture(std::string_view path) {
    const std::string lower = lowerCase(path);
    return std::ranges::any_of(
        std::array{".jpg", ".jpeg", ".gif", ".heic", ".webp", ".bmp", ".tif", ".tiff", ".svg"},
        [&](const char* ending) { return lower.ends_with(ending); });
}

std::string asPng(std::string_view path) {
    return std::string(isOtherPicture(path) ? path.substr(0, path.rfind('.')) : path) +
           (isOtherPicture(path) ? ".png" : "");
}

PictureName pictureName(std::string_view path) {
    const std::string_view file = fileOf(path);
    PictureName name{std::string(file.substr(0, file.size() - (isPng(file) ? kPng.size() : 0)))};
    while (takeSuffix(name)) {
    }
    return name;
}

std::string plainName(std::string_view path) {
    return inFolder(folderOf(path), pictureName(path).base + std::string(kPng));
}

}  // namespace velmoranth::makers
