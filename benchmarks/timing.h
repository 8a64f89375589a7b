// Two pieces of work measured side by side, turn by turn, so that what else the machine does falls
// on both. A ratio of medians holds on a busy machine where a ratio of sums does not.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace velmoranth::benchmarks {

inline double secondsOf(const auto& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Seconds of turns: their medians, and as "ratio" how many times the bare one the other is.
inline void report(benchmark::State& state, std::vector<double>& workTimes,
                   std::vector<double>& bareTimes) {
    const double bareTime = median(bareTimes);
    state.counters["bare_us"] = bareTime * 1e6;
    state.counters["median_us"] = median(workTimes) * 1e6;
    state.counters["ratio"] = median(workTimes) / bareTime;
}

// Reports the time of `work`, and as "ratio" how many times that of `bare` it is.
inline void compare(benchmark::State& state, const auto& work, const auto& bare) {
    std::vector<double> workTimes;
    std::vector<double> bareTimes;
    for (auto _ : state) {
        bareTimes.push_back(secondsOf(bare));
        workTimes.push_back(secondsOf(work));
        state.SetIterationTime(workTimes.back());
    }
    report(state, workTimes, bareTimes);
}

}  // namespace velmoranth::benchmarks
