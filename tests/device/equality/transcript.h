// A scenario carried out and written down. Each of the two programs brings a side of its own:
//
//   transcript_desktop NAME             writes the transcript of one scenario
//   transcript_desktop --list           the names of all
//   transcript_desktop --write FOLDER   the transcripts of all into FOLDER, as NAME.txt
//   transcript_device --compare FOLDER  carries out all, and shows what differs from those there;
//                                       with names behind FOLDER, only these
//
// and the other way round. A scenario has a process of its own, as the library has state that lasts
// as long as that. So the device's side can run where the desktop's cannot, for another processor
// or on another image of the library:
//
//   transcript_desktop --write wanted && qemu-aarch64 … transcript_device --compare wanted
//
// transcript_device consists of its .mm files, the sources that both share, the stand-ins and
// whichever loadLibrary() the build brings.
#pragma once

#include "device/equality/requests.h"
#include "record/entry.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::equality {

// A process with the library, on one kind of services. Files are there when it is made.
class Side {
  public:
    Side() = default;
    Side(const Side&) = delete;
    Side& operator=(const Side&) = delete;
    virtual ~Side() = default;

    // The folder with the phone's files.
    [[nodiscard]] virtual std::string root() const = 0;
    // From now on what the process does is taken down.
    virtual void startRecording() = 0;
    // The library comes into the process.
    virtual void load() = 0;
    // What comes back, in words; "" for nothing.
    [[nodiscard]] virtual std::string send(const Step& step) = 0;
    // A Darwin notification, delivered at once.
    virtual void post(const std::string& name) = 0;
    // Time passes on the main queue.
    virtual void wait(long long milliseconds) = 0;
    // What the process did since the last time.
    [[nodiscard]] virtual record::Record takeRecord() = 0;
    // What lies over the screen now, in words, and what the runtime warned of since the last time.
    [[nodiscard]] virtual std::vector<std::string> events() = 0;
};

// Each program's own.
[[nodiscard]] std::unique_ptr<Side> makeSide(const Scenario& scenario);

// Words of results, the same on both sides.
struct ShownImage {
    double width = 0;  // points
    double height = 0;
    double scale = 1;
};

[[nodiscard]] std::string shown(const ShownImage& image);
[[nodiscard]] std::string shownNumber(double number);
[[nodiscard]] std::string shownText(const std::optional<std::string>& text);
inline constexpr const char* kNothing = "nil";
// The very object of Given::image.
inline constexpr const char* kTheGiven = "the given image";

[[nodiscard]] int runProgram(int argumentCount, char** arguments);

}  // namespace velmoranth::equality
