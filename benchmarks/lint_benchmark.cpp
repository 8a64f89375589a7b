// What it costs to check a theme of 1,500 icons beside decoding its pictures once, on all
// processors: the goal is at most 1.5 times.
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include "makers/conversion/found_themes.h"
#include "many_icons.h"
#include "timing.h"

#include <cstdlib>
#include <iostream>
#include <string>

namespace velmoranth::benchmarks {
namespace {

constexpr int kIcons = 1500;

void lintOfIcons(benchmark::State& state) {
    const tests::TemporaryFolder folder;
    const makers::FoundTheme theme = themeOfIcons(folder, kIcons);
    const std::string command =
        std::string("'") + tests::kCommand + "' lint '" + (folder / "T.theme") + "' > /dev/null";
    compare(
        state,
        [&] {
            // NOLINTNEXTLINE(cert-env33-c,concurrency-mt-unsafe): the command as it is run.
            if (std::system(command.c_str()) != 0) {
                std::cerr << "the theme cannot be checked\n";
                std::exit(1);
            }
        },
        [&] { decodeAll(theme); });
}

}  // namespace

BENCHMARK(lintOfIcons)
    ->Name("lint of 1,500 icons")
    ->Iterations(10)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace velmoranth::benchmarks
