// What `velmoranth preview` was asked to do, with every word understood and checked.
#pragma once

#include "cli/arguments.h"
#include "cli/device_options.h"
#include "cli/screen_options.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"
#include "simulator/device.h"

#include <span>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli {

// themed: as the device is set. stock: with nothing replaced. sideBySide: stock, then themed.
enum class PreviewKind { themed, stock, sideBySide };

// screen: one. allScreens: each in a file of its own, the output being their folder. sheet: the
// screens of several devices in one picture.
enum class PreviewExtent { screen, allScreens, sheet };

struct PreviewOptions {
    std::vector<std::string> themes;  // folders of this machine; empty with a root
    std::string root;                 // the device's folder; empty for a throw-away one
    std::string output = "preview.png";
    std::string deviceName = "phone";  // in the table of devices
    simulator::DeviceConfiguration device;
    // The options that say which device it is, and with which settings, as they are given to
    // another command: "--ios" and "12", "--exact-files" and "".
    std::vector<std::pair<std::string, std::string>> deviceWords;
    ScreenOptions screen;
    PreviewKind kind = PreviewKind::themed;
    PreviewExtent extent = PreviewExtent::screen;
    std::vector<NamedDevice> devices;            // of a sheet
    std::vector<simulator::ScreenKind> screens;  // of a sheet, or all
    bool isJson = false;
    std::string expected;  // a picture's file, or of all screens their folder; "" for none
    int tolerance = 0;     // of a component, 0 to 255
    std::string log;       // as ScreenRequest::logDestination
    bool follow = false;
    bool isQuiet = false;
    platform::Dictionary settings;  // what --set asks for

    [[nodiscard]] bool writesToStandardOutput() const { return output == "-"; }
};

// The problem is one of usage.
[[nodiscard]] desktop::Result<PreviewOptions> readPreviewOptions(const Arguments& arguments);

// What the command's row in the table holds.
[[nodiscard]] std::span<const Option> previewOptionTable();
[[nodiscard]] std::span<const Apart> previewOptionsApart();
[[nodiscard]] std::span<const Needed> neededByPreview();

}  // namespace velmoranth::cli
