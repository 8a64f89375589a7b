#include "cli/replaced_folder.h"

#include "cli/messages.h"

#include <nlohmann/json.hpp>

namespace velmoranth::cli {

std::string replacedText(std::optional<std::size_t> files, bool isWritten) {
    return files ? (isWritten ? "  replaced  the folder that was there, with "
                              : "  replaces  the folder that is there, with ") +
                       counted(*files, "file") + "\n"
                 : "";
}

nlohmann::ordered_json jsonOfReplaced(std::optional<std::size_t> files) {
    return files ? nlohmann::ordered_json(*files) : nlohmann::ordered_json(nullptr);
}

}  // namespace velmoranth::cli
