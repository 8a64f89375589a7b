#include "cli/linked_themes.h"

#include "desktop/files/descriptor.h"
#include "desktop/files/file_tree.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::Descriptor;
using desktop::DeviceRoot;
using desktop::Result;

namespace {

// What a link of an open folder says; nothing for what is no link.
std::optional<std::string> targetOf(int folder, const std::string& name) {
    std::array<char, PATH_MAX> target{};
    const ssize_t length = ::readlinkat(folder, name.c_str(), target.data(), target.size());
    if (length <= 0 || static_cast<std::size_t>(length) == target.size()) {
        return std::nullopt;
    }
    return std::string(target.data(), static_cast<std::size_t>(length));
}

bool isFolderHere(const std::string& path) {
    return Descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)).isOpen();
}

}  // namespace

Result<std::shared_ptr<DeviceRoot>> openWithLinkedThemes(const std::string& folder) {
    auto root = DeviceRoot::open(folder);
    if (!root) {
        return root;
    }
    const Descriptor themes((*root)->openFile(kInstalledThemes, O_RDONLY | O_DIRECTORY));
    std::vector<std::string> names;
    if (!themes.isOpen() || desktop::namesIn(themes.get(), names) != 0) {
        return root;
    }
    std::ranges::sort(names);
    desktop::DeviceFiles files(folder);
    for (const std::string& name : names) {
        const std::string place = std::string(kInstalledThemes) + "/" + name;
        auto target = targetOf(themes.get(), name);
        const bool isOutside = target && target->starts_with('/') &&
                               !Descriptor((*root)->openFile(place, O_PATH)).isOpen() &&
                               errno == ENOENT;
        if (isOutside && name.front() != '.' && isFolderHere(*target)) {
            files.grafts.push_back({place, std::move(*target)});
        }
    }
    return files.grafts.empty() ? root : DeviceRoot::open(files);
}

}  // namespace velmoranth::cli
