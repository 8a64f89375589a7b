#include "makers/lint/requests.h"

#include "makers/conversion/names.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace velmoranth::makers {
namespace {

constexpr std::string_view kPng = ".png";

// `name` may have folders before it.
std::vector<FileRequest> imageRequests(const std::string& name, const std::string& bundle) {
    std::vector<FileRequest> requests;
    for (AskedName& asked : askedNames(name)) {
        requests.push_back({{"image", std::move(asked.name), bundle}, asked.isUsual});
    }
    return requests;
}

// Identifiers have neither, whatever the app.
bool mayBeIdentifier(std::string_view text) {
    return !text.empty() && text.find_first_of("@~ /") == std::string_view::npos;
}

// An icon in another format is meant for the app that the PNG file would be for.
std::vector<FileRequest> iconRequests(std::string_view given) {
    constexpr std::string_view kEnding = "-large.png";
    const std::string png = asPng(given);
    const std::string_view name = png;
    std::string identifier = name.ends_with(kEnding)
                                 ? std::string(name.substr(0, name.size() - kEnding.size()))
                                 : pictureName(name).base;
    if (!mayBeIdentifier(identifier)) {
        return {};
    }
    return {{{"icon", std::move(identifier), ""}, true}};
}

}  // namespace

std::vector<AskedName> askedNames(const std::string& file) {
    std::vector<AskedName> names;
    const auto add = [&names](const std::string& name, bool isUsual) {
        if (!name.empty() && std::ranges::find(names, name, &AskedName::name) == names.end()) {
            names.push_back({name, isUsual});
        }
    };
    if (!isPng(file)) {
        add(file, true);
        return names;
    }
    const std::string plain = inFolder(folderOf(file), pictureName(file).base);
    add(plain, true);
    add(plain + std::string(kPng), true);
    add(file.substr(0, file.size() - kPng.size()), false);
    add(file, false);
    return names;
}

std::vector<FileRequest> requestsOf(const std::string& file) {
    const std::string_view path = file;
    const std::string_view folder = path.substr(0, path.find('/'));
    if (folder.size() == path.size()) {
        return {};
    }
    const std::string_view rest = path.substr(folder.size() + 1);
    if (folder == "IconBundles") {
        return iconRequests(rest);
    }
    if (folder == "UIImages") {
        return imageRequests(std::string(rest), "");
    }
    const std::size_t slash = rest.find('/');
    if (folder == "Bundles" && slash != std::string_view::npos) {
        return imageRequests(std::string(rest.substr(slash + 1)),
                             std::string(rest.substr(0, slash)));
    }
    return {};
}

}  // namespace velmoranth::makers
