// A device with the example theme, whose icons are masked and overlaid, for programs that show it
// in processes of their own.
#pragma once

#include "desktop/files/create_device_root.h"
#include "desktop/files/device_root.h"
#include "desktop/plist/property_lists.h"
#include "desktop/result/result.h"
#include "simulator/process/launcher.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include "started_command.h"
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <utility>

namespace velmoranth::benchmarks {

// What is there, or the end of the benchmark.
template <class Value>
Value expected(desktop::Result<Value> result) {
    if (!result) {
        fail(desktop::toLine(result.error()));
    }
    return std::move(*result);
}

class ExampleDevice {
  public:
    ExampleDevice() {
        const std::string theme = std::filesystem::path(tests::kExampleTheme).filename();
        const auto root = expected(desktop::createDeviceRoot(folder()));
        if (!desktop::importFolder(*root, tests::kExampleTheme, "/Library/Themes/" + theme)) {
            fail("the example theme does not get onto the device");
        }
        const platform::Data bytes = desktop::writeXmlPropertyList(
            platform::Dictionary{{"ActiveThemes", platform::PropertyList::Array{theme}},
                                 {"enable", true},
                                 {"enableIconMask", true},
                                 {"enableOverlay", true}});
        folder_.file("device/var/mobile/Library/Preferences/com.qor.velmoranthprefs.plist",
                     std::string(bytes.begin(), bytes.end()));
    }

    [[nodiscard]] std::string folder() const { return folder_ / "device"; }

    // A phone's home screen.
    [[nodiscard]] simulator::ScreenRequest homeScreen() const {
        simulator::ScreenRequest request;
        request.device = *simulator::deviceConfiguration("phone", 13);
        request.deviceFiles = folder();
        request.enginePath = tests::kEngineLibrary;
        return request;
    }

  private:
    tests::TemporaryFolder folder_;
};

// The main function of a program that starts itself again as a simulated process.
inline int mainOrSimulatedProcess(int argc, char** argv) {
    if (simulator::isSimulatedProcess(argc, argv)) {
        return simulator::simulatedProcessMain(argc, argv);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

}  // namespace velmoranth::benchmarks
