// The decorators over the desktop's own services and a device root.
#include "record/recorded_services.h"

#include "desktop/files/device_root.h"
#include "desktop/image_io/image_io.h"
#include "desktop/services/services.h"
#include "tests/support/temporary_folder.h"

#include "record/recorder.h"
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velmoranth::record::recorded_services_test {
namespace {

class RecordedServicesTest : public testing::Test {
  protected:
    RecordedServicesTest() {
        services_.becomePlatform();
        recorded_ = std::make_unique<RecordedServices>(platform::platform(), nullptr);
        Recorder::setCurrent(&recorder_);
    }

    // What was taken down since the last time.
    std::string taken() { return textOf(recorder_.take()); }

    const platform::Platform& platform() { return recorded_->platform(); }

    void picture(const std::string& name, std::size_t side) const {
        const std::vector<std::uint8_t> pixels(side * side * 4, 255);
        const auto png = desktop::encodePng(pixels, side, side, side * 4);
        folder_.file(name, std::string(png.begin(), png.end()));
    }

    tests::TemporaryFolder folder_;

  private:
    desktop::Services services_{
        desktop::DeviceRoot::open(folder_.path()).value(), {}, [](const std::string&) {}};
    std::unique_ptr<RecordedServices> recorded_;
    Recorder recorder_;
};

TEST_F(RecordedServicesTest, FilesThatAreLookedForAreFoundOrMissing) {
    folder_.file("a.txt", "abc");
    EXPECT_TRUE(platform().fileManager.fileExistsAtPath("/a.txt"));
    EXPECT_FALSE(platform().fileManager.fileExistsAtPath("/b.txt"));
    EXPECT_TRUE(platform().fileManager.fileExistsAtPathIsDirectory("/").isDirectory);
    EXPECT_TRUE(platform().fileManager.dataWithContentsOfFile("/a.txt"));
    EXPECT_EQ(taken(),
              "found      /a.txt -[NSFileManager fileExistsAtPath:] = YES\n"
              "missing    /b.txt -[NSFileManager fileExistsAtPath:] = NO\n"
              "found      / -[NSFileManager fileExistsAtPath:isDirectory:] = folder\n"
              "found      /a.txt +[NSData dataWithContentsOfFile:] = 3 bytes\n");
}

TEST_F(RecordedServicesTest, APictureIsToldByTheFileThatItWasReadFrom) {
    picture("p@2x.png", 6);
    picture("p.png", 4);
    EXPECT_NE(platform().images.imageWithContentsOfFile("/p.png"), nullptr);
    EXPECT_EQ(taken(),
              "missing    /p@3x.png +[UIImage imageWithContentsOfFile:] \"/p.png\" = nil\n"
              "found      /p@2x.png +[UIImage imageWithContentsOfFile:] \"/p.png\" = 3×3 @2x\n");
}

TEST_F(RecordedServicesTest, AnUnreadableFileIsToldWithItsReason) {
    folder_.file("empty.png");
    folder_.file("text.png", "no picture");
    folder_.folder("folder.png");
    folder_.file("list.plist", "<plist");
    for (const char* const path : {"/empty.png", "/text.png", "/folder.png"}) {
        EXPECT_EQ(platform().images.imageWithContentsOfFile(path), nullptr);
    }
    EXPECT_FALSE(platform().propertyLists.dictionaryWithContentsOfFile("/list.plist"));
    const std::string text = taken();
    EXPECT_NE(text.find("unreadable /empty.png +[UIImage imageWithContentsOfFile:] = nil (the file "
                        "is empty)\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("unreadable /text.png"), std::string::npos) << text;
    EXPECT_NE(
        text.find(
            "unreadable /folder.png +[UIImage imageWithContentsOfFile:] = nil (it is a folder)\n"),
        std::string::npos)
        << text;
    EXPECT_NE(
        text.find("unreadable /list.plist +[NSDictionary dictionaryWithContentsOfFile:] = nil ("),
        std::string::npos)
        << text;
}

TEST_F(RecordedServicesTest, ChangesOfFilesAreToldWithTheirEnd) {
    folder_.file("a", "abc");
    EXPECT_FALSE(platform().fileManager.moveItemAtPathToPath("/a", "/b"));
    EXPECT_TRUE(platform().fileManager.removeItemAtPath("/a"));
    EXPECT_EQ(platform().libSystem.chmod("/b", 0600), 0);
    const std::string text = taken();
    EXPECT_TRUE(text.starts_with(
        "written    /b -[NSFileManager moveItemAtPath:toPath:error:] \"/a\" = done\n"
        "written    /a -[NSFileManager removeItemAtPath:error:] = error ("))
        << text;
    EXPECT_TRUE(text.ends_with("written    /b chmod 0600 = 0\n")) << text;
}

TEST_F(RecordedServicesTest, CallbacksRunInAFrameOfTheirOwn) {
    int calls = 0;
    platform().views.animateWithDurationAnimationsCompletion(
        1,
        [&] {
            ++calls;
            platform().log.write("moving");
        },
        nullptr);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(taken(),
              "call       +[UIView animateWithDuration:animations:completion:] 1 set nil\n"
              "called     +[UIView animateWithDuration:animations:completion:]\n"
              "  log        moving\n");
}

TEST_F(RecordedServicesTest, NilAnswersAndArgumentsAreTold) {
    EXPECT_EQ(platform().images.imageWithCGImage(nullptr), nullptr);
    EXPECT_EQ(platform().objc.getClass("Nobody"), nullptr);
    EXPECT_EQ(taken(),
              "call       +[UIImage imageWithCGImage:] nil = nil\n"
              "call       objc_getClass Nobody = nil\n");
}

TEST_F(RecordedServicesTest, HooksAndObserversAndClassesAreTold) {
    platform().objc.registerClass(
        {.name = "A", .superclass = "NSObject", .load = nullptr, .initialize = nullptr});
    const platform::ClassRef cls = platform().objc.getClass("A");
    platform::Implementation original;
    platform().substrate.hookMessageEx(cls, "b:", {}, &original);
    platform().substrate.hookMessageEx(platform().objc.getMetaclass(cls), "c", {}, nullptr);
    platform().substrate.hookMessageEx(nullptr, "d", {}, nullptr);
    int observer = 0;
    platform().darwinNotifications.addObserver(
        &observer,
        [](platform::DarwinNotificationCenter&, void*, const std::string&, const void*,
           const platform::Dictionary*) {},
        "n", nullptr, platform::SuspensionBehavior::coalesce);
    EXPECT_EQ(taken(),
              "call       objc_registerClassPair A NSObject\n"
              "call       objc_getClass A = A\n"
              "call       MSHookMessageEx -[A b:]\n"
              "call       object_getClass A = A\n"
              "call       MSHookMessageEx +[A c]\n"
              "call       MSHookMessageEx nil d\n"
              "call       CFNotificationCenterAddObserver set \"n\" nil 2\n");
}

TEST_F(RecordedServicesTest, WhatALayerDoesToRenderIsNotTold) {
    const InEngine engine;
    const auto view = platform().views.viewWithFrame({{1, 2}, {4, 4}});
    const auto inner = platform().views.viewWithFrame({{1, 1}, {2, 2}});
    view->addSubview(inner);
    platform().imageContexts.beginImageContextWithOptions({4, 4}, false, 1);
    static_cast<void>(taken());
    view->layer()->renderInContext(platform().imageContexts.getCurrentContext());
    platform().imageContexts.endImageContext();
    EXPECT_EQ(taken(),
              "call       UIGraphicsGetCurrentContext = __NSCFType\n"
              "message    -[CALayer renderInContext:] UIView __NSCFType\n"
              "call       UIGraphicsEndImageContext\n");
}

}  // namespace
}  // namespace velmoranth::record::recorded_services_test
