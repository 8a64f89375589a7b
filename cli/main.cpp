#include "cli/command_line.h"
#include "simulator/process/launcher.h"

#include <string>
#include <vector>

int main(int argc, char** argv) {
    if (velmoranth::simulator::isSimulatedProcess(argc, argv)) {
        return velmoranth::simulator::simulatedProcessMain(argc, argv);
    }
    return velmoranth::cli::runCommandLine(
        std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
}
