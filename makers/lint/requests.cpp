#include "makers/lint/requests.h"

#include "makers/conversion/names.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace velmoranth::makers {
namespace {

constexpr std::string_view kPng = ".png";

void addImage(std::vector<FileRequest>& requests, const std::string& name,
              const std::string& bundle, bool isUsual) {
    const bool isThere = std::ranges::any_of(
        requests, [&](const FileRequest& one) { return one.question.argument == name; });
    if (!name.empty() && !isThere) {
        requests.push_back({{"image", name, bundle}, isUsual});
    }
}

// `name` may have folders before it.
std::vector<FileRequest> imageRequests(const std::string& name, const std::string& bundle) {
    std::vector<FileRequest> requests;
    if (!isPng(name)) {
        addImage(requests, name, bundle, true);
        return requests;
    }
    const std::string plain = inFolder(folderOf(name), pictureName(name).base);
    addImage(requests, plain, bundle, true);
    addImage(requests, plain + std::string(kPng), bundle, true);
    addImage(requests, name.substr(0, name.size() - kPng.size()), bundle, false);
    addImage(requests, name, bundle, false);
    return requests;
}

// Identifiers have neither, whatever the app.
bool mayBeIdentifier(std::string_view text) {
    return !text.empty() && text.find_first_of("@~ /") == std::string_view::npos;
}

std::vector<FileRequest> iconRequests(std::string_view name) {
    constexpr std::string_view kEnding = "-large.png";
    std::string identifier = name.ends_with(kEnding)
                                 ? std::string(name.substr(0, name.size() - kEnding.size()))
                                 : pictureName(name).base;
    if (!mayBeIdentifier(identifier)) {
        return {};
    }
    return {{{"icon", std::move(identifier), ""}, true}};
}

}  // namespace

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
