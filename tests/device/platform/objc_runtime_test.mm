#include "core/hook_table.h"

#include "device/hooks/hook_entries.h"
#include "device/platform/exceptions.h"
#include "device/platform/handle.h"
#include "device/platform/phone_test.h"
#include "device/platform/services.h"
#include "device/standins/standin.h"
#include <objc/runtime.h>

#include <vector>

namespace {

std::vector<std::string> sent;

}  // namespace

@interface Gadget : StandIn {
  @public
    id _held;
    NSString* _name;
    int _count;
    id _nothing;
}
- (id)shown;
- (int)number;
- (id)trouble;
@end

@implementation Gadget

+ (void)initialize {
    sent.emplace_back("initialize");
}

- (id)shown {
    return _held;
}

- (int)number {
    return 7;
}

- (id)trouble {
    [[NSException exceptionWithName:@"Trouble" reason:@"of its own" userInfo:nil] raise];
    return nil;
}

@end

@interface LoadedGadget : Gadget {
}
@end

@implementation LoadedGadget

+ (void)load {
    sent.emplace_back("load");
}

+ (void)takeNote {
    sent.emplace_back("takeNote");
}

@end

namespace velmoranth::device::objc_runtime_test {
namespace {

class ObjcRuntime : public PhoneTest {
  protected:
    ObjcRuntime() : gadget_([[Gadget alloc] init]), handle_(wrapAny(gadget_)) {}

    ~ObjcRuntime() override {
        handle_.reset();
        [gadget_ release];
    }

