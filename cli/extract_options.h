// What `velmoranth extract` was asked to do, with every word understood and checked.
#pragma once

#include "cli/arguments.h"
#include "cli/catalog_selection.h"
#include "cli/extraction_plan.h"
#include "desktop/result/result.h"

#include <cstddef>
#include <span>
#include <string>

namespace velmoranth::cli {

struct ExtractOptions {
    std::string input;   // "-" for standard input
    std::string output;  // a folder; empty unless files are written
    bool lists = false;  // and writes nothing
    bool isJson = false;
    Selection selection;
    FileLayout layout = FileLayout::apart;
    std::size_t jobs = 1;
};

// The problem is one of usage.
[[nodiscard]] desktop::Result<ExtractOptions> readExtractOptions(const Arguments& arguments);

// What the command's row in the table holds.
[[nodiscard]] std::span<const Option> extractOptionTable();
[[nodiscard]] std::span<const Apart> extractOptionsApart();

}  // namespace velmoranth::cli
