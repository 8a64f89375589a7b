// Whole processes of the command, as a shell starts them: their time, and as "peak_mb" the most
// memory that one had, which is worth looking at where it is above this program's own few
// megabytes.
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include "started_command.h"
#include "timing.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::benchmarks {
namespace {

using Words = std::vector<std::string>;

void command(benchmark::State& state, const Words& words, int code) {
    double peak = 0;
    std::vector<double> times;
    for (auto _ : state) {
        times.push_back(
            secondsOf([&] { peak = std::max(peak, runCommand(words, code).megabytes); }));
        state.SetIterationTime(times.back());
    }
    state.counters["median_us"] = median(times) * 1e6;
    state.counters["peak_mb"] = peak;
}

// The names behind "--screen takes", as the command has them.
Words screens() {
    const std::string text =
        runCommand({"preview", tests::kExampleTheme, "--screen", "?"}, 2).errors;
    constexpr std::string_view kBefore = "takes ";
    Words names;
    std::string list = text.substr(text.find(kBefore) + kBefore.size());
    list.resize(list.find(", not "));
    list.replace(list.find(" or "), 4, ", ");
    std::size_t from = 0;
    for (std::size_t comma = 0; (comma = list.find(", ", from)) != std::string::npos;
         from = comma + 2) {
        names.push_back(list.substr(from, comma - from));
    }
    names.push_back(list.substr(from));
    return names;
}

void add(const std::string& name, const Words& words, int code, int turns) {
    benchmark::RegisterBenchmark(name.c_str(),
                                 [=](benchmark::State& state) { command(state, words, code); })
        ->Iterations(turns)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

void addAll(const tests::TemporaryFolder& folder) {
    const auto preview = [&](Words more) {
        Words words{"preview", tests::kExampleTheme, "-o", folder / "a.png", "--quiet"};
        words.insert(words.end(), std::move_iterator(more.begin()), std::move_iterator(more.end()));
        return words;
    };
    constexpr int kTurns = 40;
    constexpr int kTurnsOfLong = 5;
    add("start-up/--version", {"--version"}, 0, kTurns);
    add("start-up/--help", {"--help"}, 0, kTurns);
    add("start-up/usage error", {"preview"}, 2, kTurns);
    add("start-up/mistyped option", {"preview", "--outptu"}, 2, kTurns);
    add("preview/phone-667, scale 2", preview({"--device", "phone-667"}), 0, 2 * kTurnsOfLong);
    for (const std::string& screen : screens()) {
        add("screen of a phone, scale 3/" + screen, preview({"--screen", screen}), 0, kTurnsOfLong);
    }
}

}  // namespace
}  // namespace velmoranth::benchmarks

int main(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    const velmoranth::tests::TemporaryFolder folder;
    velmoranth::benchmarks::addAll(folder);
    benchmark::RunSpecifiedBenchmarks();
}
