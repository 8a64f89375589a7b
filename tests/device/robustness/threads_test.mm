// Replaced methods and the library's classes, asked by several threads at once, as processes with a
// user interface load images. The user's settings and themes do not change meanwhile: that they do
// on the main thread alone.
#include "device/library/rows_support.h"
#import "device/standins/av_foundation.h"
#include "device/standins/images.h"

#include <array>
#include <atomic>
#include <thread>

namespace velmoranth::standins::threads_test {
namespace {

constexpr int kThreads = 4;
constexpr int kCalls = 500;

class Threads : public ReplacedMethods {
  protected:
    // The work is done by all threads, which begin together; it says whether all was well.
    template <class Work>
    static int failuresOf(Work work) {
        std::atomic<int> failures = 0;
        std::atomic<int> ready = 0;
        std::vector<std::thread> threads;
        for (int thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([&] {
                ++ready;
                while (ready < kThreads) {
                    std::this_thread::yield();
                }
                for (int call = 0; call < kCalls; ++call) {
                    @autoreleasepool {
                        failures += work() ? 0 : 1;
                    }
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        return failures;
    }
};

TEST_F(Threads, WithThemingOffGetThePlatformsImages) {
    settings({"A"}, {});
    UIImage* const image = namedImage("platform's", 8, 8);
    answerWith("imageNamed:inBundle:withConfiguration:", image);
    EXPECT_EQ(failuresOf([image] {
                  return [UIImage imageNamed:@"wheel" inBundle:nil withConfiguration:nil] == image;
              }),
              0);
}

// Found images are kept in lists that all threads add to, and misses read the preferences anew.
TEST_F(Threads, WithThemingOnGetTheThemesImages) {
    settings({"A"}, {"enable"});
    constexpr int kNames = 40;
    for (int name = 0; name < kNames; name += 2) {
        themePng("A/UIImages/picture" + std::to_string(name) + ".png");
    }
    UIImage* const platforms = namedImage("platform's", 8, 8);
    answerWith("imageNamed:inBundle:", platforms);
    std::atomic<int> next = 0;
    EXPECT_EQ(failuresOf([&] {
                  const int number = next++ % kNames;
                  NSString* const name = [NSString stringWithFormat:@"picture%d", number];
                  UIImage* const image = [UIImage imageNamed:name inBundle:nil];
                  return number % 2 == 0 ? pathOf(image) == "/Library/Themes/A/UIImages/picture" +
                                                                std::to_string(number) + ".png"
                                         : image == platforms;
              }),
              0);
}

TEST_F(Threads, ReadALabelsAlpha) {
    settings({"A"}, {"enable"});
    SBIconLegibilityLabelView* const label =
        named([[SBIconLegibilityLabelView alloc] init], "label");
    [label setAlpha:0.5];
    EXPECT_EQ(failuresOf([label] { return [label alpha] == 0.5 && ![label isHidden]; }), 0);
}

TEST_F(Threads, GetTheSameSingletons) {
    const id manager = [velMoranth() sharedIconManager];
    const id files = [fileManager() sharedFileManager];
    EXPECT_EQ(failuresOf([=] {
                  return [velMoranth() sharedIconManager] == manager &&
                         [fileManager() sharedFileManager] == files;
              }),
              0);
}

// Every object of the library's own classes has its part in the engine, kept in one list.
TEST_F(Threads, MakeAndEndObjectsOfTheLibrarysClasses) {
    const Class sounds = static_cast<Class>(objc_getClass("Sounds"));
    const Call makeOne = [sounds] {
        const id object = [[sounds alloc] init];
        [object release];
    };
    expectNothingLeft(makeOne);
    EXPECT_EQ(failuresOf([sounds] {
                  std::array<id, 64> objects = {};
                  for (id& object : objects) {
                      object = [[sounds alloc] init];
                  }
                  bool made = true;
                  for (const id object : objects) {
                      made = made && object != nil && [object soundToPlay] == nil;
                      [object release];
                  }
                  return made;
              }),
              0);
    expectNothingLeft(makeOne);
}

// Of two threads that send an instance its first message, neither's is lost to an object of its
// own.
TEST_F(Threads, ComeFirstAtTheSameInstance) {
    AVAudioSession* const session = [[[AVAudioSession alloc] init] autorelease];
    AVAudioPlayer* const player = [[[AVAudioPlayer alloc] init] autorelease];
    const Class manager = static_cast<Class>(objc_getClass("VelMoranth"));
    for (int round = 0; round < kCalls; ++round) {
        const id<VelMoranthMessages> instance = [manager alloc];
        std::atomic<int> ready = 0;
        const auto together = [&ready] {
            ++ready;
            while (ready < 2) {
            }
        };
        std::thread other([&] {
            together();
            [instance setAudiosession:session];
        });
        together();
        [instance setSoundToPlay:player];
        other.join();
        ASSERT_EQ([instance audiosession], session) << round;
        ASSERT_EQ([instance soundToPlay], player) << round;
        [static_cast<id>(instance) release];
    }
}

}  // namespace
}  // namespace velmoranth::standins::threads_test
