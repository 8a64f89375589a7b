// A program with this source starts itself again as a simulated process.
#include "simulator/process/launcher.h"
#include "tests/support/cases/case_runner.h"

namespace velmoranth::tests {

namespace {

std::optional<int> simulatedProcess(int argc, char** argv) {
    if (!simulator::isSimulatedProcess(argc, argv)) {
        return std::nullopt;
    }
    return simulator::simulatedProcessMain(argc, argv);
}

[[maybe_unused]] const bool isTold = [] {
    otherMain = simulatedProcess;
    return true;
}();

}  // namespace

}  // namespace velmoranth::tests
