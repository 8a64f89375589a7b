#include "cli/replaced_folder.h"

#include "cli/messages.h"

namespace velmoranth::cli {

std::string replacedText(std::optional<std::size_t> files, bool isWritten) {
    return files ? (isWritten ? "  replaced  the folder that was there, with "
                              : "  replaces  the folder that is there, with ") +
                       counted(*files, "file") + "\n"
                 : "";
}

}  // namespace velmoranth::cli
