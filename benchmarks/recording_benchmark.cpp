// What it costs to take down what a process does: a preview of the home screen with a theme, the
// process's start included, recorded and not. The goal is at most 1.3 times. And what a preview
// pays that nobody records: the comparisons of what would have been noted, as many as a recorded
// one has entries, against the preview: the goal is at most 0.01.
#include "desktop/views/views.h"
#include "simulator/process/launcher.h"

#include "example_device.h"
#include "record/operations.h"
#include "record/recorder.h"
#include "timing.h"

#include <cstddef>

namespace velmoranth::benchmarks {
namespace {

// As many entries as were noted.
std::size_t preview(const ExampleDevice& device, bool isRecorded) {
    simulator::ScreenRequest request = device.homeScreen();
    request.isRecorded = isRecorded;
    return expected(simulator::renderScreen(request)).record.size();
}

void recordedPreview(benchmark::State& state) {
    const ExampleDevice device;
    std::size_t entries = 0;
    compare(state, [&] { entries = preview(device, true); }, [&] { preview(device, false); });
    state.counters["entries"] = static_cast<double>(entries);
}

void unrecordedPreview(benchmark::State& state) {
    const ExampleDevice device;
    const std::size_t entries = preview(device, true);
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
        [&] { preview(device, false); });
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

int main(int argc, char** argv) {
    return velmoranth::benchmarks::mainOrSimulatedProcess(argc, argv);
}
