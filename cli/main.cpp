// The program `velmoranth-device`, which `velmoranth` becomes for all that its tables do not
// answer.
#include "cli/command_line.h"
#include "cli/command_tables.h"
#include "cli/commands.h"
#include "simulator/process/launcher.h"

#include <fstream>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    namespace cli = velmoranth::cli;
    namespace simulator = velmoranth::simulator;
    if (simulator::isSimulatedProcess(argc, argv)) {
        return simulator::simulatedProcessMain(argc, argv);
    }
    if (argc == 3 && argv[1] == cli::kCommandTablesArgument) {
        std::ofstream file(argv[2], std::ios::binary);
        file << cli::commandTables(cli::commands()) << std::flush;
        return file ? 0 : 1;
    }
    return cli::runCommandLine({cli::commands(), &cli::showLibraries},
                               std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
}
