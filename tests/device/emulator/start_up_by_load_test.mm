// Which of the library's functions start it up: +load of the main class, for processors that
// authenticate pointers, the constructors elsewhere.
#include "device/emulator/pac.h"
#include "device/library/device_process.h"

#include <cstdlib>

namespace velmoranth::standins::start_up_by_load_test {
namespace {

class StartUpByLoad : public DeviceProcess {
  protected:
    static std::size_t replaced() { return journalOf("MSHookMessageEx ").size(); }

    static std::size_t observers() { return journalOf("CFNotificationCenterAddObserver ").size(); }
};

TEST_F(StartUpByLoad, IsWholeWithoutConstructorsWherePointersAreSigned) {
    setenv("VELMORANTH_CONSTRUCTORS", "none", 1);
    runSystem(kiOS13);
    load();
    const bool isByLoad = emulator::pac::isArm64e();
    EXPECT_EQ(replaced(), isByLoad ? 51U : 0U);
    EXPECT_EQ(observers(), isByLoad ? 4U : 0U);
}

TEST_F(StartUpByLoad, IsDoneOnceWithConstructors) {
    runSystem(kiOS13);
    load();
    EXPECT_EQ(replaced(), 51U);
    EXPECT_EQ(observers(), 4U);
    // What the start sends to the class, others may send too.
    clearJournal();
    [velMoranth() load];
    EXPECT_EQ(replaced(), 0U);
    EXPECT_EQ(observers(), 0U);
}

}  // namespace
}  // namespace velmoranth::standins::start_up_by_load_test
