// What it costs to check a theme of 1,500 icons beside decoding its pictures once, on all
// processors: the goal is at most 1.5 times.
#include "tests/support/temporary_folder.h"

#include "makers/conversion/found_themes.h"
#include "many_icons.h"
#include "started_command.h"
#include "timing.h"

namespace velmoranth::benchmarks {
namespace {

constexpr int kIcons = 1500;

void lintOfIcons(benchmark::State& state) {
    const tests::TemporaryFolder folder;
    const makers::FoundTheme theme = themeOfIcons(folder, kIcons);
    compare(state, [&] { runCommand({"lint", folder / "T.theme"}); }, [&] { decodeAll(theme); });
}

}  // namespace

BENCHMARK(lintOfIcons)
    ->Name("lint of 1,500 icons")
    ->Iterations(10)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace velmoranth::benchmarks
