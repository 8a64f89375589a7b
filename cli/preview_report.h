// What a preview says about its themes below the picture's line. It is found out beside the
// drawing, since it takes about as long.
#pragma once

#include "cli/preview_options.h"
#include "cli/throw_away_device.h"
#include "desktop/result/result.h"

#include <future>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::cli {

class PreviewReport {
  public:
    // Begins, unless the options want no report. `device` is the preview's and outlives this
    // object. A copy of it is asked, so that nothing of it changes.
    PreviewReport(const PreviewOptions& options, const DeviceOfRun& device);

    struct Found {
        std::vector<std::string> lines;
        std::optional<desktop::Problem> problem;  // why not all could be found out
    };

    // Waits for it; nothing the second time.
    [[nodiscard]] Found find();

    // The same, and says it. The problem comes behind the lines.
    [[nodiscard]] desktop::Result<void> tell();

  private:
    std::future<Found> found_;
};

}  // namespace velmoranth::cli
