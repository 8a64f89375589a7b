#include "cli/saved_copies.h"

#include "cli/nearest.h"
#include "core/preferences.h"

#include <string_view>
#include <vector>

namespace velmoranth::cli {

using desktop::DeviceRoot;

namespace {

// What is wrong with a name; "" for nothing.
std::string faultOf(const std::string& name) {
    if (name.empty()) {
        return "a saved copy needs a name, and this one is empty";
    }
    if (name == "." || name == ".." || name.find('/') != std::string::npos || !isPlainText(name)) {
        return "a saved copy's name is plain text without slashes, which " + inQuotes(name) +
               " is not";
    }
    return {};
}

}  // namespace

std::string placeOf(const DeviceRoot& root, std::string_view name) {
    return shown(onThisMachine(root, core::savedCopyPath(name)));
}

ExitCode withNames(const Arguments& arguments, std::string_view command, const DeviceWork& work) {
    for (const std::string& name : arguments.positionals()) {
        if (const std::string fault = faultOf(name); !fault.empty()) {
            return fail(ExitCode::wrongUsage, fault);
        }
    }
    return withLockedDevice(arguments, command, work);
}

std::string freeName(const DeviceRoot& root, const std::string& name) {
    std::string free = name;
    for (int number = 2; kindAt(root, core::savedCopyPath(free)) != ItemKind::none; ++number) {
        free = name + " " + std::to_string(number);
    }
    return free;
}

std::optional<ExitCode> refuseMissing(const DeviceRoot& root, const std::string& name) {
    const ItemKind kind = kindAt(root, core::savedCopyPath(name));
    if (kind == ItemKind::file || kind == ItemKind::link) {
        return std::nullopt;
    }
    if (kind != ItemKind::none) {
        return fail(ExitCode::badInput,
                    placeOf(root, name) + ": this is no file, and so no saved copy");
    }
    const std::vector<std::string> saved = savedNames(root);
    const std::vector<std::string_view> candidates(saved.begin(), saved.end());
    const std::string near = suggestion(name, candidates);
    return fail(ExitCode::badInput,
                placeOf(root, name) + ": there is no saved copy " + inQuotes(name) +
                    (near.empty() ? "; velmoranth settings list shows the saved copies" : near));
}

}  // namespace velmoranth::cli
