// The commands, each made in the file of its name; command_line.cpp lists them.
#pragma once

#include "cli/arguments.h"

namespace velmoranth::cli {

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
