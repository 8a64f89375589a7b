#include "added_cost.h"

#include <algorithm>
#include <chrono>
#include <limits>

namespace velmoranth::benchmarks {
namespace {

using Clock = std::chrono::steady_clock;

double nanosecondsOf(const Variant& variant) {
    const auto start = Clock::now();
    variant.turn(variant.receiver);
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count() / kCallsInATurn;
}

}  // namespace

void compareAdded(benchmark::State& state, const Variant& bare, const Variant& byHand,
                  const Variant& ours) {
    constexpr double kMost = std::numeric_limits<double>::max();
    double leastBare = kMost;
    double leastByHand = kMost;
    double leastOurs = kMost;
    for (auto _ : state) {
        leastBare = std::min(leastBare, nanosecondsOf(bare));
        leastByHand = std::min(leastByHand, nanosecondsOf(byHand));
        const double time = nanosecondsOf(ours);
        leastOurs = std::min(leastOurs, time);
        state.SetIterationTime(time * kCallsInATurn * 1e-9);
    }
    state.SetItemsProcessed(state.iterations() * kCallsInATurn);
    state.counters["bare_ns"] = leastBare;
    state.counters["by_hand_ns"] = leastByHand - leastBare;
    state.counters["added_ns"] = leastOurs - leastBare;
    state.counters["ratio"] = (leastOurs - leastBare) / (leastByHand - leastBare);
}

}  // namespace velmoranth::benchmarks
