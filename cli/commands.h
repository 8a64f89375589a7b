// The commands, each made in the file of its name.
#pragma once

#include "cli/arguments.h"

#include <span>

namespace velmoranth::cli {

// Every command, in the order of the help text.
[[nodiscard]] std::span<const Command> commands();

// What draws vector images here.
[[nodiscard]] ExitCode showLibraries();

[[nodiscard]] Command previewCommand();
[[nodiscard]] Command explainCommand();
[[nodiscard]] Command namesCommand();
[[nodiscard]] Command newCommand();
[[nodiscard]] Command lintCommand();
[[nodiscard]] Command convertCommand();
[[nodiscard]] Command packCommand();
[[nodiscard]] Command extractCommand();
[[nodiscard]] Command dumpCommand();
[[nodiscard]] Command deviceInitCommand();
[[nodiscard]] Command deviceInstallCommand();
[[nodiscard]] Command deviceUninstallCommand();
[[nodiscard]] Command deviceRespringCommand();
[[nodiscard]] Command hooksCommand();
[[nodiscard]] Command notifyCommand();
[[nodiscard]] Command soundCommand();
[[nodiscard]] Command settingsListCommand();
[[nodiscard]] Command settingsGetCommand();
[[nodiscard]] Command settingsSetCommand();
[[nodiscard]] Command settingsUnsetCommand();
[[nodiscard]] Command settingsSaveCommand();
[[nodiscard]] Command settingsRenameCommand();
[[nodiscard]] Command settingsDeleteCommand();
[[nodiscard]] Command settingsRestoreCommand();
[[nodiscard]] Command completionCommand();
[[nodiscard]] Command manCommand();

}  // namespace velmoranth::cli
