#include "device/equality/phone_files.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace velmoranth::equality {
namespace {

// Parents first.
constexpr const char* kFolders[] = {
    "/Library",
    "/Library/Themes",
    "/System",
    "/System/Library",
    "/private",
    "/private/var",
    "/private/var/mobile",
    "/private/var/mobile/Library",
    "/private/var/mobile/Library/Preferences",
    "/private/var/mobile/Library/SpringBoard",
    "/private/var/mobile/Library/VelMoranth",
    "/private/var/mobile/Library/VelMoranth/DefaultSettings",
    "/private/var/mobile/Library/VelMoranth/Sounds",
    "/private/var/mobile/Library/VelMoranth/UserSettings",
};

struct Link {
    const char* path;
    const char* target;
};

constexpr Link kLinks[] = {{"/var", "private/var"}, {"/User", "var/mobile"}};

// An image has a size of its own, by which it is known in the results.
struct ThemeImage {
    const char* path;
    int width;
    int height;
};

constexpr ThemeImage kThemeImages[] = {
    // The first theme that has an icon wins.
    {"First/IconBundles/com.example.mail-large.png", 31, 31},
    {"Second/IconBundles/com.example.mail-large.png", 32, 32},
    {"Third Theme/IconBundles/com.example.mail-large.png", 33, 33},
    {"Second/IconBundles/com.example.notes-large.png", 34, 34},
    {"Second/IconBundles/com.example.maps-large.png", 35, 36},
    {"Third Theme/IconBundles/com.example.music-large.png", 37, 37},
    {"Third Theme/IconBundles/com.example.music-large@2x.png", 74, 74},
    {"Third Theme/IconBundles/com.example.music-large@3x.png", 111, 111},
    {"Third Theme/IconBundles/com.example.photos-large~ipad.png", 38, 38},
    {"Third Theme/IconBundles/com.example.photos-large.png", 39, 39},
    {"Third Theme/IconBundles/com.example.clock@2x-large.png", 40, 40},
    {"Second/IconBundles/com.example.nodes-large.png", 41, 41},
    {"First/IconBundles/com.example.unique-large.png", 42, 42},
    {"First/IconBundles/com.apple.mobilecal-large.png", 43, 43},
    // Odd names.
    {"Third Theme/IconBundles/(null)-large.png", 44, 44},
    {"Second/IconBundles/-large.png", 45, 45},
    {"Second/IconBundles/com.exämple.ümlaut 日本-large.png", 46, 46},
    {"Second/IconBundles/100%@ %s%d%n-large.png", 47, 47},
    {"Second/IconBundles/line\nbreak-large.png", 48, 48},
    {"Second/IconBundles/with 'quotes' \"and\" \\-large.png", 49, 49},
    {"First/Bundles/escaped-large.png", 50, 50},
    {"Second/IconBundles/.hidden-large.png", 51, 51},
    // Images of bundles.
    {"First/Bundles/com.example.kit/back@3x.png", 93, 60},
    {"First/Bundles/com.example.kit/back@2x.png", 62, 40},
    {"First/Bundles/com.example.kit/back.png", 31, 20},
    {"Second/Bundles/com.example.kit/back.png", 32, 21},
    {"Second/Bundles/com.example.kit/forward.png", 33, 22},
    {"Third Theme/Bundles/com.example.kit/bare", 34, 23},
    {"Third Theme/Bundles/com.example.kit/tab.png", 35, 24},
    {"Third Theme/Bundles/com.example.kit/only@2x.png", 72, 50},
    {"Third Theme/Bundles/com.example.kit/pad~ipad.png", 37, 26},
    {"Third Theme/Bundles/com.example.kit/pad@2x~ipad.png", 76, 54},
    {"Third Theme/Bundles/com.example.kit/mended.png", 39, 28},
    {"First/Bundles/com.example.kit/mended.png", 40, 29},
    {"Second/Bundles/com.example.kit/(null).png", 41, 30},
    {"Second/Bundles/(null)/orphan.png", 42, 31},
    {"Second/Bundles/com.example.other/back.png", 43, 32},
    {"Third Theme/Bundles/com.apple.Preferences/wifi.png", 44, 33},
    {"Third Theme/Bundles/com.apple.weather-framework/sunny.png", 45, 34},
    {"Third Theme/Bundles/com.apple.Weather.framework/sunny.png", 46, 35},
    // Loose images.
    {"First/UIImages/glyph.png", 24, 25},
    {"First/UIImages/glyph@2x.png", 48, 50},
    {"First/UIImages/glyph@3x.png", 72, 75},
    {"Second/UIImages/chart@2x.png", 54, 56},
    {"Second/UIImages/chart.png", 27, 28},
    {"Second/UIImages/plain.png", 28, 29},
    {"Third Theme/UIImages/loose", 29, 30},
    {"Third Theme/UIImages/named.png", 30, 31},
    {"Third Theme/UIImages/named.png.png", 31, 32},
    {"Third Theme/UIImages/.png", 32, 33},
    {"Third Theme/UIImages/(null).png", 33, 34},
    {"Third Theme/UIImages/UISwitchKnob.png", 34, 35},
    {"Third Theme/UIImages/heart.fill@3x.png", 36, 39},
    // Folders of their own, and effects.
    {"Second/Folder/a.png", 61, 62},
    {"Third Theme/Folder/a.png", 63, 64},
    {"Third Theme/Other/a.png", 65, 66},
    {"Third Theme/a.png", 67, 68},
    {"Second/(null)a.png", 69, 70},
    {"Second/com.apple.mobileicons.framework/AppIconMask.png", 120, 120},
    {"Third Theme/Velmoranth/iPhoneOverlay.png", 121, 121},
    {"Third Theme/AnemoneEffects/iPadOverlay.png", 122, 122},
    {"First/Velmoranth/Folder.png", 123, 124},
    {"Second/Bundles/com.apple.springboard/ANEMFolderIconBG.png", 125, 126},
    {"Second/Bundles/com.apple.springboard/SBBadgeBG.png", 127, 128},
    {"Second/ANEMPageDots/Dot_Current.png", 129, 130},
    {"Second/ANEMPageDots/Dot_Pages.png", 131, 132},
    {"7/IconBundles/com.example.seven-large.png", 133, 134},
    {"1/IconBundles/com.example.seven-large.png", 135, 136},
    {"1.5/IconBundles/com.example.seven-large.png", 137, 138},
};

struct ThemeText {
    const char* path;
    const char* text;
};

// No images: what is there cannot be read as one.
constexpr ThemeText kThemeTexts[] = {
    {"First/IconBundles/com.example.notes-large.png", "This is no picture."},
    {"First/IconBundles/com.example.empty-large.png", ""},
    {"First/IconBundles/com.example.cut-large.png", "\x89PNG\r\n\x1a\n"},
    {"First/IconBundles/com.example.folder-large.png/inside", "x"},
    {"First/Bundles/com.example.kit/mended@3x.png", "This is no picture."},
    {"First/UIImages/chart@3x.png", "This is no picture."},
    {"Second/Info.plist", "{}"},
    {"First/UISounds/lock.caf", "caff first lock"},
    {"First/UISounds/key_press_click.caf", "caff first click"},
    {"Second/UISounds/Anticipate.caf", "caff second anticipate"},
};

constexpr ThemeText kSounds[] = {
    {"button_click.caf", "caff button"}, {"cell_swoosh.caf", "caff swoosh!"},
    {"Error.caf", "caff error ..."},     {"success.aif", "FORM success sound"},
    {"beepShortOn.aif", "FORM on"},
};

void append(std::string& bytes, std::uint32_t number) {
    for (unsigned shift = 32; shift > 0; shift -= 8) {
        bytes += static_cast<char>(number >> (shift - 8) & 0xFFU);
    }
}

std::uint32_t checksum(const std::string& bytes) {
    std::uint32_t sum = 0xFFFFFFFFU;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum & 1U) != 0 ? sum >> 1U ^ 0xEDB88320U : sum >> 1U;
        }
    }
    return ~sum;
}

