// What a run of `velmoranth preview` leaves behind: pictures in files, how they compare with those
// that were expected, and what is said about them.
#pragma once

#include "cli/comparison.h"
#include "cli/expected_picture.h"
#include "cli/explanation.h"
#include "cli/preview_options.h"
#include "desktop/result/result.h"
#include "simulator/device.h"
#include "simulator/picture.h"
#include "simulator/process/launcher.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// A screen in a picture, and what it has asked for.
struct ShownScreen {
    std::string_view screen;
    int page = 1;
    int pageCount = 1;
    NamedDevice device;
    Placed place;
    std::vector<std::string> methods;  // of a recorded process, otherwise none
    std::vector<AskedFile> files;
};

// Of the screen as it was drawn.
[[nodiscard]] ShownScreen shownScreen(const simulator::RenderedScreen& screen,
                                      simulator::ScreenKind kind, const NamedDevice& device,
                                      const Placed& place);

struct Verdict {
    std::string expected;  // the file
    bool isThere = true;
    Deviation deviation;
    std::string difference;  // the file that shows it; "" where there is none to show
};

struct DeliveredPicture {
    std::string file;
    std::size_t width = 0;  // pixels
    std::size_t height = 0;
    std::vector<ShownScreen> screens;
    std::optional<Verdict> verdict;  // when one was expected
};

// Writes the picture to `file`, compares it with what is expected there, and writes what differs.
[[nodiscard]] desktop::Result<DeliveredPicture> deliver(const PreviewOptions& options,
                                                        const simulator::Picture& picture,
                                                        const std::string& file,
                                                        std::vector<ShownScreen> screens);

[[nodiscard]] bool isAsExpected(const DeliveredPicture& picture);

// "preview.png: 1125 × 2436 pixels, iOS 13.3, phone", and a line of what was expected.
[[nodiscard]] std::string textOf(const DeliveredPicture& picture);
// docs/themes/preview.md has the form.
[[nodiscard]] std::string jsonOf(std::span<const DeliveredPicture> pictures,
                                 std::span<const std::string> themes);

// Says it all, as text or JSON, where standard output is no picture. The code says whether all are
// as expected.
ExitCode tell(const PreviewOptions& options, std::span<const DeliveredPicture> pictures,
              std::span<const std::string> themes);

}  // namespace velmoranth::cli
