// Runs a piece of drawing in a process of its own, and brings its picture back through shared
// memory.
//
// The process may take the memory and the time that the limits give, and writes neither files nor
// to the terminal. It dies with the thread that waits for it. What a library can still do in it,
// once a hostile file has taken it over, is what the user may do: it is no sandbox against that.
#pragma once

#include "desktop/result/result.h"
#include "desktop/vector_images/vector_images.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace velmoranth::desktop::vector_images {

struct SharedHead;

// Where the drawing puts what it found out. Lives in the drawing process.
class Sheet {
  public:
    Sheet(SharedHead& head, std::uint8_t* pixels, const DrawLimits& limits);

    void setSize(PointSize size);
    // Zeroed room for `height * width * 4` bytes, top row first; null with a problem set when that
    // is nothing or beyond the limits.
    [[nodiscard]] Result<std::uint8_t*> picture(double width, double height);

    [[nodiscard]] const DrawLimits& limits() const { return limits_; }

  private:
    SharedHead& head_;
    std::uint8_t* pixels_;
    const DrawLimits& limits_;
};

// Nothing when all went well.
using Drawing = std::function<std::optional<Problem>(Sheet&)>;

struct Drawn {
    PointSize size;
    DrawnImage image;
};

enum class Room { none, picture };  // whether the drawing makes a picture

// Waits for the drawing to end. Its problem comes back with its message alone, in one line.
[[nodiscard]] Result<Drawn> drawInProcess(const DrawLimits& limits, Room room,
                                          const Drawing& drawing);

}  // namespace velmoranth::desktop::vector_images
