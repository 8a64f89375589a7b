#include "device/standins/standin.h"
#include <CydiaSubstrate/CydiaSubstrate.h>
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

@interface Hooked : NSObject {
}
+ (int)shared;
- (int)value;
@end

@implementation Hooked

+ (int)shared {
    return 10;
}

- (int)value {
    return 1;
}

@end

@interface HookedHeir : Hooked {
}
@end

@implementation HookedHeir
@end

namespace {

using Value = int (*)(id, SEL);
using Function = void (*)();  // between types of functions

IMP original = nullptr;

int hundredMore(id self, SEL selector) {
    const auto platforms = reinterpret_cast<Value>(reinterpret_cast<Function>(original));
    return 100 + platforms(self, selector);
}

const IMP replacement = reinterpret_cast<IMP>(reinterpret_cast<Function>(&hundredMore));

class Hooking : public testing::Test {
  protected:
    ~Hooking() override { [pool_ drain]; }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    Hooked* parent_ = [[[Hooked alloc] init] autorelease];
    HookedHeir* heir_ = [[[HookedHeir alloc] init] autorelease];
};

TEST_F(Hooking, ReplacesAMethodAndGivesWhatItHad) {
    MSHookMessageEx([Hooked class], @selector(value), replacement, &original);
    EXPECT_EQ([parent_ value], 101);
    EXPECT_EQ([heir_ value], 101);
}

TEST_F(Hooking, OverridesAnInheritedMethodInTheClassAlone) {
    MSHookMessageEx([HookedHeir class], @selector(value), replacement, &original);
    EXPECT_EQ([heir_ value], 101);
    EXPECT_EQ([parent_ value], 1);
}

TEST_F(Hooking, ReplacesClassMethodsInTheMetaclass) {
    MSHookMessageEx(object_getClass([HookedHeir class]), @selector(shared), replacement, &original);
    EXPECT_EQ([HookedHeir shared], 110);
    EXPECT_EQ([Hooked shared], 10);
}

TEST_F(Hooking, InstallsNothingWithoutAClassOrAMethod) {
    MSHookMessageEx(Nil, @selector(value), replacement, &original);
    MSHookMessageEx([Hooked class], sel_registerName("none"), replacement, &original);
    EXPECT_EQ(original, nullptr);
    EXPECT_FALSE([parent_ respondsToSelector:sel_registerName("none")]);
}

TEST_F(Hooking, IsNoted) {
    velmoranth::standins::clearJournal();
    IMP unused = nullptr;
    MSHookMessageEx([Hooked class], @selector(value), replacement, &unused);
    MSHookMessageEx(object_getClass([Hooked class]), @selector(shared), replacement, &unused);
    MSHookMessageEx(Nil, @selector(value), replacement, &unused);
    EXPECT_EQ(velmoranth::standins::journal(),
              (std::vector<std::string>{"MSHookMessageEx -[Hooked value]",
                                        "MSHookMessageEx +[Hooked shared]",
                                        "MSHookMessageEx nil value"}));
}

}  // namespace
