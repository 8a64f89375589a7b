#include "record/recorder.h"

#include "desktop/views/views.h"

#include "record/operations.h"
#include "record/recorded_methods.h"
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace velmoranth::record::recorder_test {
namespace {

Entry entered(const char* message) {
    return {.kind = EntryKind::entered, .message = message};
}

TEST(Recorder, EntriesLieAsDeepAsTheFramesThatTheyComeIn) {
    Recorder recorder;
    Recorder::setCurrent(&recorder);
    {
        Frame outer(entered("outer"));
        {
            Frame inner({.kind = EntryKind::original, .message = "inner"});
            recorder.add({.message = "in both"});
            inner.answer("5");
        }
        recorder.add({.message = "in one"});
        std::thread([&] { recorder.add({.message = "elsewhere"}); }).join();
    }
    EXPECT_EQ(textOf(recorder.take()),
              "entered    outer\n"
              "  platform   inner = 5\n"
              "    call       in both\n"
              "  call       in one\n"
              "call       elsewhere\n");
    EXPECT_TRUE(recorder.take().empty()) << "taken once";
}

TEST(Recorder, MessagesToViewsAreTheEnginesAlone) {
    Recorder recorder;
    Recorder::setCurrent(&recorder);
    desktop::DesktopView view;
    view.setTag(1);  // the platform's
    {
        Frame replacement(entered("replaced"));
        view.setTag(7);
        view.setAlpha(0.5);
        view.layer()->setShadowRadius(2);
        Frame original({.kind = EntryKind::original, .message = "platform"});
        view.setTag(2);
    }
    EXPECT_EQ(textOf(recorder.take()),
              "entered    replaced\n"
              "  message    -[UIView setTag:] UIView #1 7\n"
              "  message    -[UIView setAlpha:] UIView #7 0.5\n"
              "  message    -[CALayer setShadowRadius:] UIView #7 2\n"
              "  platform   platform\n");
}

TEST(Recorder, InTheEngineMessagesAreTakenDownWithoutAFrame) {
    Recorder recorder;
    Recorder::setCurrent(&recorder);
    desktop::DesktopView view;
    {
        const InEngine engine;
        view.setTag(1);
        const InPlatform platform;
        view.setTag(2);
    }
    view.setTag(3);
    EXPECT_EQ(textOf(recorder.take()), "message    -[UIView setTag:] UIView 1\n");
}

TEST(Recorder, AMessageIsToldWithItsAnswer) {
    Recorder recorder;
    Recorder::setCurrent(&recorder);
    const desktop::DesktopView view;
    EXPECT_EQ(tell(view, "-[UIView tag]").answered(7), 7) << "not taken down, and passed on";
    const InEngine engine;
    EXPECT_EQ(tell(view, "-[UIView tag]").answered(8), 8);
    EXPECT_EQ(textOf(recorder.take()), "message    -[UIView tag] UIView = 8\n");
}

TEST(Recorder, WhatIsAnsweredAfterARecordWasTakenChangesNoOther) {
    Recorder recorder;
    const std::size_t taken = recorder.add({.message = "first"});
    EXPECT_EQ(textOf(recorder.entries()), "call       first\n");
    EXPECT_EQ(recorder.take().size(), 1U);
    EXPECT_TRUE(recorder.entries().empty());
    const std::size_t kept = recorder.add({.message = "second"});
    recorder.answer(taken, "late");
    recorder.answer(kept, "5");
    recorder.answer(kept + 1, "never");
    EXPECT_EQ(textOf(recorder.take()), "call       second = 5\n");
}

TEST(Recorder, WhatWordsAskAnObjectIsNothingOfTheEngines) {
    struct Image final : platform::CUINamedImage {
        std::string className() const override { return "CUINamedImage"; }

        platform::NullableString name() const override {
            tell(*this, messageOf("CUINamedImage", "name"));
            return "Star";
        }

        double scale() const override { return 1; }

        platform::BitmapImageRef createImageFromPDFRenditionWithScale(double /*scale*/) override {
            return nullptr;
        }

        platform::BitmapImageRef image() override { return nullptr; }
    };

    Recorder recorder;
    Recorder::setCurrent(&recorder);
    const InEngine engine;
    const Image image;
    EXPECT_EQ(words(image), "CUINamedImage Star");
    EXPECT_TRUE(recorder.take().empty());
    EXPECT_EQ(image.name(), "Star");
    EXPECT_EQ(textOf(recorder.take()), "message    -[CUINamedImage name] CUINamedImage Star\n");
}

TEST(Recorder, WhatAnOperationOfThePlatformSendsIsNotTheEngines) {
    Recorder recorder;
    Recorder::setCurrent(&recorder);
    desktop::DesktopView view;
    const Frame replacement(entered("replaced"));
    {
        const InPlatform platform;
        view.setTag(3);
    }
    view.setTag(4);
    EXPECT_EQ(recorder.take().size(), 2U);
}

TEST(Recorder, WithoutOneNothingIsTakenDown) {
    desktop::DesktopView view;
    {
        Frame replacement(entered("replaced"));
        view.setTag(1);
        noteTried("/a", "");
    }
    EXPECT_TRUE(takeTried().empty());
    Recorder recorder;
    EXPECT_EQ(Recorder::current(), nullptr) << "none is set by itself";
    EXPECT_TRUE(recorder.take().empty());
}

TEST(Recorder, GoesWithItsObject) {
    {
        Recorder recorder;
        Recorder::setCurrent(&recorder);
    }
    EXPECT_EQ(Recorder::current(), nullptr);
}

TEST(Recorder, StopsAtItsGreatestNumberAndSaysSo) {
    Recorder recorder;
    for (std::size_t i = 0; i < Recorder::kMostEntries + 10; ++i) {
        recorder.add({.message = "one"});
    }
    const Record record = recorder.take();
    ASSERT_EQ(record.size(), Recorder::kMostEntries);
    EXPECT_EQ(record.back().subject, "more is not recorded");
}

TEST(RecordedMethods, CallsAreTakenDownWithArgumentsAndAnswer) {
    using Method = int(platform::Object&, bool, double);
    const platform::Implementation method(
        std::function<Method>([](platform::Object&, bool twice, double value) {
            return static_cast<int>(value) * (twice ? 2 : 1);
        }));
    const auto recorded =
        Methods<void(desktop::DesktopView&), int(desktop::DesktopView&, bool, double)>::recorded(
            method, EntryKind::original, "-[A b:c:]");
    ASSERT_NE(recorded.as<Method>(), nullptr) << "the signature stays";
    desktop::DesktopView view;
    EXPECT_EQ((*recorded.as<Method>())(view, true, 4), 8) << "not recorded";
    Recorder recorder;
    Recorder::setCurrent(&recorder);
    EXPECT_EQ((*recorded.as<Method>())(view, true, 4), 8);
    EXPECT_EQ(textOf(recorder.take()), "platform   -[A b:c:] UIView YES 4 = 8\n");
    const auto other =
        Methods<void(desktop::DesktopView&)>::recorded(method, EntryKind::original, "");
    EXPECT_EQ(other, method) << "a signature that is not among them";
}

}  // namespace
}  // namespace velmoranth::record::recorder_test
