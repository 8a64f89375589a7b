// What `velmoranth extract` was asked to do, with every word understood and checked.
#pragma once

#include "cli/arguments.h"
#include "desktop/result/result.h"

#include <cstddef>
#include <span>
#include <string>

namespace velmoranth::cli {

// files: write the pictures. table, json: list the renditions.
enum class ExtractKind { files, table, json };

struct ExtractOptions {
    std::string input;
    std::string output;  // a folder; empty unless files are written
    ExtractKind kind = ExtractKind::files;
    std::string pattern = "*";  // of names
    std::size_t jobs = 1;
};

// The problem is one of usage.
[[nodiscard]] desktop::Result<ExtractOptions> readExtractOptions(const Arguments& arguments);

[[nodiscard]] std::span<const Option> extractOptionTable();

}  // namespace velmoranth::cli
