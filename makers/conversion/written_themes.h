// Themes on their way into a folder: written beside it, then put into it one by one, each as a
// whole.
#pragma once

#include "desktop/files/cleanup.h"
#include "desktop/result/result.h"

#include "makers/conversion/plan.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::makers {

// Whether a theme may be put there: nothing is, or a folder that may be replaced.
[[nodiscard]] desktop::Result<void> checkThemePlace(const std::string& path, bool replaces);

// How many files and links are in the folder that a theme there takes the place of; nothing when
// there is none.
[[nodiscard]] std::optional<std::size_t> filesReplacedAt(const std::string& path);

class WrittenThemes {
  public:
    // Makes the folder, and one in it that nobody looks for. Until place() all that is made goes
    // with this object.
    [[nodiscard]] static desktop::Result<WrittenThemes> create(const std::string& output);

    WrittenThemes(WrittenThemes&&) noexcept = default;
    WrittenThemes& operator=(WrittenThemes&&) noexcept = default;
    WrittenThemes(const WrittenThemes&) = delete;
    WrittenThemes& operator=(const WrittenThemes&) = delete;
    ~WrittenThemes() = default;

    // `folder` is where the sources lie; `written` is told of every file that is there.
    [[nodiscard]] desktop::Result<void> write(const std::string& name, const std::string& folder,
                                              const Plan& plan,
                                              const std::function<void()>& written);

    // Puts them in their places, instead of what is there when that may be replaced.
    [[nodiscard]] desktop::Result<void> place(bool replaces);

  private:
    WrittenThemes(std::string output, std::unique_ptr<desktop::RemovedIfEmpty> newOutput,
                  std::unique_ptr<desktop::RemovedAtEnd> folder);

    [[nodiscard]] desktop::Result<void> placeOne(const std::string& name, bool replaces) const;

    std::string output_;
    // Of an output that was made for this; it goes behind the folder in it.
    std::unique_ptr<desktop::RemovedIfEmpty> newOutput_;
    std::unique_ptr<desktop::RemovedAtEnd> folder_;
    std::vector<std::string> names_;
};

}  // namespace velmoranth::makers
