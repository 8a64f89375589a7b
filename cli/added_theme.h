// A theme of our own on the device of a run, for a question that the given themes alone do not
// answer: while the object lives, its folder is there and may be filled, and the device may have
// other active themes and settings. Both are taken back.
#pragma once

#include "cli/explanation.h"

#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::cli {

class AddedTheme {
  public:
    // `investigation` outlives this object.
    explicit AddedTheme(const Investigation& investigation);
    ~AddedTheme();
    AddedTheme(const AddedTheme&) = delete;
    AddedTheme& operator=(const AddedTheme&) = delete;

    // A name that none of the given themes has.
    [[nodiscard]] const std::string& name() const { return name_; }

    // On this machine.
    [[nodiscard]] std::filesystem::path folder() const;

    // Gives it a copy of a file of the device under that name. False when it cannot be.
    [[nodiscard]] bool copy(const std::string& devicePath, const std::string& name) const;

    // Has the device use it alone, or behind the given themes.
    [[nodiscard]] bool useAlone(const platform::Dictionary& settings) const;
    [[nodiscard]] bool useBehind(const platform::Dictionary& settings) const;

  private:
    const Investigation& investigation_;
    std::string name_ = "added";
};

}  // namespace velmoranth::cli
