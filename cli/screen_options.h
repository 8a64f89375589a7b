// Which screen `velmoranth preview` shows: the options around --screen, understood and checked.
#pragma once

#include "cli/arguments.h"
#include "desktop/result/result.h"
#include "simulator/process/launcher.h"

#include <string>

namespace velmoranth::cli {

struct ScreenOptions {
    simulator::ScreenKind kind = simulator::ScreenKind::home;
    int page = 1;
    std::string item;  // identifier of the folder or icon; "" for the one that the page offers
    int folderPage = 1;
    bool steps = false;
};

// The problem is one of usage.
[[nodiscard]] desktop::Result<ScreenOptions> readScreenOptions(const Arguments& arguments);

}  // namespace velmoranth::cli
