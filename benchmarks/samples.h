// The real catalogs that some rows are measured on.
#pragma once

#include "tests/support/places.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

namespace velmoranth::benchmarks {

inline std::filesystem::path realCatalogs() {
    return tests::samples("car");
}

// Says of a row why it is not measured, and where to put what it lacks.
inline void skipWithoutCatalogs(benchmark::State& state) {
    const std::string why = "no real catalogs in " + realCatalogs().lexically_normal().string() +
                            " (VELMORANTH_SAMPLES names another folder above car/)";
    state.SkipWithError(why.c_str());
}

}  // namespace velmoranth::benchmarks
