// Processes that lack a framework's classes. The look-up of classes is taken over here, so that
// those of the stand-ins are not found by it.
#include "device/platform/exceptions.h"
#include "device/platform/handles.h"
#include "device/platform/services.h"
#import "device/standins/messages.h"
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <objc/runtime.h>

#include <string_view>

namespace {

bool classesAreMissing = false;
bool bundleHasClasses = true;

bool isOfAFramework(std::string_view name) {
    return name.starts_with("UI") || name.starts_with("AV") || name.starts_with("SB");
}

}  // namespace

extern "C" __attribute__((visibility("default"))) Class objc_getClass(const char* name) {
    static const auto kReal =
        reinterpret_cast<Class (*)(const char*)>(dlsym(RTLD_NEXT, "objc_getClass"));
    return classesAreMissing && isOfAFramework(name) ? Nil : kReal(name);
}

// Stands for the framework's bundle; loading it brings the classes.
@interface FrameworkBundle : StandIn {
}
- (BOOL)load;
@end

@implementation FrameworkBundle

- (BOOL)load {
    velmoranth::standins::received(self, _cmd);
    classesAreMissing = !bundleHasClasses;
    return bundleHasClasses;
}

@end

namespace {

id frameworkBundle(id cls, SEL selector, NSString* path) {
    velmoranth::standins::received(cls, selector, path);
    return [[[FrameworkBundle alloc] init] autorelease];
}

}  // namespace

namespace velmoranth::device::missing_classes_test {
namespace {

class MissingClasses : public ::testing::Test {
  protected:
    MissingClasses() {
        classesAreMissing = true;
        standins::clearJournal();
    }

    ~MissingClasses() override {
        [pool_ drain];
        EXPECT_EQ(standins::journal(), Strings{});
    }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
};

// The engine goes on to set up a view that it has made.
TEST_F(MissingClasses, OfViewsGiveViewsThatAreNil) {
    for (const platform::ViewRef& view :
         {views().viewWithFrame({}), platform::ViewRef(views().labelWithFrame({})),
          platform::ViewRef(views().imageView()),
          platform::ViewRef(views().imageViewWithImage(nullptr)),
          platform::ViewRef(views().imageViewWithFrame({}))}) {
        ASSERT_NE(view, nullptr);
        EXPECT_EQ(nativeOf(view), nil);
        view->setTag(5);
        view->setFrame({{1, 2}, {3, 4}});
        view->addSubview(view);
        EXPECT_EQ(view->frame(), platform::Rect{});
        EXPECT_EQ(view->tag(), 0);
        EXPECT_TRUE(view->subviews().empty());
        EXPECT_EQ(view->layer(), nullptr);
    }
    views().imageView()->setImage(nullptr);
    EXPECT_EQ(views().imageView()->image(), nullptr);
}

TEST_F(MissingClasses, OfGesturesAndAnimationsGiveNil) {
    class Target final : public platform::Object {
      public:
        [[nodiscard]] std::string className() const override { return "Target"; }
    } target;

    EXPECT_EQ(views().tapGestureRecognizer(target, "handleTap"), nullptr);
    views().animateWithDurationAnimationsCompletion(1, [] { FAIL(); }, [](bool) { FAIL(); });
}

TEST_F(MissingClasses, OfAlertsAndTheAppGiveNil) {
    EXPECT_EQ(alerts().alertControllerWithTitleMessagePreferredStyle(
                  "t", "m", platform::AlertControllerStyle::alert),
              nullptr);
    EXPECT_EQ(alerts().actionWithTitleStyleHandler("t", platform::AlertActionStyle::normal, [] {}),
              nullptr);
    EXPECT_EQ(application().keyWindow(), nullptr);
}

TEST_F(MissingClasses, OfTheDeviceAnswerZero) {
    EXPECT_FALSE(currentDevice().respondsToUserInterfaceIdiom());
    EXPECT_EQ(currentDevice().userInterfaceIdiom(), 0);
    EXPECT_EQ(currentDevice().orientation(), 0);
    EXPECT_EQ(mainScreen().scale(), 0);
    EXPECT_EQ(mainScreen().bounds(), platform::Rect{});
}

TEST_F(MissingClasses, OfSoundsPlayNothing) {
    const platform::AudioSessionRef session = audio().sharedInstance();
    ASSERT_NE(session, nullptr);
    EXPECT_EQ(session, audio().sharedInstance());
    EXPECT_FALSE(session->setCategory(platform::kAudioSessionCategoryAmbient));
    EXPECT_FALSE(session->setActive(true));
    EXPECT_EQ(audio().audioPlayerWithData(platform::Data{'c', 'a', 'f', 'f'}), nullptr);
    EXPECT_EQ(audio().audioPlayerWithContentsOfURL("/x.caf"), nullptr);
}

// The process begins without the framework, as most do.
class UnloadedAudio : public ::testing::Test {
  protected:
    UnloadedAudio() {
        classesAreMissing = true;
        standins::clearJournal();
    }

