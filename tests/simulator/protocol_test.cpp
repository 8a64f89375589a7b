#include "simulator/protocol.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>

namespace velmoranth::simulator {
namespace {

using namespace std::chrono_literals;

class Protocol : public testing::Test {
  public:
    void SetUp() override { ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0); }

    ~Protocol() override { closeOurs(), close(ends[1]); }

    void closeOurs() {
        if (ends[0] >= 0) {
            close(ends[0]);
            ends[0] = -1;
        }
    }

    void writeRaw(std::uint32_t kind, std::uint32_t length) {
        const std::array<std::uint32_t, 2> header{kind, length};
        ASSERT_EQ(write(ends[0], header.data(), sizeof header),
                  static_cast<ssize_t>(sizeof header));
    }

    static Clock::time_point soon() { return Clock::now() + 50ms; }

    std::array<int, 2> ends{-1, -1};
};

TEST_F(Protocol, MessagesArriveInOrder) {
    ASSERT_TRUE(sendMessage(ends[0], MessageKind::log, "first"));
    ASSERT_TRUE(sendMessage(ends[0], MessageKind::ready));
    Message message;
    ASSERT_EQ(receiveMessage(ends[1], message), Received::message);
    EXPECT_EQ(message.kind, MessageKind::log);
    EXPECT_EQ(message.payload, "first");
    ASSERT_EQ(receiveMessage(ends[1], message), Received::message);
    EXPECT_EQ(message.kind, MessageKind::ready);
    EXPECT_EQ(message.payload, "");
}

TEST_F(Protocol, LongMessageIsWhole) {
    std::string text(5'000'000, '\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        text[i] = static_cast<char>(i * 31 >> 3);
    }
    std::thread sender([&] { EXPECT_TRUE(sendMessage(ends[0], MessageKind::pixels, text)); });
    Message message;
    EXPECT_EQ(receiveMessage(ends[1], message), Received::message);
    sender.join();
    EXPECT_TRUE(message.payload == text);
}

TEST_F(Protocol, SilenceIsLateAndAnEndIsAnEnd) {
    Message message;
    EXPECT_EQ(receiveMessage(ends[1], message, soon()), Received::late);
    closeOurs();
    EXPECT_EQ(receiveMessage(ends[1], message, soon()), Received::closed);
    EXPECT_FALSE(sendMessage(ends[1], MessageKind::stop));
}

TEST_F(Protocol, MessageThatBreaksOffIsAnEnd) {
    writeRaw(static_cast<std::uint32_t>(MessageKind::log), 100);
    closeOurs();
    Message message;
    EXPECT_EQ(receiveMessage(ends[1], message, soon()), Received::closed);
}

TEST_F(Protocol, UnknownKindAndFalseLengthAreMalformed) {
    Message message;
    writeRaw(99, 0);
    EXPECT_EQ(receiveMessage(ends[1], message, soon()), Received::malformed);
    writeRaw(static_cast<std::uint32_t>(MessageKind::pixels), 0xFFFFFFFF);
    EXPECT_EQ(receiveMessage(ends[1], message, soon()), Received::malformed);
}

TEST_F(Protocol, SenderDoesNotWaitForEverForASleepingReceiver) {
    std::string text;
    text.resize(50'000'000, 'x');
    EXPECT_FALSE(sendMessage(ends[0], MessageKind::pixels, text, soon()));
}

TEST(ProtocolJson, RequestComesBackAsItWas) {
    ScreenRequest request;
    request.device = deviceConfiguration("pad", 12).value();
    request.device.locale = "de_DE";
    request.device.exactFiles = true;
    request.device.date = platform::Date{123456.5};
    request.rootFolder = "/tmp/a \"b\" \xff\xfe ü";
    request.loadEngine = false;
    request.enginePath = "./x.so";
    request.page = 2;
    const auto read = requestFromJson(requestToJson(request));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->device, request.device);
    EXPECT_EQ(read->rootFolder, request.rootFolder);
    EXPECT_EQ(read->loadEngine, request.loadEngine);
    EXPECT_EQ(read->enginePath, request.enginePath);
    EXPECT_EQ(read->page, request.page);
}

TEST(ProtocolJson, ScreenComesBackAsItWas) {
    const ScreenHeader header{
        .width = 10,
        .height = 20,
        .scale = 2,
        .icons = {{"com.example", "Ünï", 1, 2.5, 3, 4}, {"b", "", 0, 0, 0, 0}},
        .page = 2,
        .pageCount = 3,
        .peakMemoryBytes = 77};
    const auto read = screenFromJson(screenToJson(header));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->width, header.width);
    EXPECT_EQ(read->height, header.height);
    EXPECT_EQ(read->scale, header.scale);
    EXPECT_EQ(read->icons, header.icons);
    EXPECT_EQ(read->page, 2);
    EXPECT_EQ(read->pageCount, 3);
    EXPECT_EQ(read->peakMemoryBytes, 77U);
}

TEST(ProtocolJson, ProblemComesBackAsItWas) {
    const desktop::Problem problem{"is odd", "/a/b", 12};
    EXPECT_EQ(problemFromJson(problemToJson(problem)), problem);
    EXPECT_EQ(problemFromJson(problemToJson({"is odd"})), desktop::Problem{"is odd"});
}

TEST(ProtocolJson, WhatIsNoMessageIsRefused) {
    const std::string screen = screenToJson({});
    for (const std::string& text :
         {std::string(), std::string("[]"), std::string("{"),
          std::string("{\"message\":1,\"path\":\"\"}"), screen.substr(0, screen.size() - 1)}) {
        EXPECT_FALSE(requestFromJson(text)) << text;
        EXPECT_FALSE(screenFromJson(text)) << text;
        EXPECT_FALSE(problemFromJson(text)) << text;
    }
    ScreenHeader narrow;
    narrow.width = 5;
    std::string negative = screenToJson(narrow);
    negative.replace(negative.find("\"width\":5"), 9, "\"width\":-5");
    EXPECT_FALSE(screenFromJson(negative));
}

}  // namespace
}  // namespace velmoranth::simulator