    Gadget* gadget_;
    platform::ObjectRef handle_;
    platform::ObjcRuntime& objc_ = objcRuntime();
};

TEST_F(ObjcRuntime, FindsClassesByName) {
    const platform::ClassRef cls = objc_.getClass("Gadget");
    ASSERT_NE(cls, nullptr);
    EXPECT_EQ(cls->name(), "Gadget");
    EXPECT_FALSE(cls->isMetaclass());
    EXPECT_EQ(objc_.getClass("Gadget"), cls);
    EXPECT_EQ(objc_.getClass("NoSuchClass"), nullptr);
    EXPECT_EQ(objc_.getClass(""), nullptr);
}

TEST_F(ObjcRuntime, FindsMetaclasses) {
    const platform::ClassRef meta = objc_.getMetaclass(objc_.getClass("Gadget"));
    ASSERT_NE(meta, nullptr);
    EXPECT_EQ(meta->name(), "Gadget");
    EXPECT_TRUE(meta->isMetaclass());
    EXPECT_EQ(objc_.getMetaclass(nullptr), nullptr);
}

TEST_F(ObjcRuntime, LeavesTheLibrarysClassesToTheRuntime) {
    bool isLoaded = false;
    objc_.registerClass(
        {"Unheard", "NSObject", [&] { isLoaded = true; }, [](const platform::ClassRef&) {}});
    EXPECT_EQ(objc_.getClass("Unheard"), nullptr);
    EXPECT_FALSE(isLoaded);
}

TEST_F(ObjcRuntime, SendsMessagesToClasses) {
    sent.clear();
    objc_.sendMessage(objc_.getClass("LoadedGadget"), "load");
    // The first message to the class, which inherits its +initialize.
    EXPECT_EQ(sent, (std::vector<std::string>{"initialize", "load"}));
    objc_.sendMessage(objc_.getClass("LoadedGadget"), "load");
    EXPECT_EQ(sent.size(), 3U);
    objc_.sendMessage(nullptr, "load");
    EXPECT_EQ(sent.size(), 3U);
    objc_.sendMessage(objc_.getClass("LoadedGadget"), "takeNote");
    EXPECT_EQ(sent.back(), "takeNote");
    EXPECT_EQ(raisedBy([this] { objc_.sendMessage(objc_.getClass("Gadget"), "takeNote"); }),
              "NSInvalidArgumentException");
}

TEST_F(ObjcRuntime, AddsTheTablesMethods) {
    const auto methods = core::HookTable::addedMethods();
    ASSERT_FALSE(methods.empty());
    const platform::ClassRef cls = objc_.getClass("Gadget");
    const std::string selector(methods.front().selector);
    const SEL native = sel_registerName(selector.c_str());
    ASSERT_EQ(class_getInstanceMethod([Gadget class], native), nullptr);
    EXPECT_TRUE(objc_.addMethod(cls, selector, methods.front().implementation, "v@:"));
    const Method added = class_getInstanceMethod([Gadget class], native);
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(method_getImplementation(added), addedMethodEntryOf(methods.front().implementation));
    EXPECT_STREQ(method_getTypeEncoding(added), "v@:");
    EXPECT_FALSE(objc_.addMethod(cls, selector, methods.front().implementation, "v@:"));
}

TEST_F(ObjcRuntime, AddsNothingElse) {
    const auto methods = core::HookTable::addedMethods();
    ASSERT_FALSE(methods.empty());
    const platform::ClassRef cls = objc_.getClass("Gadget");
    EXPECT_FALSE(objc_.addMethod(nullptr, "other", methods.front().implementation, "v@:"));
    EXPECT_FALSE(objc_.addMethod(cls, "other", platform::Implementation(), "v@:"));
    EXPECT_FALSE(objc_.addMethod(
        cls, "other",
        platform::Implementation(std::function<void(platform::Object&)>([](auto&) {})), "v@:"));
    EXPECT_FALSE(objc_.addMethod(cls, "shown", methods.front().implementation, "v@:"));
    EXPECT_FALSE([gadget_ respondsToSelector:sel_registerName("other")]);
}

TEST_F(ObjcRuntime, KnowsKinds) {
    const platform::ObjectRef loaded = wrapAny([[[LoadedGadget alloc] init] autorelease]);
    EXPECT_TRUE(objc_.isKindOfClass(*loaded, objc_.getClass("LoadedGadget")));
    EXPECT_TRUE(objc_.isKindOfClass(*loaded, objc_.getClass("Gadget")));
    EXPECT_TRUE(objc_.isKindOfClass(*loaded, objc_.getClass("NSObject")));
    EXPECT_FALSE(objc_.isKindOfClass(*handle_, objc_.getClass("LoadedGadget")));
    EXPECT_FALSE(objc_.isKindOfClass(*handle_, nullptr));
}

// An object of the engine that the platform does not know.
struct Stranger : platform::Object {
    [[nodiscard]] std::string className() const override { return "Stranger"; }
};

TEST_F(ObjcRuntime, ObjectsWithoutOneOfThePlatformsHaveNothing) {
    Stranger stranger;
    EXPECT_FALSE(objc_.isKindOfClass(stranger, objc_.getClass("NSObject")));
    EXPECT_EQ(objc_.instanceVariable(stranger, "_held"), nullptr);
    EXPECT_EQ(objc_.valueForKey(stranger, "held"), nullptr);
}

TEST_F(ObjcRuntime, ReadsObjectsInInstanceVariables) {
    Gadget* const held = [[Gadget alloc] init];
    gadget_->_held = held;
    gadget_->_name = @"name";
    gadget_->_count = 3;
    const platform::ObjectRef found = objc_.instanceVariable(*handle_, "_held");
    EXPECT_EQ(nativeOf(found), held);
    EXPECT_EQ([held retainCount], 2U);
    ASSERT_NE(objc_.instanceVariable(*handle_, "_name"), nullptr);
    EXPECT_EQ(objc_.instanceVariable(*handle_, "_nothing"), nullptr);
    EXPECT_EQ(objc_.instanceVariable(*handle_, "_count"), nullptr);
    EXPECT_EQ(objc_.instanceVariable(*handle_, "_none"), nullptr);
    EXPECT_EQ(objc_.instanceVariable(*handle_, ""), nullptr);
    EXPECT_EQ(objc_.instanceVariable(*handle_, "isa"), nullptr);
    [held release];
}

TEST_F(ObjcRuntime, FindsTheVariablesOfSuperclasses) {
    LoadedGadget* const loaded = [[[LoadedGadget alloc] init] autorelease];
    loaded->_held = gadget_;
    const platform::ObjectRef handle = wrapAny(loaded);
    EXPECT_EQ(nativeOf(objc_.instanceVariable(*handle, "_held")), gadget_);
}

TEST_F(ObjcRuntime, ReadsNothingInAClass) {
    EXPECT_EQ(objc_.instanceVariable(*objc_.getClass("Gadget"), "_held"), nullptr);
}

TEST_F(ObjcRuntime, AsksForValuesByKey) {
    gadget_->_held = @"held";
    EXPECT_EQ(nativeOf(objc_.valueForKey(*handle_, "shown")), gadget_->_held);
    EXPECT_EQ(nativeOf(objc_.valueForKey(*handle_, "held")), gadget_->_held);
    EXPECT_EQ(nativeOf(objc_.valueForKey(*handle_, "_held")), gadget_->_held);
    EXPECT_EQ(objc_.valueForKey(*handle_, "nothing"), nullptr);
    EXPECT_TRUE([nativeOf(objc_.valueForKey(*handle_, "number")) isKindOfClass:[NSNumber class]]);
}

// The object that is thrown; nil for none.
id thrownBy(const std::function<void()>& operation) {
    @try {
        operation();
    } @catch (id thrown) {
        return thrown;
    }
    return nil;
}

// The platform's own error, as it came: of a key that leads nowhere as of any other.
TEST_F(ObjcRuntime, WhatThePlatformRaisesOverAKeyPasses) {
    standins::clearLog();
    const NSUInteger references = [gadget_ retainCount];
    NSException* const missing =
        thrownBy([this] { static_cast<void>(objc_.valueForKey(*handle_, "_highlightView")); });
    EXPECT_EQ(textOf([missing name]), "NSUnknownKeyException");
    EXPECT_EQ(textOf([missing reason]),
              "[" + handle_->description() +
                  " valueForUndefinedKey:]: this class is not key value coding-compliant for the "
                  "key _highlightView.");
    NSException* const trouble =
        thrownBy([this] { static_cast<void>(objc_.valueForKey(*handle_, "trouble")); });
    EXPECT_EQ(textOf([trouble name]), "Trouble");
    EXPECT_EQ(standins::logLines(), std::vector<std::string>());
    EXPECT_EQ([gadget_ retainCount], references);
}

TEST_F(ObjcRuntime, GivesBackWhatItTook) {
    const long before = standins::living("Gadget");
    {
        Gadget* const held = [[Gadget alloc] init];
        gadget_->_held = held;
        platform::ObjectRef found = objc_.instanceVariable(*handle_, "_held");
        platform::ObjectRef valued = objc_.valueForKey(*handle_, "shown");
        [held release];
        EXPECT_EQ(standins::living("Gadget"), before + 1);
        found.reset();
        valued.reset();
        gadget_->_held = nil;
    }
    drain();
    EXPECT_EQ(standins::living("Gadget"), before);
}

}  // namespace
}  // namespace velmoranth::device::objc_runtime_test
