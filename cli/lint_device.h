// A device to check a theme with: it has every file of the theme by its name, but not the pictures
// themselves, which have been decoded already and would be again for every request.
#pragma once

#include "cli/explanation.h"
#include "cli/throw_away_device.h"
#include "desktop/result/result.h"
#include "simulator/device.h"
#include "simulator/process/launcher.h"

#include "makers/conversion/found_themes.h"
#include "makers/lint/answers.h"
#include "makers/lint/judged_pictures.h"

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli {

// With no file in the theme yet. A second theme behind it has an opaque icon for kProbeApp.
[[nodiscard]] desktop::Result<DeviceOfRun> makeLintDevice();

// Puts the theme onto it. Masks and Info.plist are the theme's own, other pictures are one opaque
// pixel each, or nothing where no picture can be made of them; links are as they are.
[[nodiscard]] desktop::Result<void> layOut(const DeviceOfRun& device,
                                           const makers::FoundTheme& theme,
                                           const makers::JudgedPictures& pictures);

inline constexpr const char* kLintedTheme = "theme";
inline constexpr const char* kProbeApp = "com.velmoranth.probe";

// Every kind of device, asked about the theme on a device of makeLintDevice().
class LintDevices {
  public:
    explicit LintDevices(const DeviceOfRun& device);

    // In the order in which they are worth asking.
    [[nodiscard]] const std::vector<makers::AskedDevice>& devices() const { return names_; }

    // How many of these differ enough to be asked for every part of the home screen.
    static constexpr std::size_t kMostDifferent = 3;

    // Starts the processes that are asked whatever the theme is, before it is there: nothing is
    // read of it until a question is. What cannot be started is found out when it is asked. `files`
    // is how many the theme has.
    void startFirst(std::size_t files);

    // Asks the device all of these, so that nothing is kept from one to another that would be found
    // under the same name; the answers are in an order of their own. Several threads may ask, each
    // another device. Many are shared by two processes.
    [[nodiscard]] desktop::Result<std::vector<makers::AskedRequest>> ask(
        std::size_t device, const std::vector<makers::AskedRequest>& requests);

    // In one process, in order, what an earlier one leaves behind being there for a later one.
    // `worker` is below kWorkers: each has processes of its own.
    [[nodiscard]] desktop::Result<std::vector<makers::AskedRequest>> askTogether(
        std::size_t device, const std::vector<simulator::Question>& questions,
        std::size_t worker = 0);

    // An ordinary process of the device, with these settings besides the preferences.
    [[nodiscard]] desktop::Result<simulator::Answer> askWith(std::size_t device,
                                                             const simulator::Question& question,
                                                             const platform::Dictionary& settings);

  private:
    static constexpr std::size_t kWorkers = 2;
    using Processes = std::map<simulator::ProcessKind, std::unique_ptr<simulator::RunningScreen>>;

    [[nodiscard]] Investigation investigation(std::size_t device) const;
    [[nodiscard]] desktop::Result<simulator::RunningScreen*> processFor(
        std::size_t device, std::size_t worker, const simulator::Question& question);
    // Those of the requests that the batch names.
    [[nodiscard]] desktop::Result<std::vector<makers::AskedRequest>> askBatch(
        std::size_t device, std::size_t worker, const std::vector<makers::AskedRequest>& requests,
        const std::vector<std::size_t>& batch);

    const DeviceOfRun& device_;
    std::vector<makers::AskedDevice> names_;
    std::vector<simulator::DeviceConfiguration> configurations_;
    std::vector<std::array<Processes, kWorkers>> processes_;  // of each device
};

}  // namespace velmoranth::cli
