// What the stand-ins are told, taken down as records are (record/): the same entries in the same
// words as the desktop's.
#pragma once

#include "record/entry.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace velmoranth::standins {

// What the stand-ins were told since the last clearJournal, in order: a request a line
// ("-[UIView setTag:] UIView 5"). The log is no part of it (system.h), nor are files but for images
// and sounds until they are recorded.
[[nodiscard]] std::vector<std::string> journal();
// Those that begin so.
[[nodiscard]] std::vector<std::string> journalOf(const std::string& beginning);
void clearJournal();
// What is done, from now on, as soon as a line that begins so is in the journal, before the message
// goes on; an empty action ends that.
void whenNoted(const std::string& beginning, const std::function<void()>& action);

// All of it since the last time, answers and the log too.
[[nodiscard]] record::Record takeRecord();

// From now on what is asked of files, and what is done to them, is taken down as well.
void recordFiles();
[[nodiscard]] bool filesAreRecorded();

// While this lives nothing but the log is taken down on its thread: what a method asks for by
// itself on the way to its answer, and what a test does.
class Unrecorded {
  public:
    Unrecorded();
    ~Unrecorded();
    Unrecorded(const Unrecorded&) = delete;
    Unrecorded& operator=(const Unrecorded&) = delete;
};

// Takes the entry down. Its place, for what it answers later; nothing answers what was not taken
// down.
std::size_t note(record::Entry entry);
void noteAnswer(std::size_t place, std::string words);

}  // namespace velmoranth::standins
