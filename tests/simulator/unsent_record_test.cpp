#include "simulator/process/unsent_record.h"

#include "record/entry.h"
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <utility>

namespace velmoranth::simulator::unsent_record_test {
namespace {

record::Entry entry(const std::string& message) {
    return {.kind = record::EntryKind::call, .message = message, .arguments = {"1", "2"}};
}

record::Entry answered(record::Entry entry, const std::string& answer) {
    entry.answer = answer;
    return entry;
}

class Unsent : public testing::Test {
  private:
    UnsentRecord launcher_ = *UnsentRecord::make();

  protected:
    // The process's side of the same memory.
    UnsentRecord process = *UnsentRecord::open(::dup(launcher_.descriptor()));
    RecordNotes notes;

    [[nodiscard]] std::string_view inMemory() const { return launcher_.bytes(); }

    void fillMemory(char byte) const {
        const std::string many(65536, byte);
        ASSERT_EQ(::pwrite(launcher_.descriptor(), many.data(), many.size(), 0), 65536);
    }
};

TEST_F(Unsent, IsAwayFromTheDescriptorsOfAProcess) {
    EXPECT_GT(UnsentRecord::make()->descriptor(), 4);
    EXPECT_NE(::fcntl(UnsentRecord::make()->descriptor(), F_GETFD) & FD_CLOEXEC, 0);
}

TEST_F(Unsent, WhatWasNotSentIsThereForTheLauncher) {
    EXPECT_TRUE(process.isEmpty());
    ASSERT_TRUE(process.add(noteOf(entry("a"))));
    ASSERT_TRUE(process.add(noteOf(entry("b"))));
    ASSERT_TRUE(process.add(noteOf(0, "an = answer")));
    EXPECT_FALSE(process.isEmpty());
    EXPECT_EQ(process.bytes(), inMemory());
    notes.take(inMemory());
    EXPECT_EQ(notes.takeRecord(),
              (record::Record{answered(entry("a"), "an = answer"), entry("b")}));
    EXPECT_EQ(notes.takeRecord(), record::Record());
}

TEST_F(Unsent, WhatWasSentIsNotTakenAgain) {
    ASSERT_TRUE(process.add(noteOf(entry("a"))));
    ASSERT_TRUE(process.add(noteOf(entry("b"))));
    // The process ended between sending and clearing.
    notes.take(process.bytes());
    notes.take(inMemory());
    process.clear();
    EXPECT_TRUE(process.isEmpty());
    notes.take(inMemory());
    ASSERT_TRUE(process.add(noteOf(entry("c"))));
    ASSERT_TRUE(process.add(noteOf(2, "3")));
    notes.take(inMemory());
    EXPECT_EQ(notes.takeRecord(),
              (record::Record{entry("a"), entry("b"), answered(entry("c"), "3")}));
}

TEST_F(Unsent, AnswersToWhatHasBeenTakenGoToNobody) {
    ASSERT_TRUE(process.add(noteOf(entry("a"))));
    notes.take(process.bytes());
    process.clear();
    static_cast<void>(notes.takeRecord());
    ASSERT_TRUE(process.add(noteOf(0, "late")));
    ASSERT_TRUE(process.add(noteOf(entry("b"))));
    ASSERT_TRUE(process.add(noteOf(2, "of none")));
    ASSERT_TRUE(process.add(noteOf(1, "")));
    notes.take(process.bytes());
    EXPECT_EQ(notes.takeRecord(), record::Record{entry("b")});
}

TEST_F(Unsent, MemoryIsFullAtItsEnd) {
    // The size, the count, then 16 bytes a note with its length.
    const std::string note(12, 'x');
    int count = 0;
    while (process.add(note)) {
        ++count;
    }
    EXPECT_EQ(count, (65536 - 4 - 8) / 16);
    EXPECT_FALSE(process.isEmpty());
    process.clear();
    EXPECT_TRUE(process.add(note));
}

TEST_F(Unsent, WhatHasNoRoomIsSentAlone) {
    const record::Entry large = entry(std::string(70000, 'm'));
    ASSERT_TRUE(process.add(noteOf(entry("a"))));
    EXPECT_FALSE(process.add(noteOf(large)));
    notes.take(process.bytes());
    process.clear();
    EXPECT_FALSE(process.add(noteOf(large)));
    notes.take(process.alone(noteOf(large)));
    EXPECT_TRUE(process.isEmpty());
    ASSERT_TRUE(process.add(noteOf(1, "yes")));
    notes.take(inMemory());
    EXPECT_EQ(notes.takeRecord(), (record::Record{entry("a"), answered(large, "yes")}));
}

TEST_F(Unsent, ADamagedMemoryIsReadToItsEndAtMost) {
    for (const char byte : {'\0', '\1', '\x7F', '\xFF'}) {
        fillMemory(byte);
        EXPECT_LE(inMemory().size(), 65532U);
        notes.take(inMemory());
    }
    for (const char* const bytes : {"", "1234567", "12345678123"}) {
        notes.take(bytes);
    }
    EXPECT_EQ(notes.takeRecord(), record::Record());
}

}  // namespace
}  // namespace velmoranth::simulator::unsent_record_test