void appendChunk(std::string& png, const std::string& type, const std::string& contents) {
    append(png, static_cast<std::uint32_t>(contents.size()));
    png += type + contents;
    append(png, checksum(type + contents));
}

// As it is, in blocks of what one can hold.
std::string storedZlib(const std::string& bytes) {
    constexpr std::size_t kLargest = 0xFFFF;
    std::string stored = "\x78\x01";
    for (std::size_t start = 0; start < bytes.size(); start += kLargest) {
        const std::size_t size = std::min(kLargest, bytes.size() - start);
        stored += static_cast<char>(start + size == bytes.size() ? 1 : 0);
        for (const std::size_t field : {size, ~size}) {
            stored += static_cast<char>(field & 0xFFU);
            stored += static_cast<char>(field >> 8U & 0xFFU);
        }
        stored += bytes.substr(start, size);
    }
    constexpr std::uint32_t kModulus = 65521;
    std::uint32_t low = 1;
    std::uint32_t high = 0;
    for (const char byte : bytes) {
        low = (low + static_cast<unsigned char>(byte)) % kModulus;
        high = (high + low) % kModulus;
    }
    append(stored, high << 16U | low);
    return stored;
}

std::uint32_t bigEndianAt(const std::string& bytes, std::size_t position) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        number = number << 8U | static_cast<unsigned char>(bytes[position + i]);
    }
    return number;
}