    ~UnloadedAudio() override {
        method_setImplementation(bundleWithPath_, found_);
        [pool_ drain];
    }

    static Strings loading() {
        return {"+[NSBundle bundleWithPath:] \"/System/Library/Frameworks/AVFoundation.framework\"",
                "-[FrameworkBundle load] FrameworkBundle"};
    }

  private:
    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
    const Method bundleWithPath_ =
        class_getClassMethod([NSBundle class], @selector(bundleWithPath:));
    const IMP found_ =
        method_setImplementation(bundleWithPath_, reinterpret_cast<IMP>(&frameworkBundle));
};

TEST_F(UnloadedAudio, IsLoadedWithTheFirstSound) {
    platform::Audio& sounds = audio();
    EXPECT_EQ(sounds.audioPlayerWithData(std::nullopt), nullptr);
    EXPECT_EQ(standins::journal(), Strings{});
    EXPECT_NE(sounds.audioPlayerWithData(platform::Data{'c', 'a', 'f', 'f'}), nullptr);
    Strings expected = loading();
    expected.push_back("-[AVAudioPlayer initWithData:error:] 4 bytes");
    EXPECT_EQ(standins::journal(), expected);
}

TEST_F(UnloadedAudio, IsLoadedWithTheSession) {
    const platform::AudioSessionRef session = audio().sharedInstance();
    ASSERT_NE(session, nullptr);
    EXPECT_NE(session->native(), nullptr);
    EXPECT_EQ(standins::living("FrameworkBundle"), 0);
    static_cast<void>(audio().sharedInstance());
    Strings expected = loading();
    expected.insert(expected.end(), 2, "+[AVAudioSession sharedInstance]");
    EXPECT_EQ(standins::journal(), expected);
}

TEST_F(UnloadedAudio, IsLoadedForAFile) {
    EXPECT_EQ(audio().audioPlayerWithContentsOfURL("/no/such/file"), nullptr);
    Strings expected = loading();
    expected.push_back("-[AVAudioPlayer initWithContentsOfURL:error:] /no/such/file");
    EXPECT_EQ(standins::journal(), expected);
}

TEST_F(UnloadedAudio, IsNotTriedAgain) {
    bundleHasClasses = false;
    EXPECT_EQ(audio().sharedInstance()->native(), nullptr);
    EXPECT_EQ(audio().audioPlayerWithContentsOfURL("/x.caf"), nullptr);
    EXPECT_EQ(audio().audioPlayerWithData(platform::Data{'c', 'a', 'f', 'f'}), nullptr);
    EXPECT_EQ(standins::journal(), loading());
}

TEST(LoadedAudio, IsNotLoadedAgain) {
    @autoreleasepool {
        const Method method = class_getClassMethod([NSBundle class], @selector(bundleWithPath:));
        const IMP found = method_setImplementation(method, reinterpret_cast<IMP>(&frameworkBundle));
        standins::clearJournal();
        EXPECT_NE(audio().sharedInstance()->native(), nullptr);
        method_setImplementation(method, found);
        EXPECT_EQ(standins::journal(), Strings{"+[AVAudioSession sharedInstance]"});
    }
}

TEST_F(MissingClasses, LeaveObjectsWithoutAKind) {
    EXPECT_EQ(viewOf([[[StandIn alloc] init] autorelease]), nullptr);
    EXPECT_NE(wrapAny([[[StandIn alloc] init] autorelease]), nullptr);
}

}  // namespace
}  // namespace velmoranth::device::missing_classes_test
