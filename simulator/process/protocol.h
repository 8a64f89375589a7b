// What the launcher and a simulated process say to each other: messages over one socket, each a
// kind, a length and that many bytes. Nothing of the other side is believed before it is checked.
#pragma once

#include "desktop/result/result.h"
#include "simulator/picture.h"
#include "simulator/process/launcher.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::simulator {

// The hidden first argument, and the descriptor that such a process finds its socket at.
inline constexpr std::string_view kSimulatedProcessArgument = "--simulated-process";
inline constexpr int kSimulatedProcessDescriptor = 3;
// Of one that is recorded: what it has noted and not yet sent (unsent_record.h).
inline constexpr int kUnsentRecordDescriptor = 4;
// From here on numbers are in nobody's way while a process is started.
inline constexpr int kFreeDescriptors = 5;

// Posted to the processes of a device that are to start again; no phone knows it.
inline constexpr const char* kRespringNotice = "velmoranth.simulator.respring";

enum class MessageKind : std::uint32_t {
    // To the process.
    request = 1,  // JSON of the request; comes first
    draw,         // empty
    showPage,     // the page in decimal digits
    act,          // JSON of an action
    ask,          // JSON of a question
    askApart,     // JSON of several
    stop,         // empty
    // From the process.
    ready,       // empty: the home screen is there
    acted,       // empty, or JSON of why the action could not be done
    answer,      // JSON of a picture's size, 0 × 0 for none, or of why there is no such question
    log,         // one line
    filesAsked,  // the entries about files of a question asked apart, as filesToBytes
    recorded,    // what it has noted, for RecordNotes
    notice,      // empty: notifications have been delivered
    respring,    // empty: the screen is to start again
    screen,      // JSON of a screen; its pixels follow
    pixels,      // of the screen before
    problem,     // JSON; the process ends
};

struct Message {
    MessageKind kind = MessageKind::stop;
    std::string payload;
    std::vector<std::uint8_t> pixels;  // in place of a payload; none of other kinds
};

using Clock = std::chrono::steady_clock;

// Sends all of the parts as one payload. False when the other side is gone, or, given a time, when
// it did not take it by then.
bool sendMessage(int descriptor, MessageKind kind,
                 std::span<const std::span<const std::uint8_t>> parts,
                 std::optional<Clock::time_point> deadline = {});
bool sendMessage(int descriptor, MessageKind kind, std::string_view payload = {},
                 std::optional<Clock::time_point> deadline = {});

// Waits for the beginning of a message, or the end of the connection. False when none came in time.
[[nodiscard]] bool waitForMessage(int descriptor, Clock::time_point deadline);

enum class Received { message, closed, late, malformed };

// Takes the next message; waits for ever without a time.
[[nodiscard]] Received receiveMessage(int descriptor, Message& message,
                                      std::optional<Clock::time_point> deadline = {});

// Entries of a record in one payload, and back: nothing when the bytes are not what filesToBytes
// makes.
[[nodiscard]] std::string filesToBytes(const record::Record& record);
[[nodiscard]] std::optional<record::Record> filesFromBytes(std::string_view bytes);

// A screen without its pixels.
struct ScreenHeader {
    std::size_t width = 0;   // pixels
    std::size_t height = 0;  // pixels
    double scale = 1;
    std::vector<ShownIcon> icons = {};
    std::optional<ShownFolder> folder = {};
    int page = 1;
    int pageCount = 1;
    std::size_t peakMemoryBytes = 0;
};

// The types are ScreenRequest, ScreenAction, Question, a vector of these, ScreenHeader and
// desktop::Problem.
template <class T>
[[nodiscard]] std::string toJson(const T& value);
// Nothing when the text is not what toJson makes.
template <class T>
[[nodiscard]] std::optional<T> fromJson(std::string_view json);

}  // namespace velmoranth::simulator
