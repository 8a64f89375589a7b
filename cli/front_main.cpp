// The program `velmoranth`.
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/device_program.h"

#include <string>
#include <vector>

int main(int argc, char** argv) {
    velmoranth::cli::keepProgramArguments(argv);
    return velmoranth::cli::runCommandLine(
        {velmoranth::cli::commands(), &velmoranth::cli::becomeDevice},
        std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
}
