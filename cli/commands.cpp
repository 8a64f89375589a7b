// The list of the commands, which stands here alone: help, manual pages, completions and the tables
// that the small program is built with are made from it.
#include "cli/commands.h"

#include "cli/messages.h"
#include "desktop/vector_images/vector_images.h"

#include <array>

namespace velmoranth::cli {

std::span<const Command> commands() {
    static const std::array kCommands{previewCommand(),        explainCommand(),
                                      namesCommand(),          newCommand(),
                                      lintCommand(),           convertCommand(),
                                      packCommand(),           extractCommand(),
                                      dumpCommand(),           deviceInitCommand(),
                                      deviceInstallCommand(),  deviceUninstallCommand(),
                                      deviceRespringCommand(), hooksCommand(),
                                      notifyCommand(),         soundCommand(),
                                      settingsListCommand(),   settingsGetCommand(),
                                      settingsSetCommand(),    settingsUnsetCommand(),
                                      settingsSaveCommand(),   settingsRenameCommand(),
                                      settingsDeleteCommand(), settingsRestoreCommand(),
                                      completionCommand(),     manCommand()};
    return kCommands;
}

ExitCode showLibraries() {
    print(desktop::vectorLibraries() + "\n");
    return ExitCode::done;
}

}  // namespace velmoranth::cli
