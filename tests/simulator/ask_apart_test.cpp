// Questions that are answered in a copy of the process.
#include "tests/simulator/themed_device.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace velmoranth::simulator::ask_apart_test {
namespace {

const Question kOfMaps{"image", "Pin", "com.apple.Maps"};
const Question kOfMail{"image", "Pin", "com.apple.mobilemail"};

class AskApart : public testing::Test {
  protected:
    [[nodiscard]] std::unique_ptr<RunningScreen> start(ProcessKind kind) const {
        ScreenRequest request = device.request("phone", 13, {});
        request.isRecorded = true;
        request.withoutScreen = kind;
        auto process = RunningScreen::start(request);
        EXPECT_TRUE(process);
        return std::move(*process);
    }

    ThemedDevice device;
};

// The theme's file of that name in the entries, "missing" when it was not there.
std::string stateOf(const record::Record& record, const std::string& name) {
    const std::string path = "/Library/Themes/T.theme/" + name;
    const auto found = std::ranges::find(record, path, &record::Entry::subject);
    return found == record.end() ? "not asked for" : std::string(record::wordOf(found->kind));
}

TEST_F(AskApart, AnswersAreTheFilesThatEachQuestionAsksFor) {
    device.png("Bundles/com.apple.Maps/Pin.png", 10, 10, kMagenta);
    device.png("Bundles/com.apple.mobilemail/Pin.png", 10, 10, kGreen);
    const auto process = start(ProcessKind::app);
    const auto files = process->askApart({kOfMaps, {"image", "Other", "com.apple.Maps"}});
    ASSERT_TRUE(files);
    ASSERT_EQ(files->size(), 2U);
    EXPECT_EQ(stateOf(files->at(0), "Bundles/com.apple.Maps/Pin@3x.png"), "missing");
    EXPECT_EQ(stateOf(files->at(0), "Bundles/com.apple.Maps/Pin.png"), "found");
    EXPECT_EQ(stateOf(files->at(1), "Bundles/com.apple.Maps/Other.png"), "missing");
    for (const record::Entry& entry : files->at(0)) {
        EXPECT_TRUE(entry.kind == record::EntryKind::found ||
                    entry.kind == record::EntryKind::missing ||
                    entry.kind == record::EntryKind::unreadable)
            << record::lineOf(entry);
    }
}

TEST_F(AskApart, NothingIsKeptForALaterCall) {
    device.png("Bundles/com.apple.Maps/Pin.png", 10, 10, kMagenta);
    device.png("Bundles/com.apple.mobilemail/Pin.png", 10, 10, kGreen);
    const auto process = start(ProcessKind::app);
    const std::string pin = "Bundles/com.apple.mobilemail/Pin.png";
    // In one copy the first picture of a name is kept for all.
    const auto together = process->askApart({kOfMaps, kOfMail});
    ASSERT_TRUE(together);
    EXPECT_EQ(stateOf(together->at(1), pin), "not asked for");
    const auto alone = process->askApart({kOfMail});
    ASSERT_TRUE(alone);
    EXPECT_EQ(stateOf(alone->at(0), pin), "found");
    // The process itself has asked for nothing yet, and goes on.
    const auto answer = process->ask(kOfMail);
    ASSERT_TRUE(answer);
    EXPECT_EQ(stateOf(answer->record, pin), "found");
    EXPECT_EQ(answer->picture->pixels.at(1), 255);
}

TEST_F(AskApart, WhatTheProcessDidBeforeIsToldOnce) {
    const auto recordOfSecondPage = [&](bool asksApart) {
        ScreenRequest request = device.request("phone", 13, {});
        request.isRecorded = true;
        const auto process = RunningScreen::start(request).value();
        static_cast<void>(process->takeRecord());
        EXPECT_TRUE(process->showPage(2));
        EXPECT_TRUE(!asksApart || process->askApart({kOfMail, kOfMaps}));
        return process->render().value().record;
    };
    const record::Record alone = recordOfSecondPage(false);
    EXPECT_GT(alone.size(), 10U);
    EXPECT_EQ(recordOfSecondPage(true), alone);
}

TEST_F(AskApart, QuestionThatTheSystemDoesNotHaveAsksForNothing) {
    const auto process = start(ProcessKind::app);
    const auto files = process->askApart({{"no such word", "", ""}, kOfMaps});
    ASSERT_TRUE(files);
    EXPECT_TRUE(files->at(0).empty());
    EXPECT_FALSE(files->at(1).empty());
    EXPECT_EQ(process->askApart({})->size(), 0U);
}

TEST_F(AskApart, ProcessThatHasEndedIsAProblem) {
    const auto process = start(ProcessKind::homeScreen);
    process->stop();
    EXPECT_FALSE(process->askApart({kOfMaps}));
}

}  // namespace
}  // namespace velmoranth::simulator::ask_apart_test
