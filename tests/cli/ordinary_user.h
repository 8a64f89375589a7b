// The command as run by somebody who may do no more than the modes of files say. Where the tests
// run as root this is another user, with a copy of the command: the one that was built may lie
// below a folder that only its owner enters.
#pragma once

#include "tests/cli/command.h"
#include "tests/cli/copied_command.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include <sys/wait.h>
#include <unistd.h>

#include <string>

namespace velmoranth::cli {

class OrdinaryUser {
  public:
    OrdinaryUser() {
        if (::geteuid() == 0) {
            program_ = copyCommand(copy_.path());
            tryIt();
        }
    }

    // Why nothing can be run as such a user here; empty when it can.
    [[nodiscard]] const std::string& missing() const { return missing_; }

    // The setting, with this user for who runs the command.
    [[nodiscard]] CommandSetting with(CommandSetting setting = {}) const {
        setting.asNobody = ::geteuid() == 0;
        setting.program = program_;
        return setting;
    }

  private:
    void tryIt() {
        const pid_t child = ::fork();
        if (child == 0) {
            ::_exit(!becomeNobody() ? 1 : ::access(program_.c_str(), R_OK | X_OK) != 0 ? 2 : 0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        if (status != 0) {
            missing_ = WEXITSTATUS(status) == 2
                           ? "another user can run nothing in the folder of temporary files"
                           : "this process may not become another user";
        }
    }

    std::string program_ = tests::kCommand;
    std::string missing_;
    tests::TemporaryFolder copy_;
};

}  // namespace velmoranth::cli
