// A theme that shows what a device shows without one: a picture for each place that a device asks
// themes about, under the name that it looks for, to be painted over.
#pragma once

#include "desktop/result/result.h"
#include "platform/foundation.h"
#include "simulator/picture.h"
#include "simulator/screens/question_rows.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::makers {

// What a device asks themes for, and what it got.
struct Place {
    simulator::Question question;
    // Of files in a theme, in the order in which they are looked for.
    std::vector<std::string> names;
    bool isServed = false;  // by a file that the skeleton has
    std::string unlike =
        {};  // how a theme's picture would show otherwise than the device's; else ""
    // What the device shows there with nothing replaced, or what is to show; nothing for nil.
    std::optional<simulator::Picture> picture = {};
    std::string from = {};  // where the picture comes from; "" for the device
    std::string why = {};   // why there is none, where one was hoped for; else ""
};

struct SkeletonFile {
    platform::Data bytes;
    simulator::Question question = {};  // for whose answer it is; without a word for none
    std::size_t width = 0;              // pixels; 0 for what is no picture
    std::size_t height = 0;
    std::string from = {};
};

// A place that has no file, and why.
struct EmptyPlace {
    std::string name;  // of a file that it would show, as people name it
    simulator::Question question;
    std::string why;
};

// Those that would show otherwise than the device's own.
enum class UnlikePictures { leftOut, taken };

class Skeleton {
  public:
    explicit Skeleton(UnlikePictures unlike) : unlike_(unlike) {}

    // Adds files for the places of a device, at `scale` pixels per point, that have none. Of
    // several places with the same file the largest picture is taken. A problem when the files are
    // more than the 100,000 or the 2 GiB that a theme may have.
    [[nodiscard]] desktop::Result<void> add(std::span<const Place> places, double scale);

    // By their names.
    [[nodiscard]] const std::map<std::string, SkeletonFile>& files() const { return files_; }

    [[nodiscard]] const std::vector<EmptyPlace>& empty() const { return empty_; }

  private:
    // One file, and the places that ask for it.
    struct Wanted {
        const Place* best = nullptr;  // the largest picture; null when none has one
        const Place* first = nullptr;
        std::string_view unlike;  // of the first place that says so
    };

    void addFile(const std::string& name, const Wanted& wanted, std::size_t iconSide);
    void addInfo(const Place& calendar, double scale);
    void leaveEmpty(const std::string& name, const Place& place, std::string why);
    void put(const std::string& name, SkeletonFile file);

    UnlikePictures unlike_;
    std::map<std::string, SkeletonFile> files_;
    std::vector<EmptyPlace> empty_;
    std::uint64_t bytes_ = 0;
};

// The name for a picture that a screen of that scale draws: the first that names the scale, else
// the first that a picture may have; "" when no name is a picture's.
[[nodiscard]] std::string nameAtScale(std::span<const std::string> names, double scale);

}  // namespace velmoranth::makers
