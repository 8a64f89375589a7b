// What a replacement adds to a method, beside what the same replacement written by hand adds to it.
// The three are measured turn by turn in one run; the least time of each counts, since whatever
// else the machine does only adds to it.
#pragma once

#include <benchmark/benchmark.h>

namespace velmoranth::benchmarks {

inline constexpr int kCallsInATurn = 1000;

// One of the three: makes kCallsInATurn calls, what they leave in pools included.
using Turn = void (*)(const void* receiver);

struct Variant {
    Turn turn;
    const void* receiver;
};

// Reports the time of one of our calls, and as counters that of the bare method ("bare_ns"), what
// each replacement adds ("by_hand_ns", "added_ns"), and "ratio", the one by the other.
void compareAdded(benchmark::State& state, const Variant& bare, const Variant& byHand,
                  const Variant& ours);

}  // namespace velmoranth::benchmarks
