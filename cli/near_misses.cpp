#include "cli/near_misses.h"

#include "cli/nearest.h"
#include "desktop/files/descriptor.h"
#include "desktop/files/file_tree.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <map>
#include <set>
#include <string_view>

namespace velmoranth::cli {

using record::EntryKind;

namespace {

namespace fs = std::filesystem;

// "@3x" of "a@3x.png"; "" for a name without a scale.
std::string_view scaleOf(std::string_view name) {
    for (const std::string_view scale : {std::string_view("@2x"), std::string_view("@3x")}) {
        if (name.find(scale, name.rfind('/') + 1) != std::string_view::npos) {
            return scale;
        }
    }
    return {};
}

// The innermost folder that is named like a bundle; "" for none.
std::string bundleOf(const std::string& name) {
    std::string bundle;
    for (const fs::path& part : fs::path(name).parent_path()) {
        if (part.string().find('.') != std::string::npos) {
            bundle = part.string();
        }
    }
    return bundle;
}

// The name without a scale before its extension.
std::string withoutScale(const std::string& name) {
    const std::size_t dot = std::min(name.rfind('.'), name.size());
    const std::string_view start = std::string_view(name).substr(0, dot);
    return start.ends_with("@2x") || start.ends_with("@3x")
               ? std::string(start.substr(0, dot - 3)) + name.substr(dot)
               : name;
}

// Whether the names behind the last slash begin with the same letters, as far as what both are
// about reaches.
bool sameLetters(const std::string& a, const std::string& b) {
    const auto gist = [](const std::string& name) {
        return std::string_view(name).substr(name.rfind('/') + 1, gistOf(name).size());
    };
    return gist(a) == gist(b);
}

// Whether both lie in one bundle, where a letter or two may be a mistake, or in none. A picture of
// a bundle is meant for no other place but under its very name.
bool mayShareBundle(const std::string& a, const std::string& b) {
    constexpr std::size_t kMostMistakes = 2;
    const std::string one = bundleOf(a);
    const std::string other = bundleOf(b);
    if (one.empty() != other.empty()) {
        return sameLetters(a, b);
    }
    return editDistance(one, other) <= kMostMistakes;
}

}  // namespace

Farness farness(const std::string& wanted, const std::string& name) {
    const std::string_view scale = scaleOf(wanted);
    const int otherScale = scale == scaleOf(name) ? 0 : scale.empty() ? 1 : 2;
    return {otherScale, editDistance(wanted, name)};
}

std::string gistOf(std::string_view name) {
    std::string text(name.substr(name.rfind('/') + 1));
    text = text.substr(0, text.rfind('.'));
    std::ranges::transform(text, text.begin(), [](unsigned char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : static_cast<char>(c);
    });
    static constexpr std::array<std::string_view, 7> kEndings{
        "@2x", "@3x", "~iphone", "~ipad", "-large", "-small", "-icon"};
    for (bool changed = true; changed;) {
        changed = false;
        for (const std::string_view ending : kEndings) {
            if (text.size() > ending.size() && text.ends_with(ending)) {
                text.resize(text.size() - ending.size());
                changed = true;
            }
        }
    }
    return text;
}

std::vector<std::string> filesOfTheme(const desktop::DeviceRoot& root, const std::string& theme) {
    std::vector<std::string> files;
    const desktop::Descriptor folder(
        root.openFile("/Library/Themes/" + theme, O_RDONLY | O_DIRECTORY));
    if (folder.isOpen()) {  // of one that cannot be read to its end, what could be
        static_cast<void>(desktop::filesBelow(folder.get(), files));
    }
    std::ranges::sort(files);
    return files;
}

std::vector<NearMiss> nearMissesOf(const DeviceOfRun& device, const std::vector<AskedFile>& tried) {
    std::vector<NearMiss> misses;
    // Of whichever theme: where another one has the file, nothing looks on.
    std::set<std::string_view> asked;
    for (const AskedFile& file : tried) {
        asked.insert(file.name);
        asked.insert(file.askedAs);
    }
    for (const std::string& theme : device.themes) {
        std::multimap<std::string, const std::string*> missing;  // by what they are about
        // Of which screens take the one of their own scale.
        std::set<std::string> shown;
        for (const AskedFile& file : tried) {
            if (file.theme == theme && file.state == EntryKind::missing) {
                missing.emplace(gistOf(file.name), &file.name);
            } else if (file.theme == theme && isRead(file)) {
                shown.insert(file.askedAs.empty() ? file.name : file.askedAs);
            }
        }
        for (const std::string& name : filesOfTheme(*device.root, theme)) {
            if (asked.contains(name) || shown.contains(withoutScale(name))) {
                continue;
            }
            const std::string* wanted = nullptr;
            const auto [first, last] = missing.equal_range(gistOf(name));
            for (auto one = first; one != last; ++one) {
                if (mayShareBundle(name, *one->second) &&
                    (wanted == nullptr || farness(*one->second, name) < farness(*wanted, name))) {
                    wanted = one->second;
                }
            }
            if (wanted != nullptr) {
                misses.push_back({theme, name, *wanted});
            }
        }
    }
    return misses;
}

}  // namespace velmoranth::cli
