// What it costs to take down what a process does: a preview of the home screen with a theme, the
// process's start included, recorded and not. The goal is at most 1.3 times. And what a preview
// pays that nobody records: the comparisons of what would have been noted, as many as a recorded
// one has entries, against the preview: the goal is at most 0.01.
#include "desktop/files/create_device_root.h"
#include "desktop/files/device_root.h"
#include "desktop/plist/property_lists.h"
#include "desktop/views/views.h"
#include "simulator/process/launcher.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include "record/operations.h"
#include "record/recorder.h"
#include "timing.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <utility>

namespace velmoranth::benchmarks {
namespace {

class Device {
  public:
    Device() {
        const std::string theme = std::filesystem::path(tests::kExampleTheme).filename();
        const auto root = desktop::createDeviceRoot(folder_ / "device");
        if (!root ||
            !desktop::importFolder(**root, tests::kExampleTheme, "/Library/Themes/" + theme)) {
            fail("no device");
        }
        const platform::Data bytes = desktop::writeXmlPropertyList(
            platform::Dictionary{{"ActiveThemes", platform::PropertyList::Array{theme}},
                                 {"enable", true},
                                 {"enableIconMask", true},
                                 {"enableOverlay", true}});
        folder_.file("device/var/mobile/Library/Preferences/com.qor.velmoranthprefs.plist",
                     std::string(bytes.begin(), bytes.end()));
    }

    // As many entries as were noted.
    std::size_t preview(bool isRecorded) const {
        simulator::ScreenRequest request;
        request.device = *simulator::deviceConfiguration("phone", 13);
        request.deviceFiles = folder_ / "device";
        request.enginePath = tests::kEngineLibrary;
        request.isRecorded = isRecorded;
        const auto screen = simulator::renderScreen(request);
        if (!screen) {
            fail(desktop::toLine(screen.error()));
        }
        return screen->record.size();
    }

  private:
    [[noreturn]] static void fail(const std::string& message) {
        std::cerr << message << "\n";
        std::exit(1);
    }

    tests::TemporaryFolder folder_;
};

void recordedPreview(benchmark::State& state) {
    const Device device;
    std::size_t entries = 0;
    compare(state, [&] { entries = device.preview(true); }, [&] { device.preview(false); });
    state.counters["entries"] = static_cast<double>(entries);
}

void unrecordedPreview(benchmark::State& state) {
    const Device device;
    const std::size_t entries = device.preview(true);
    const desktop::DesktopView view({{0, 0}, {60, 60}});
    platform::Rect frame{{1, 2}, {3, 4}};
    compare(
        state,
        [&] {
            for (std::size_t i = 0; i < entries; ++i) {
                benchmark::DoNotOptimize(frame);
                record::tell(view, record::messageOf("View", "setFrame"), frame);
            }
        },
        [&] { device.preview(false); });
}

}  // namespace

BENCHMARK(recordedPreview)
    ->Name("recorded preview")
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(unrecordedPreview)
    ->Name("what an unrecorded preview pays")
    ->Iterations(10)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace velmoranth::benchmarks

// This program starts itself again as a simulated process.
int main(int argc, char** argv) {
    if (velmoranth::simulator::isSimulatedProcess(argc, argv)) {
        return velmoranth::simulator::simulatedProcessMain(argc, argv);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
