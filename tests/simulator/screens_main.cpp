// This program starts itself again as a simulated process.
#include "simulator/process/launcher.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (velmoranth::simulator::isSimulatedProcess(argc, argv)) {
        return velmoranth::simulator::simulatedProcessMain(argc, argv);
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
