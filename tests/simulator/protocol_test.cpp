#include "simulator/process/protocol.h"

#include "simulator/process/process.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace velmoranth::simulator::protocol_test {
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
    Message message;
    for (const MessageKind kind : {MessageKind::log, MessageKind::pixels, MessageKind::log}) {
        std::thread sender([&] { EXPECT_TRUE(sendMessage(ends[0], kind, text)); });
        EXPECT_EQ(receiveMessage(ends[1], message), Received::message);
        sender.join();
        EXPECT_EQ(message.kind, kind);
        const bool arePixels = kind == MessageKind::pixels;
        EXPECT_TRUE(std::string(message.pixels.begin(), message.pixels.end()) ==
                    (arePixels ? text : ""));
        EXPECT_TRUE(message.payload == (arePixels ? "" : text));
    }
}

// What it says it has is taken for granted neither in memory nor in time.
TEST_F(Protocol, FalseLengthCostsNoMemory) {
    const std::size_t before = peakMemoryBytes();
    for (const MessageKind kind : {MessageKind::log, MessageKind::pixels}) {
        writeRaw(static_cast<std::uint32_t>(kind), 200U * 1024 * 1024);
        Message message;
        EXPECT_EQ(receiveMessage(ends[1], message, soon()), Received::late);
    }
    EXPECT_LT(peakMemoryBytes() - before, 100U * 1024 * 1024);
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

TEST(ProtocolFiles, EntriesComeBackAsTheyWere) {
    const record::Record record{
        {.kind = record::EntryKind::found, .depth = 2, .message = "m", .subject = "/a"},
        {.kind = record::EntryKind::unreadable,
         .subject = "/b",
         .arguments = {"\"/a\""},
         .reason = "why"}};
    const std::string bytes = filesToBytes(record);
    EXPECT_EQ(filesFromBytes(bytes), record);
    EXPECT_EQ(filesFromBytes(""), record::Record());
    for (std::size_t length = 1; length < bytes.size(); ++length) {
        const auto cut = filesFromBytes(std::string_view(bytes).substr(0, length));
        EXPECT_TRUE(!cut || cut->size() == 1) << length;
    }
    EXPECT_FALSE(filesFromBytes(bytes + "x"));
    EXPECT_FALSE(filesFromBytes("\xFF\xFF\xFF\xFF"));
}

TEST(ProtocolJson, QuestionsComeBackAsTheyWere) {
    const std::vector<Question> questions{{"icon", "a", ""}, {"image", "b", "c"}};
    EXPECT_EQ(fromJson<std::vector<Question>>(toJson(questions)), questions);
    EXPECT_EQ(fromJson<std::vector<Question>>("[]"), std::vector<Question>());
    EXPECT_FALSE(fromJson<std::vector<Question>>("{}"));
    EXPECT_FALSE(fromJson<std::vector<Question>>("[{\"word\":\"icon\"}]"));
}

TEST(ProtocolJson, RequestComesBackAsItWas) {
    ScreenRequest request;
    request.device = deviceConfiguration("pad", 12).value();
    request.device.locale = "de_DE";
    request.device.exactFiles = true;
    request.device.date = platform::Date{123456.5};
    request.deviceFiles = {"/tmp/a \"b\" \xff\xfe ü", {{"/Library/Themes/\xff", "/home/\xfe"}}};
    request.loadEngine = false;
    request.enginePath = "./x.so";
    request.page = 2;
    request.screen = ScreenKind::pressed;
    request.item = "com.example";
    request.folderPage = 3;
    request.wallpaperFile = "a \xff.jpg";
    request.apps = {{"com.example.a", "Ä \"b\""}, {"com.example.b"}};
    const auto read = fromJson<ScreenRequest>(toJson(request));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->device, request.device);
    EXPECT_EQ(read->deviceFiles, request.deviceFiles);
    EXPECT_EQ(read->loadEngine, request.loadEngine);
    EXPECT_EQ(read->enginePath, request.enginePath);
    EXPECT_EQ(read->page, request.page);
    EXPECT_EQ(read->screen, request.screen);
    EXPECT_EQ(read->item, request.item);
    EXPECT_EQ(read->folderPage, request.folderPage);
    EXPECT_EQ(read->wallpaperFile, request.wallpaperFile);
    EXPECT_EQ(read->apps, request.apps);
}

