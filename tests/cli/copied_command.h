// The command in another place than where it was built, with all that it looks for beside itself.
#pragma once

#include "tests/support/places.h"

#include <filesystem>
#include <string>

namespace velmoranth::cli {

inline constexpr const char* kEngineName = "VelMoranth.so";

// Where the copy's own program lies. Anybody may run it who may enter the folder.
inline std::string copyCommand(const std::filesystem::path& folder) {
    namespace fs = std::filesystem;
    const fs::path built = tests::kCommand;
    for (const fs::path& name : {built.filename(), fs::path("velmoranth-device"),
                                 fs::path(kEngineName), fs::path("share")}) {
        fs::copy(built.parent_path() / name, folder / name, fs::copy_options::recursive);
    }
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        fs::permissions(entry, fs::perms(0755));
    }
    return folder / built.filename();
}

}  // namespace velmoranth::cli
