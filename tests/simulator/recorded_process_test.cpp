// What a simulated process has in front of its services: nothing, unless it is to be recorded.
#include "desktop/files/create_device_root.h"
#include "desktop/files/file_manager.h"
#include "platform/platform.h"
#include "simulator/device.h"
#include "simulator/process/process.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include "record/recorder.h"
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeinfo>

namespace velmoranth::simulator::recorded_process_test {
namespace {

struct Listener final : record::RecordListener {
    int count = 0;

    void added(const record::Entry& /*entry*/) override { ++count; }

    void answered(std::size_t /*place*/, const std::string& /*answer*/) override {}
};

class RecordedProcess : public ::testing::Test {
  protected:
    std::unique_ptr<SimulatedProcess> start(record::RecordListener* listener) const {
        desktop::createDeviceRoot(folder / "device").value();
        ScreenRequest request;
        request.device = deviceConfiguration("phone", 13).value();
        request.deviceFiles = folder / "device";
        request.enginePath = tests::kEngineLibrary;
        return SimulatedProcess::start(request, [](const std::string&) {}, listener).value();
    }

    static bool hasTheServicesThemselves() {
        const platform::FileManager& files = platform::platform().fileManager;
        return typeid(files) == typeid(desktop::DesktopFileManager);
    }

    tests::TemporaryFolder folder;
};

TEST_F(RecordedProcess, NotAskedToRecordHasItsServicesAlone) {
    const auto process = start(nullptr);
    EXPECT_TRUE(hasTheServicesThemselves());
    EXPECT_EQ(record::Recorder::current(), nullptr);
}

TEST_F(RecordedProcess, AskedToRecordHasThemBehindTheRecorder) {
    Listener listener;
    const auto process = start(&listener);
    EXPECT_FALSE(hasTheServicesThemselves());
    EXPECT_NE(record::Recorder::current(), nullptr);
    EXPECT_GT(listener.count, 0);
}

}  // namespace
}  // namespace velmoranth::simulator::recorded_process_test
