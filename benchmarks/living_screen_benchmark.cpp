// The example theme's home screen on a phone again, 1125 × 2436 pixels, by a process that has drawn
// it before: as it is, and after the notice that the themes have changed. Against painting as many
// pixels twice with cairo. The goal is at most 1.5 times: only what changed is to be decoded and
// stretched again.
//
// Processor time, of the drawing process and of this one, which takes the pixels.
#include "desktop/notifications/notification_center.h"
#include "simulator/process/launcher.h"

#include "example_device.h"
#include "painting.h"
#include "timing.h"

#include <chrono>
#include <ctime>
#include <utility>
#include <vector>

namespace velmoranth::benchmarks {
namespace {

constexpr std::chrono::seconds kTimeLimit{60};

double secondsOf(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

class LivingScreen {
  public:
    LivingScreen()
        : screen_(expected(simulator::RunningScreen::start(device_.homeScreen()))),
          root_(expected(desktop::DeviceRoot::open(device_.folder()))) {
        if (clock_getcpuclockid(screen_->processId(), &clock_) != 0) {
            fail("the screen's process has no clock");
        }
    }

    simulator::Picture again() { return expected(screen_->render()).picture; }

    simulator::Picture afterAChangeOfThemes() {
        expected(desktop::postToProcesses(*root_, "com.qor.velmoranththemechanged.prefs"));
        return expected(screen_->nextPicture(kTimeLimit)).picture;
    }

    [[nodiscard]] double processorSeconds() const {
        return secondsOf(clock_) + secondsOf(CLOCK_PROCESS_CPUTIME_ID);
    }

  private:
    ExampleDevice device_;
    std::unique_ptr<simulator::RunningScreen> screen_;
    std::shared_ptr<desktop::DeviceRoot> root_;
    clockid_t clock_ = CLOCK_REALTIME;
};

void measure(benchmark::State& state, simulator::Picture (LivingScreen::*draw)()) {
    LivingScreen screen;
    simulator::Picture first = screen.again();
    benchmark::DoNotOptimize((screen.*draw)());
    Painting painting(std::move(first.pixels), first.width, first.height);
    std::vector<double> times;
    std::vector<double> bareTimes;
    for (auto _ : state) {
        const double start = screen.processorSeconds();
        benchmark::DoNotOptimize(painting.twice());
        const double painted = screen.processorSeconds();
        benchmark::DoNotOptimize((screen.*draw)());
        bareTimes.push_back(painted - start);
        times.push_back(screen.processorSeconds() - painted);
        state.SetIterationTime(times.back());
    }
    report(state, times, bareTimes);
}

void again(benchmark::State& state) {
    measure(state, &LivingScreen::again);
}

void afterAChangeOfThemes(benchmark::State& state) {
    measure(state, &LivingScreen::afterAChangeOfThemes);
}

}  // namespace

BENCHMARK(again)
    ->Name("frame again, as it is")
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(afterAChangeOfThemes)
    ->Name("frame again, after a change of themes")
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace velmoranth::benchmarks

int main(int argc, char** argv) {
    return velmoranth::benchmarks::mainOrSimulatedProcess(argc, argv);
}