void fail(const std::string& what, const std::string& path) {
    std::perror((what + " " + path).c_str());
    std::abort();
}

void makeFolder(const std::string& folder) {
    if (::mkdir(folder.c_str(), 0755) != 0 && ::access(folder.c_str(), F_OK) != 0) {
        fail("no folder", folder);
    }
}

std::string contentsOf(const std::string& path) {
    std::string contents;
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        fail("cannot read", path);
    }
    std::array<char, 4096> buffer;
    std::size_t count = 0;
    while ((count = std::fread(buffer.data(), 1, buffer.size(), file)) > 0) {
        contents.append(buffer.data(), count);
    }
    std::fclose(file);
    return contents;
}

std::string described(const std::string& contents) {
    constexpr std::size_t kSizeAt = 16;
    constexpr std::size_t kSizeEnd = 24;
    std::array<char, 64> text;
    if (contents.starts_with("\x89PNG") && contents.size() >= kSizeEnd) {
        std::snprintf(text.data(), text.size(), "image of %u x %u", bigEndianAt(contents, kSizeAt),
                      bigEndianAt(contents, kSizeAt + 4));
    } else {
        std::snprintf(text.data(), text.size(), "%zu bytes %08x", contents.size(),
                      checksum(contents));
    }
    return text.data();
}

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    DIR* const entries = ::opendir(folder.c_str());
    while (const dirent* const entry = entries == nullptr ? nullptr : ::readdir(entries)) {
        const std::string name = static_cast<const char*>(entry->d_name);
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    if (entries != nullptr) {
        ::closedir(entries);
    }
    std::sort(names.begin(), names.end());
    return names;
}

void appendItem(std::vector<std::string>& lines, const std::string& root, const std::string& path) {
    const std::string place = root + path;
    struct stat found = {};
    if (::lstat(place.c_str(), &found) != 0) {
        lines.push_back("none " + path);
        return;
    }
    std::array<char, 16> mode;
    std::snprintf(mode.data(), mode.size(), "%04o", static_cast<unsigned>(found.st_mode & 07777U));
    std::string line = std::string(mode.data()) + " ";
    if (S_ISLNK(found.st_mode)) {
        line += "link";
    } else if (S_ISDIR(found.st_mode)) {
        line += "folder";
    } else {
        line += described(contentsOf(place));
    }
    lines.push_back(line + " " + path);
    if (S_ISDIR(found.st_mode)) {
        for (const std::string& name : namesIn(place)) {
            appendItem(lines, root, (path + "/").append(name));
        }
    }
}

