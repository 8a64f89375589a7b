// What `velmoranth preview` was asked to do, with every word understood and checked.
#pragma once

#include "cli/arguments.h"
#include "cli/screen_options.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"
#include "simulator/device.h"

#include <span>
#include <string>
#include <vector>

namespace velmoranth::cli {

// themed: as the device is set. stock: with nothing replaced. sideBySide: stock, then themed.
enum class PreviewKind { themed, stock, sideBySide };

struct PreviewOptions {
    std::vector<std::string> themes;  // folders of this machine; empty with a root
    std::string root;                 // the device's folder; empty for a throw-away one
    std::string output = "preview.png";
    std::string deviceName = "phone";  // in the table of devices
    simulator::DeviceConfiguration device;
    ScreenOptions screen;
    PreviewKind kind = PreviewKind::themed;
    std::string log;  // as ScreenRequest::logDestination
    bool follow = false;
    bool isQuiet = false;
    platform::Dictionary settings;  // what --set asks for

    [[nodiscard]] bool writesToStandardOutput() const { return output == "-"; }
};

// The problem is one of usage.
[[nodiscard]] desktop::Result<PreviewOptions> readPreviewOptions(const Arguments& arguments);

[[nodiscard]] std::span<const Option> previewOptionTable();

}  // namespace velmoranth::cli
