#include "record/entry.h"

#include <gtest/gtest.h>

#include <string>

namespace velmoranth::record::entry_test {
namespace {

const Entry kFound{.kind = EntryKind::found,
                   .depth = 2,
                   .message = "+[UIImage imageWithContentsOfFile:]",
                   .subject = "/a/b.png",
                   .arguments = {},
                   .answer = "60×60 @3x",
                   .reason = {}};
const Entry kEntered{.kind = EntryKind::entered,
                     .depth = 0,
                     .message = "-[SBHIconImageCache imageForIcon:]",
                     .subject = "SBHIconImageCache",
                     .arguments = {"SBIcon com.example", "YES"},
                     .answer = "nil",
                     .reason = {}};

TEST(RecordEntry, LineHasAFilesPathFirstAndAMethodsReceiverBehindIt) {
    EXPECT_EQ(lineOf(kFound),
              "    found      /a/b.png +[UIImage imageWithContentsOfFile:] = 60×60 @3x");
    EXPECT_EQ(lineOf(kEntered),
              "entered    -[SBHIconImageCache imageForIcon:] SBHIconImageCache SBIcon com.example "
              "YES = nil");
    EXPECT_EQ(lineOf({.kind = EntryKind::unreadable, .subject = "/x", .reason = "it is empty"}),
              "unreadable /x (it is empty)");
    EXPECT_EQ(lineOf({.kind = EntryKind::log, .subject = "a line"}), "log        a line");
    EXPECT_EQ(textOf({kFound, kEntered}), lineOf(kFound) + "\n" + lineOf(kEntered) + "\n");
}

TEST(RecordEntry, RequestIsWhatWasAskedWithoutWhatCameOfIt) {
    EXPECT_EQ(requestOf(kFound), "+[UIImage imageWithContentsOfFile:] /a/b.png");
    EXPECT_EQ(requestOf(kEntered),
              "-[SBHIconImageCache imageForIcon:] SBHIconImageCache SBIcon com.example YES");
    EXPECT_EQ(requestOf({.kind = EntryKind::call, .message = "setuid", .arguments = {"0"}}),
              "setuid 0");
    EXPECT_EQ(requestOf({.kind = EntryKind::missing, .message = "-[A b:]"}), "-[A b:] ")
        << "an empty path is one";
    EXPECT_EQ(requestOf({.kind = EntryKind::callback, .message = "dispatch_after"}),
              "called dispatch_after");
    EXPECT_EQ(requestOf({.kind = EntryKind::log, .subject = "a line"}), "log a line");
}

TEST(RecordEntry, EveryKindHasItsWordAtItsPlace) {
    for (std::size_t i = 0; i < kEntryKinds.size(); ++i) {
        EXPECT_EQ(static_cast<std::size_t>(kEntryKinds.at(i).kind), i);
        EXPECT_EQ(wordOf(kEntryKinds.at(i).kind), kEntryKinds.at(i).word);
    }
}

TEST(RecordEntry, ComesBackFromItsBytes) {
    EXPECT_EQ(fromBytes(toBytes(kFound)), kFound);
    EXPECT_EQ(fromBytes(toBytes(kEntered)), kEntered);
    const std::string binary("\0\x1f\xff\n", 4);
    const Entry odd{.kind = EntryKind::written,
                    .depth = 7,
                    .message = binary,
                    .subject = binary,
                    .arguments = {"", binary},
                    .answer = binary,
                    .reason = binary};
    EXPECT_EQ(fromBytes(toBytes(odd)), odd);
}

TEST(RecordEntry, BytesThatAreCutOffOrWrongAreNoEntry) {
    const std::string bytes = toBytes(kEntered);
    // Behind the fixed part an argument may be left out whole; anything else is a cut.
    int whole = 0;
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        whole += fromBytes(bytes.substr(0, size)) ? 1 : 0;
    }
    EXPECT_EQ(whole, 2) << "without arguments, and with the first";
    std::string unknown = bytes;
    unknown[0] = '\x7f';
    EXPECT_FALSE(fromBytes(unknown));
    std::string tooDeep = bytes;
    tooDeep[7] = '\x80';
    EXPECT_FALSE(fromBytes(tooDeep));
    std::string tooLong = bytes;
    tooLong[11] = '\x7f';
    EXPECT_FALSE(fromBytes(tooLong));
}

}  // namespace
}  // namespace velmoranth::record::entry_test
