#include "tests/support/journal.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace velmoranth::tests {

namespace {

// How many bytes a written image has is its encoder's own.
std::string lineIn(record::Entry entry) {
    if (entry.kind == record::EntryKind::written) {
        std::erase_if(entry.arguments,
                      [](const std::string& argument) { return argument.ends_with(" bytes"); });
    }
    return record::requestOf(entry);
}

}  // namespace

std::vector<std::string> Journal::lines() const {
    std::vector<std::string> lines;
    for (const record::Entry& entry : recorder_.entries()) {
        lines.push_back(std::string(2 * static_cast<std::size_t>(entry.depth), ' ') +
                        lineIn(entry));
    }
    return lines;
}

std::vector<std::string> Journal::linesWith(std::string_view prefix) const {
    std::vector<std::string> found;
    for (const record::Entry& entry : recorder_.entries()) {
        std::string line = lineIn(entry);
        if (line.starts_with(prefix)) {
            found.push_back(std::move(line));
        }
    }
    return found;
}

std::size_t Journal::count(std::string_view prefix) const {
    return linesWith(prefix).size();
}

std::size_t Journal::place(std::string_view prefix) const {
    const record::Record entries = recorder_.entries();
    const auto found =
        std::find_if(entries.begin(), entries.end(),
                     [&](const record::Entry& entry) { return lineIn(entry).starts_with(prefix); });
    if (found == entries.end()) {
        throw std::runtime_error("no line begins with " + std::string(prefix));
    }
    return static_cast<std::size_t>(found - entries.begin());
}

std::vector<std::string> Journal::log() const {
    std::vector<std::string> lines;
    for (const record::Entry& entry : recorder_.entries()) {
        if (entry.kind == record::EntryKind::log) {
            lines.push_back(entry.subject);
        }
    }
    return lines;
}

std::vector<std::string> calledBack(const std::string& callback,
                                    const std::vector<std::string>& lines) {
    std::vector<std::string> all{"called " + callback};
    for (const std::string& line : lines) {
        all.push_back("  " + line);
    }
    return all;
}

std::string copyLine(const std::string& source, const std::string& destination) {
    return kCopy + destination + " " + record::words(source);
}

std::string moveLine(const std::string& source, const std::string& destination) {
    return kMove + destination + " " + record::words(source);
}

std::string text(double number) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%g", number);
    return buffer;
}

}  // namespace velmoranth::tests
