// The device that a skeleton is made with: it has the skeleton so far as its only theme, is asked
// what it looks for there, and shows its screens with the image dump on.
#pragma once

#include "cli/throw_away_device.h"
#include "desktop/result/result.h"
#include "simulator/device.h"
#include "simulator/process/launcher.h"

#include "makers/skeleton/skeleton.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli {

class DumpDevice {
  public:
    // How many of how many things are done.
    using Progress = std::function<void(std::size_t done, std::size_t all)>;

    [[nodiscard]] static desktop::Result<DumpDevice> create();

    // Every page of every screen, with no theme. What is dumped lies in dumpFolder() then, besides
    // what lay there before: the first picture of a name stays.
    [[nodiscard]] desktop::Result<void> showScreens(
        const simulator::DeviceConfiguration& configuration, const Progress& progress) const;

    // Of this machine; not there before anything is dumped.
    [[nodiscard]] std::string dumpFolder() const;

    // Puts what of the files is not there yet into the theme.
    [[nodiscard]] desktop::Result<void> lay(
        const std::map<std::string, makers::SkeletonFile>& files) const;

    // What is looked for, for each of the questions that the device can be asked, and what it shows
    // by itself where the theme has nothing.
    [[nodiscard]] desktop::Result<std::vector<makers::Place>> places(
        const simulator::DeviceConfiguration& configuration,
        std::span<const simulator::Question> questions, const Progress& progress) const;

  private:
    using Process = std::unique_ptr<simulator::RunningScreen>;

    explicit DumpDevice(DeviceOfRun device) : device_(std::move(device)) {}

    [[nodiscard]] desktop::Result<void> findNames(
        const simulator::DeviceConfiguration& configuration,
        std::vector<makers::Place>& places) const;
    [[nodiscard]] desktop::Result<void> findPictures(
        const simulator::DeviceConfiguration& configuration, std::vector<makers::Place>& places,
        const Progress& progress) const;

    DeviceOfRun device_;
};

// The questions that what is in a dump answers: "Bundles/B/N@3x.png" is image N of B.
[[nodiscard]] std::vector<simulator::Question> questionsOfDump(std::span<const std::string> files);

}  // namespace velmoranth::cli