TEST(ProtocolJson, EveryScreenHasAName) {
    for (const ScreenKind kind : {ScreenKind::home, ScreenKind::folder, ScreenKind::pressed}) {
        ScreenRequest request;
        request.screen = kind;
        EXPECT_EQ(fromJson<ScreenRequest>(toJson(request)).value().screen, kind);
    }
    std::string unknown = toJson(ScreenRequest());
    unknown.replace(unknown.find("\"home\""), 6, "\"lock\"");
    EXPECT_FALSE(fromJson<ScreenRequest>(unknown));
}

TEST(ProtocolJson, ActionsComeBackAsTheyWere) {
    const std::vector<ScreenAction> actions{OpenFolderAction{"folder.\"x\""},
                                            TurnFolderPageAction{7}, PressIconAction{"com.example"},
                                            TapAction{{-1.5, 1e6}}, AdvanceAction{0.35}};
    for (const ScreenAction& action : actions) {
        EXPECT_EQ(fromJson<ScreenAction>(toJson(action)), action) << toJson(action);
    }
}

TEST(ProtocolJson, WhatIsNoActionIsRefused) {
    for (const char* const text :
         {"", "null", "[]", "{}", R"({"action":"dance"})", R"({"action":1})",
          R"({"action":"tap","point":{"x":1}})", R"({"action":"tap","point":{"x":"1","y":2}})",
          R"({"action":"tap","point":{"x":1e999,"y":2}})",
          R"({"action":"openFolder","folder":null})", R"({"action":"turnFolderPage","page":1.5})",
          R"({"action":"advance","seconds":"1"})", R"({"action":"pressIcon"})",
          R"({"action":"advance","seconds":1)", R"({"action":"turnFolderPage","page":true})",
          R"({"action":"turnFolderPage","page":4294967297})"}) {
        EXPECT_FALSE(fromJson<ScreenAction>(text)) << text;
    }
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
    const auto read = fromJson<ScreenHeader>(toJson(header));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->width, header.width);
    EXPECT_EQ(read->height, header.height);
    EXPECT_EQ(read->scale, header.scale);
    EXPECT_EQ(read->icons, header.icons);
    EXPECT_EQ(read->page, 2);
    EXPECT_EQ(read->pageCount, 3);
    EXPECT_EQ(read->peakMemoryBytes, 77U);
    EXPECT_EQ(read->folder, std::nullopt);
}

TEST(ProtocolJson, OpenFolderComesBackAsItWas) {
    ScreenHeader header;
    header.folder = ShownFolder{.identifier = "folder.x",
                                .name = "Ünï",
                                .page = 2,
                                .pageCount = 3,
                                .x = 1.5,
                                .y = 2,
                                .width = 3,
                                .height = 4,
                                .icons = {{"a", "A", 1, 2, 3, 4}}};
    const std::string text = toJson(header);
    const auto read = fromJson<ScreenHeader>(text);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->folder, header.folder);
    for (const char* const wrong : {"\"pageCount\":\"3\"", "\"pages\":3"}) {
        std::string changed = text;
        changed.replace(changed.find("\"pageCount\":3"), 13, wrong);
        EXPECT_FALSE(fromJson<ScreenHeader>(changed)) << wrong;
    }
}

TEST(ProtocolJson, ProblemComesBackAsItWas) {
    const desktop::Problem problem{"is odd", "/a/b", 12};
    EXPECT_EQ(fromJson<desktop::Problem>(toJson(problem)), problem);
    EXPECT_EQ(fromJson<desktop::Problem>(toJson(desktop::Problem{"is odd"})),
              desktop::Problem{"is odd"});
}

TEST(ProtocolJson, WhatIsNoMessageIsRefused) {
    const std::string screen = toJson(ScreenHeader());
    for (const std::string& text :
         {std::string(), std::string("[]"), std::string("{"),
          std::string("{\"message\":1,\"path\":\"\"}"), screen.substr(0, screen.size() - 1)}) {
        EXPECT_FALSE(fromJson<ScreenRequest>(text)) << text;
        EXPECT_FALSE(fromJson<ScreenHeader>(text)) << text;
        EXPECT_FALSE(fromJson<desktop::Problem>(text)) << text;
    }
    ScreenHeader narrow;
    narrow.width = 5;
    std::string negative = toJson(narrow);
    negative.replace(negative.find("\"width\":5"), 9, "\"width\":-5");
    EXPECT_FALSE(fromJson<ScreenHeader>(negative));
}

}  // namespace
}  // namespace velmoranth::simulator::protocol_test