// A theme's image in words "52 53", or the text itself.
std::string contentsFor(Text words) {
    int width = 0;
    int height = 0;
    return std::sscanf(words, "%d %d", &width, &height) == 2 ? pngOf(width, height) : words;
}

void makePhone(const std::string& root) {
    makeFolder(root);
    for (const char* const folder : kFolders) {
        makeFolder(root + folder);
    }
    for (const Link& link : kLinks) {
        const std::string path = root + link.path;
        if (::access(path.c_str(), F_OK) != 0 && ::symlink(link.target, path.c_str()) != 0) {
            fail("no link", path);
        }
    }
    for (const ThemeImage& image : kThemeImages) {
        writeFile(root, std::string("/Library/Themes/") + image.path,
                  pngOf(image.width, image.height));
    }
    for (const ThemeText& text : kThemeTexts) {
        writeFile(root, std::string("/Library/Themes/") + text.path, text.text);
    }
    for (const ThemeText& sound : kSounds) {
        writeFile(root, std::string("/User/Library/VelMoranth/Sounds/") + sound.path, sound.text);
    }
    for (const char* const identifier : kBundles) {
        writeFile(root, bundleFolder(identifier) + "/Info.plist",
                  std::string("{ CFBundleIdentifier = \"") + identifier + "\"; }");
    }
    const std::string dangling =
        root + "/Library/Themes/First/IconBundles/com.example.gone-large.png";
    if (::symlink("nowhere", dangling.c_str()) != 0) {
        fail("no link", dangling);
    }
}

}  // namespace

void layPhone(const Scenario& scenario, const std::string& root) {
    makePhone(root);
    if (scenario.preferences != nullptr) {
        writeFile(root, kPreferencesFile, preferencesNamed(scenario.preferences));
    }
    if (scenario.factoryPreferences) {
        writeFile(root, kFactoryFile, preferencesNamed("quiet"));
    }
    if (scenario.earlyFile != nullptr) {
        writeFile(root, scenario.earlyFile, "early");
    }
}

bool changeFiles(const Step& step, const std::string& root) {
    const std::string_view message = step.message;
    if (message == "write") {
        writeFile(root, step.texts[0], contentsFor(step.texts[1]));
    } else if (message == "erase") {
        eraseFile(root, step.texts[0]);
    } else if (message == "preferences") {
        writeFile(root, kPreferencesFile, preferencesNamed(step.texts[0]));
    } else {
        return false;
    }
    return true;
}

void writeFile(const std::string& root, const std::string& path, const std::string& contents) {
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos;
         slash = path.find('/', slash + 1)) {
        makeFolder(root + path.substr(0, slash));
    }
    const std::string place = root + path;
    std::FILE* const file = std::fopen(place.c_str(), "wb");
    if (file == nullptr ||
        std::fwrite(contents.data(), 1, contents.size(), file) != contents.size()) {
        fail("cannot write", place);
    }
    std::fclose(file);
}

void eraseFile(const std::string& root, const std::string& path) {
    const std::string place = root + path;
    if (::remove(place.c_str()) != 0) {
        fail("cannot erase", place);
    }
}

std::vector<std::string> listFolder(const std::string& root, const std::string& path) {
    std::vector<std::string> lines;
    appendItem(lines, root, path);
    return lines;
}

std::string pngOf(int width, int height) {
    std::string header;
    append(header, static_cast<std::uint32_t>(width));
    append(header, static_cast<std::uint32_t>(height));
    header += std::string("\x08\x06\0\0\0", 5);
    // A row begins with the number of its filter: none.
    const std::string row = '\0' + std::string(static_cast<std::size_t>(width) * 4, '\xC8');
    std::string rows;
    for (int y = 0; y < height; ++y) {
        rows += row;
    }
    std::string png = "\x89PNG\r\n\x1a\n";
    appendChunk(png, "IHDR", header);
    appendChunk(png, "IDAT", storedZlib(rows));
    appendChunk(png, "IEND", "");
    return png;
}

}  // namespace velmoranth::equality
