// What the phone's library adds to two methods that the home screen calls all the time, against
// what the same replacements written by hand add to them. The goal is at most 2 times.
#include "added_cost.h"
#include "quiet_phone.h"

#include <string>
#include <vector>

namespace velmoranth::benchmarks {
namespace {

unsigned long callsOf(Turn turn, const void* receiver) {
    const unsigned long before = platformCalls();
    turn(receiver);
    return platformCalls() - before;
}

// What is compared does the same: the ways with a replacement call the platform equally often, and
// more often than the one without.
bool areComparable(const Variant& bare, const Variant& byHand, const Variant& ours) {
    const unsigned long wanted = callsOf(byHand.turn, byHand.receiver);
    return callsOf(ours.turn, ours.receiver) == wanted &&
           callsOf(bare.turn, bare.receiver) < wanted;
}

void measure(benchmark::State& state, const Variant& bare, const Variant& byHand,
             const Variant& ours) {
    if (!areComparable(bare, byHand, ours)) {
        state.SkipWithError("the replacements do not call the platform equally often");
        return;
    }
    compareAdded(state, bare, byHand, ours);
}

void askForAlpha(const void* receiver) {
    const id label = static_cast<id>(const_cast<void*>(receiver));
    for (int i = 0; i < kCallsInATurn; ++i) {
        benchmark::DoNotOptimize([label alpha]);
    }
}

void labelAlpha(benchmark::State& state) {
    startQuietPhone();
    const auto variant = [](Hooked hooked) {
        return Variant{&askForAlpha, static_cast<const void*>(labelView(hooked))};
    };
    measure(state, variant(Hooked::not_), variant(Hooked::byHand), variant(Hooked::byLibrary));
}

// A cache and the icons whose images are asked for, the ones first that were themed first.
struct Icons {
    id cache;
    const std::vector<id>* icons;
};

void askForImages(const void* receiver) {
    const auto& [cache, icons] = *static_cast<const Icons*>(receiver);
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    for (int i = 0; i < kCallsInATurn; ++i) {
        const id icon = (*icons)[static_cast<std::size_t>(i) % icons->size()];
        benchmark::DoNotOptimize([cache imageForIcon:icon]);
    }
    [pool release];
}

std::vector<id> makeIcons(std::size_t count) {
    std::vector<id> icons;
    for (std::size_t i = 0; i < count; ++i) {
        icons.push_back(
            [iconNamed(("com.example.application" + std::to_string(i)).c_str()) retain]);
    }
    return icons;
}

void imageForIcon(benchmark::State& state) {
    startQuietPhone();
    const std::vector<id> icons = makeIcons(static_cast<std::size_t>(state.range(0)));
    const Icons bare{imageCache(Hooked::not_), &icons};
    const Icons byHand{imageCache(Hooked::byHand), &icons};
    const Icons ours{imageCache(Hooked::byLibrary), &icons};
    measure(state, {&askForImages, &bare}, {&askForImages, &byHand}, {&askForImages, &ours});
    for (const id icon : icons) {
        [icon release];
    }
}

BENCHMARK(labelAlpha)->Name("alpha of a label")->UseManualTime();
// The images of that many icons are kept.
BENCHMARK(imageForIcon)
    ->Name("image of a themed icon")
    ->ArgName("icons")
    ->Arg(1)
    ->Arg(24)
    ->Arg(120)
    ->UseManualTime();

}  // namespace
}  // namespace velmoranth::benchmarks
