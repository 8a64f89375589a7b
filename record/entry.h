// What a request did, as data: entries in the order in which things happened.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::record {

enum class EntryKind {
    entered,     // a replaced method was reached by a message
    original,    // the platform's own implementation was called, by a replacement
    callback,    // the platform called back: a notice, a block, the end of a movement
    found,       // a file that was asked for or read, and was there
    missing,     // a file that was asked for or read, and was not there
    unreadable,  // a file that was there and gave nothing
    written,     // a file or folder that was made, changed, moved or removed
    call,        // any other operation of the platform
    message,     // a message to a view, a layer, a context or a sound
    log,         // a line of the system log
};

struct EntryKindRow {
    EntryKind kind;
    std::string_view word;  // what stands in a record
};

// In the order of the enumeration.
inline constexpr std::array kEntryKinds{
    EntryKindRow{EntryKind::entered, "entered"}, EntryKindRow{EntryKind::original, "platform"},
    EntryKindRow{EntryKind::callback, "called"}, EntryKindRow{EntryKind::found, "found"},
    EntryKindRow{EntryKind::missing, "missing"}, EntryKindRow{EntryKind::unreadable, "unreadable"},
    EntryKindRow{EntryKind::written, "written"}, EntryKindRow{EntryKind::call, "call"},
    EntryKindRow{EntryKind::message, "message"}, EntryKindRow{EntryKind::log, "log"},
};

[[nodiscard]] constexpr std::string_view wordOf(EntryKind kind) {
    return kEntryKinds[static_cast<std::size_t>(kind)].word;
}

struct Entry {
    EntryKind kind = EntryKind::call;
    // How many replaced methods, platform implementations and callbacks it lies in.
    int depth = 0;
    // The message or function that carries it on the phone (operations.h, or a method's own); ""
    // for a line of the log.
    std::string message = {};
    // A path for files, the line for the log, otherwise the receiver in words; "" for a function.
    std::string subject = {};
    // In words, without the subject.
    std::vector<std::string> arguments = {};
    // In words; "" for what answers nothing.
    std::string answer = {};
    // Why a file is unreadable, or an operation failed; "" where nobody knows, or none did.
    std::string reason = {};

    friend bool operator==(const Entry&, const Entry&) = default;
};

using Record = std::vector<Entry>;

// What was asked, without what came of it: "+[UIImage imageWithContentsOfFile:] /a/b.png", "log A
// line.", and "called NAME" for a callback. Entries of methods are told as messages.
[[nodiscard]] std::string requestOf(const Entry& entry);

// The entry as one line, two blanks a level: "found      /a/b.png  +[UIImage …] = 60×60 @3x".
[[nodiscard]] std::string lineOf(const Entry& entry);
[[nodiscard]] std::string textOf(const Record& record);

// An entry as bytes, to be sent to another process of this machine, and back: nothing when the
// bytes are not what toBytes makes.
[[nodiscard]] std::string toBytes(const Entry& entry);
[[nodiscard]] std::optional<Entry> fromBytes(std::string_view bytes);

}  // namespace velmoranth::record
