// The pictures of a theme: what size they are, and whether they are pictures at all.
#pragma once

#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace velmoranth::makers {

// A picture with a longer side than this is made smaller: more than any icon shows.
inline constexpr std::size_t kLongestSide = 1024;

struct PictureFacts {
    std::string problem = {};   // why it is none; "" for a picture
    bool isUnreadable = false;  // nothing is known but that
    std::size_t width = 0;      // pixels
    std::size_t height = 0;     // pixels

    [[nodiscard]] bool isPicture() const { return problem.empty(); }

    [[nodiscard]] bool isSquare() const { return width == height; }

    [[nodiscard]] std::size_t area() const { return width * height; }
};

class Pictures {
  public:
    // By their names alone: every file is a square picture, the larger the scale it names.
    Pictures() = default;

    // Those of this folder.
    explicit Pictures(std::string folder) : folder_(std::move(folder)) {}

    // Looks at them all, on all processors, so that they are known when they are asked for.
    void load(const std::vector<std::string>& names);

    // Of a file that somebody has looked at already, by what it is really called.
    void know(const std::string& name, PictureFacts facts) { facts_[name] = std::move(facts); }

    // What files are really called that go by other names here.
    void setSources(std::map<std::string, std::string> sources) { sources_ = std::move(sources); }

    [[nodiscard]] const PictureFacts& facts(const std::string& name);

    // What the file is really called.
    [[nodiscard]] const std::string& sourceOf(const std::string& name) const;

    [[nodiscard]] bool isByNames() const { return folder_.empty(); }

  private:
    std::string folder_;
    std::map<std::string, PictureFacts> facts_;  // by what they are really called
    std::map<std::string, std::string> sources_;
};

// The whole file, up to what a picture may have at most.
[[nodiscard]] desktop::Result<platform::Data> readWhole(const std::string& path);

// The picture as an 8-bit PNG whose longer side has kLongestSide pixels.
[[nodiscard]] desktop::Result<platform::Data> shrunk(const platform::Data& picture);

}  // namespace velmoranth::makers
