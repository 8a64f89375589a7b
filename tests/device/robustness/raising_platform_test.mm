// A platform that raises while the library asks it for something of its own: the phone's code that
// called a replaced method gets the exception as it came, and the next call is as any other.
#include "device/library/rows_support.h"
#include "device/standins/images.h"
#include <objc/runtime.h>

namespace velmoranth::standins::raising_platform_test {
namespace {

NSException* raised = nil;
IMP readsFile = nullptr;

id readOrRaise(id self, SEL selector, NSString* path) {
    if (raised != nil) {
        [raised raise];
    }
    return reinterpret_cast<id (*)(id, SEL, NSString*)>(readsFile)(self, selector, path);
}

class RaisingPlatform : public ReplacedMethods {
  protected:
    RaisingPlatform() {
        const Method method =
            class_getClassMethod([UIImage class], @selector(imageWithContentsOfFile:));
        readsFile = method_setImplementation(method, reinterpret_cast<IMP>(&readOrRaise));
        for (const char* const name :
             {"UIImages/wheel@3x.png", "IconBundles/com.a.b-large.png",
              "Bundles/com.apple.springboard/SBBadgeBG.png", "Velmoranth/iPhoneOverlay.png"}) {
            themePng("A/" + std::string(name));
        }
        answerWith("imageNamed:inBundle:withConfiguration:", platforms);
        answerWith("_applicationIconImageForBundleIdentifier:format:scale:", platforms);
        settings({"A"}, {"enable", "enableOverlay"});
    }

    ~RaisingPlatform() override { raised = nil; }

    // The platform's method raises what the test's pool keeps.
    static void expectToPass(const Call& call) {
        @autoreleasepool {
            raised = [NSException exceptionWithName:@"Unreadable" reason:@"" userInfo:nil];
            for (int time = 0; time < 2; ++time) {
                EXPECT_EQ(leftBy([&] { EXPECT_EQ(address(thrownBy(call)), address(raised)); }),
                          Lines{});
            }
            raised = nil;
        }
        EXPECT_EQ(openImageContexts(), 0U);
        EXPECT_EQ(address(thrownBy(call)), nullptr);
        EXPECT_EQ(leftBy(call), Lines{});
    }

    UIImage* platforms = namedImage("platform's", 8, 8);
};

TEST_F(RaisingPlatform, ReachesWhoAskedForAnImage) {
    expectToPass([] { [UIImage imageNamed:@"wheel" inBundle:nil withConfiguration:nil]; });
    EXPECT_EQ(pathOf([UIImage imageNamed:@"wheel" inBundle:nil withConfiguration:nil]),
              "/Library/Themes/A/UIImages/wheel@3x.png");
}

TEST_F(RaisingPlatform, ReachesWhoAskedForAnIcon) {
    expectToPass(
        [] { [UIImage _applicationIconImageForBundleIdentifier:@"com.a.b" format:0 scale:2]; });
}

TEST_F(RaisingPlatform, ReachesWhoLaidOutABadge) {
    SBIconBadgeView* const badge = named([[SBIconBadgeView alloc] init], "badge");
    expectToPass([badge] { [badge layoutSubviews]; });
}

}  // namespace
}  // namespace velmoranth::standins::raising_platform_test
