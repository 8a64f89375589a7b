// What it costs to convert a theme of pictures that need no change beside decoding them once, on
// all processors, and copying them: the goal is at most 1.3 times.
#include "tests/support/temporary_folder.h"

#include "makers/conversion/found_themes.h"
#include "many_icons.h"
#include "started_command.h"
#include "timing.h"

#include <filesystem>

namespace velmoranth::benchmarks {
namespace {

namespace fs = std::filesystem;

constexpr int kPictures = 10000;

void convertOfIcons(benchmark::State& state) {
    const tests::TemporaryFolder folder;
    const makers::FoundTheme theme = themeOfIcons(folder, kPictures);
    compare(
        state,
        [&] { runCommand({"convert", folder / "T.theme", "-o", folder / "out", "--force"}); },
        [&] {
            decodeAll(theme);
            fs::remove_all(folder / "copy");
            fs::copy(folder / "T.theme", folder / "copy", fs::copy_options::recursive);
        });
}

}  // namespace

BENCHMARK(convertOfIcons)
    ->Name("convert of 10,000 pictures")
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace velmoranth::benchmarks
