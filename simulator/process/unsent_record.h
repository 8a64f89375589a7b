// What a recorded process has noted and not yet sent. It is sent in one message with much else, and
// lies in memory that the launcher shares: of a process that ends in the middle, however it ends,
// the launcher has all the same what it noted last.
#pragma once

#include "desktop/files/descriptor.h"
#include "desktop/result/result.h"

#include "record/entry.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace velmoranth::simulator {

class UnsentRecord {
  public:
    // The launcher's: new memory, nothing in it.
    [[nodiscard]] static desktop::Result<UnsentRecord> make();
    // The process's: that memory again, which the descriptor stands for.
    [[nodiscard]] static desktop::Result<UnsentRecord> open(int descriptor);

    UnsentRecord(UnsentRecord&& other) noexcept;
    UnsentRecord& operator=(UnsentRecord&& other) noexcept;
    UnsentRecord(const UnsentRecord&) = delete;
    UnsentRecord& operator=(const UnsentRecord&) = delete;
    ~UnsentRecord();

    [[nodiscard]] int descriptor() const { return descriptor_.get(); }

    // Adds a note. False, and nothing is added, where no room is left for it.
    [[nodiscard]] bool add(const std::string& note);

    [[nodiscard]] bool isEmpty() const;

    // What is to be sent: bytes for RecordNotes. Never more than there is memory, whatever the
    // other process wrote into it.
    [[nodiscard]] std::string_view bytes() const;

    // They are sent.
    void clear();

    // A note that is larger than all the room, for RecordNotes too; to be sent by itself, while
    // nothing else is unsent.
    [[nodiscard]] std::string alone(const std::string& note);

  private:
    UnsentRecord(desktop::Descriptor descriptor, std::span<std::uint8_t> memory)
        : descriptor_(std::move(descriptor)), memory_(memory) {}

    [[nodiscard]] static desktop::Result<UnsentRecord> map(desktop::Descriptor descriptor);
    [[nodiscard]] std::size_t size() const;
    void setSize(std::size_t size);
    void begin();

    desktop::Descriptor descriptor_;
    std::span<std::uint8_t> memory_;
    std::uint64_t sent_ = 0;    // notes
    std::uint64_t unsent_ = 0;  // notes
};

// A note: an entry, or what the entry at that place, counted from the first, has answered.
[[nodiscard]] std::string noteOf(const record::Entry& entry);
[[nodiscard]] std::string noteOf(std::size_t place, std::string_view answer);

// The launcher's side: the record that notes tell.
class RecordNotes {
  public:
    // Notes that came before are passed over, since what was sent may still lie in the memory.
    // Nothing of what cannot be read is taken.
    void take(std::string_view bytes);

    // What there is since the last call of this.
    [[nodiscard]] record::Record takeRecord();

  private:
    void takeNote(std::string_view note);

    std::uint64_t count_ = 0;  // of all notes that came
    record::Record record_;
    std::size_t begin_ = 0;  // the place of its first entry among all
};

}  // namespace velmoranth::simulator
