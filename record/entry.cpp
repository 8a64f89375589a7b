#include "record/entry.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace velmoranth::record {
namespace {

constexpr std::size_t kWordWidth = 10;

bool isFile(EntryKind kind) {
    return kind == EntryKind::found || kind == EntryKind::missing ||
           kind == EntryKind::unreadable || kind == EntryKind::written;
}

void append(std::string& line, std::string_view text) {
    if (!text.empty()) {
        line += ' ';
        line += text;
    }
}

}  // namespace

namespace {

void appendNumber(std::string& bytes, std::size_t number) {
    for (int i = 0; i < 4; ++i) {
        bytes += static_cast<char>(number >> (8 * i) & 0xFFU);
    }
}

void appendText(std::string& bytes, const std::string& text) {
    appendNumber(bytes, text.size());
    bytes += text;
}

// Takes from the front; what is not there makes it bad, and gives nothing from then on.
struct Reader {
    std::string_view rest;
    bool isBad = false;

    std::size_t number() {
        if (rest.size() < 4) {
            isBad = true;
            return 0;
        }
        std::size_t value = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            value |= std::size_t{static_cast<unsigned char>(rest[i])} << (8 * i);
        }
        rest.remove_prefix(4);
        return value;
    }

    std::string text() {
        const std::size_t size = number();
        if (size > rest.size()) {
            isBad = true;
            return {};
        }
        std::string value(rest.substr(0, size));
        rest.remove_prefix(size);
        return value;
    }
};

}  // namespace

std::string toBytes(const Entry& entry) {
    std::string bytes;
    appendNumber(bytes, static_cast<std::size_t>(entry.kind));
    appendNumber(bytes, static_cast<std::size_t>(std::max(entry.depth, 0)));
    for (const std::string* const text :
         {&entry.message, &entry.subject, &entry.answer, &entry.reason}) {
        appendText(bytes, *text);
    }
    for (const std::string& argument : entry.arguments) {
        appendText(bytes, argument);
    }
    return bytes;
}

std::optional<Entry> fromBytes(std::string_view bytes) {
    Reader reader{bytes};
    Entry entry;
    const std::size_t kind = reader.number();
    const std::size_t depth = reader.number();
    if (kind >= kEntryKinds.size() ||
        depth > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        return std::nullopt;
    }
    entry.kind = static_cast<EntryKind>(kind);
    entry.depth = static_cast<int>(depth);
    for (std::string* const text : {&entry.message, &entry.subject, &entry.answer, &entry.reason}) {
        *text = reader.text();
    }
    while (!reader.rest.empty() && !reader.isBad) {
        entry.arguments.push_back(reader.text());
    }
    return reader.isBad ? std::nullopt : std::optional(std::move(entry));
}

std::string requestOf(const Entry& entry) {
    if (entry.kind == EntryKind::log) {
        return std::string(wordOf(entry.kind)) + " " + entry.subject;
    }
    std::string line = entry.message;
    if (entry.kind == EntryKind::callback) {
        line = std::string(wordOf(entry.kind)) + " " + line;
    }
    if (isFile(entry.kind)) {
        line += ' ' + entry.subject;  // a path of nothing too
    } else {
        append(line, entry.subject);
    }
    for (const std::string& argument : entry.arguments) {
        append(line, argument);
    }
    return line;
}

std::string lineOf(const Entry& entry) {
    std::string line(2 * static_cast<std::size_t>(std::max(entry.depth, 0)), ' ');
    const std::string_view word = wordOf(entry.kind);
    line += word;
    line.append(kWordWidth - std::min(word.size(), kWordWidth), ' ');
    // A file's path comes first: it is what one looks for.
    append(line,
           isFile(entry.kind) || entry.kind == EntryKind::log ? entry.subject : entry.message);
    append(line, isFile(entry.kind) ? entry.message : "");
    append(line, isFile(entry.kind) || entry.kind == EntryKind::log ? "" : entry.subject);
    for (const std::string& argument : entry.arguments) {
        append(line, argument);
    }
    if (!entry.answer.empty()) {
        line += " = " + entry.answer;
    }
    if (!entry.reason.empty()) {
        line += " (" + entry.reason + ")";
    }
    return line;
}

std::string textOf(const Record& record) {
    std::string text;
    for (const Entry& entry : record) {
        text += lineOf(entry) + '\n';
    }
    return text;
}

}  // namespace velmoranth::record
