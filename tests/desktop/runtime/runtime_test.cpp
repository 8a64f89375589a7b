#include "desktop/runtime/runtime.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace velmoranth::desktop::runtime_test {
namespace {

using platform::Class;
using platform::ClassRef;
using platform::Implementation;
using platform::makeImplementation;
using platform::Object;

class Thing final : public Object {
  public:
    explicit Thing(std::string cls, int number = 0) : value(number), class_(std::move(cls)) {}

    [[nodiscard]] std::string className() const override { return class_; }

    int value;

  private:
    std::string class_;
};

// A process with Root <- Middle <- Leaf; Root answers number (1 + value) and, class side, label.
class RuntimeTest : public testing::Test {
  public:
    RuntimeTest() {
        runtime.addClass("Root");
        runtime.addClass("Middle", "Root");
        runtime.addClass("Leaf", "Middle");
        runtime.addInstanceMethod("Root", "number", number([](Thing& t) { return 1 + t.value; }));
        runtime.addClassMethod("Root", "label", std::function<std::string(Class&)>([](Class& cls) {
                                   return "label of " + cls.name();
                               }));
    }

    static std::function<int(Thing&)> number(std::function<int(Thing&)> function) {
        return function;
    }

    static Implementation numberImplementation(std::function<int(Thing&)> function) {
        return makeImplementation(std::move(function));
    }

    int numberOf(const std::string& cls, int value = 0) {
        Thing thing(cls, value);
        return runtime.send<int>(thing, "number");
    }

    static int call(const Implementation& implementation, Object& receiver) {
        const auto* const function = implementation.as<int(Object&)>();
        return function == nullptr ? -1 : (*function)(receiver);
    }

    std::vector<std::string> warnings;
    Runtime runtime{[this](const std::string& line) { warnings.push_back(line); }};
};

TEST_F(RuntimeTest, ClassIsAddedOnceAndNeedsItsSuperclass) {
    EXPECT_TRUE(runtime.addClass("Other", "Leaf"));
    EXPECT_FALSE(runtime.addClass("Other", "Leaf"));
    EXPECT_FALSE(runtime.addClass("Orphan", "Missing"));
    EXPECT_EQ(runtime.getClass("Orphan"), nullptr);
    EXPECT_FALSE(runtime.addClass(""));
}

TEST_F(RuntimeTest, ClassHasANameAndPrintsIt) {
    const ClassRef leaf = runtime.getClass("Leaf");
    ASSERT_NE(leaf, nullptr);
    EXPECT_EQ(leaf->name(), "Leaf");
    EXPECT_EQ(leaf->description(), "Leaf");
    EXPECT_FALSE(leaf->isMetaclass());
    EXPECT_EQ(leaf, runtime.getClass("Leaf"));
    EXPECT_EQ(runtime.getClass("Missing"), nullptr);
}

TEST_F(RuntimeTest, MetaclassHasTheNameOfItsClass) {
    const ClassRef meta = runtime.getMetaclass(runtime.getClass("Leaf"));
    ASSERT_NE(meta, nullptr);
    EXPECT_TRUE(meta->isMetaclass());
    EXPECT_EQ(meta->name(), "Leaf");
    EXPECT_NE(meta, runtime.getClass("Leaf"));
    EXPECT_EQ(runtime.getMetaclass(nullptr), nullptr);
}

TEST_F(RuntimeTest, MetaclassOfAMetaclassIsTheRootMetaclass) {
    const ClassRef rootMeta = runtime.getMetaclass(runtime.getClass("Root"));
    EXPECT_EQ(runtime.getMetaclass(runtime.getMetaclass(runtime.getClass("Leaf"))), rootMeta);
    EXPECT_EQ(runtime.getMetaclass(rootMeta), rootMeta);
}

TEST_F(RuntimeTest, SubclassAnswersInheritedInstanceAndClassMethods) {
    EXPECT_EQ(numberOf("Leaf", 4), 5);
    EXPECT_EQ(runtime.sendToClass<std::string>("Leaf", "label"), "label of Leaf");
    EXPECT_TRUE(warnings.empty());
}

TEST_F(RuntimeTest, NearestMethodWins) {
    runtime.addInstanceMethod("Middle", "number", number([](Thing&) { return 20; }));
    EXPECT_EQ(numberOf("Root"), 1);
    EXPECT_EQ(numberOf("Middle"), 20);
    EXPECT_EQ(numberOf("Leaf"), 20);
}

TEST_F(RuntimeTest, AddingAnOwnMethodAgainReplacesIt) {
    EXPECT_TRUE(runtime.addInstanceMethod("Root", "number", number([](Thing&) { return 9; })));
    EXPECT_EQ(numberOf("Root"), 9);
    EXPECT_FALSE(runtime.addInstanceMethod("Missing", "number", number([](Thing&) { return 9; })));
}

TEST_F(RuntimeTest, InstanceAndClassSideAreApart) {
    Thing thing("Root");
    EXPECT_EQ(runtime.send<std::string>(thing, "label"), "");
    EXPECT_EQ(warnings.size(), 1U);
    runtime.addClassMethod("Root", "number", std::function<int(Class&)>([](Class&) { return 70; }));
    EXPECT_EQ(runtime.sendToClass<int>("Leaf", "number"), 70);
    EXPECT_EQ(numberOf("Leaf"), 1);
}

TEST_F(RuntimeTest, RootClassAnswersWithItsInstanceMethodsToo) {
    runtime.addInstanceMethod(
        "Root", "description",
        std::function<std::string(Object&)>([](Object& o) { return o.description(); }));
    EXPECT_EQ(runtime.sendToClass<std::string>("Leaf", "description"), "Leaf");
}

TEST_F(RuntimeTest, ClassObjectAsReceiverIsAnsweredByTheClassSide) {
    EXPECT_EQ(runtime.send<std::string>(*runtime.getClass("Middle"), "label"), "label of Middle");
}

TEST_F(RuntimeTest, OwnAndInheritedMethodsAreToldApart) {
    const ClassRef leaf = runtime.getClass("Leaf");
    EXPECT_FALSE(runtime.hasOwnMethod(leaf, "number"));
    EXPECT_TRUE(runtime.hasOwnMethod(runtime.getClass("Root"), "number"));
    EXPECT_TRUE(runtime.methodOf(leaf, "number"));
    EXPECT_FALSE(runtime.methodOf(leaf, "missing"));
    EXPECT_FALSE(runtime.methodOf(nullptr, "number"));
    EXPECT_FALSE(runtime.hasOwnMethod(nullptr, "number"));
}

TEST_F(RuntimeTest, KindFollowsTheSuperclasses) {
    EXPECT_TRUE(runtime.isKindOf(runtime.getClass("Leaf"), "Leaf"));
    EXPECT_TRUE(runtime.isKindOf(runtime.getClass("Leaf"), "Root"));
    EXPECT_FALSE(runtime.isKindOf(runtime.getClass("Root"), "Leaf"));
    EXPECT_FALSE(runtime.isKindOf(nullptr, "Root"));
    EXPECT_FALSE(runtime.isKindOf(runtime.getClass("Root"), "Missing"));
}

TEST_F(RuntimeTest, ClassesOfAnotherRuntimeAreUnknown) {
    Runtime other{nullptr};
    other.addClass("Root");
    const ClassRef foreign = other.getClass("Root");
    EXPECT_FALSE(runtime.methodOf(foreign, "number"));
    EXPECT_EQ(runtime.getMetaclass(foreign), nullptr);
    EXPECT_FALSE(
        runtime.addMethod(foreign, "x", numberImplementation([](Thing&) { return 1; }), "i@:"));
}

TEST_F(RuntimeTest, UnknownSelectorIsRefusedWithTheReceiverAndSignature) {
    Thing thing("Leaf");
    EXPECT_EQ((runtime.send<int, double>(thing, "missing:", 2.0)), 0);
    ASSERT_EQ(warnings.size(), 1U);
    EXPECT_NE(warnings[0].find("-[Leaf missing:]"), std::string::npos) << warnings[0];
    EXPECT_NE(warnings[0].find("double"), std::string::npos) << warnings[0];
    EXPECT_NE(warnings[0].find("no method"), std::string::npos) << warnings[0];
    EXPECT_EQ(warnings[0].find('\n'), std::string::npos);
}

TEST_F(RuntimeTest, TypesThatDoNotFitAreRefused) {
    Thing thing("Leaf");
    EXPECT_EQ((runtime.send<double>(thing, "number")), 0.0);
    EXPECT_EQ((runtime.send<int, int>(thing, "number", 3)), 0);
    runtime.send<void>(thing, "number");
    ASSERT_EQ(warnings.size(), 3U);
    EXPECT_NE(warnings[0].find("double ("), std::string::npos) << warnings[0];
    EXPECT_NE(warnings[0].find("int ("), std::string::npos) << warnings[0];
}

TEST_F(RuntimeTest, MessageToAMissingClassAnswersZeroSilently) {
    EXPECT_EQ(runtime.sendToClass<int>("Missing", "number"), 0);
    EXPECT_TRUE(warnings.empty());
}

TEST_F(RuntimeTest, MessageToAnObjectOfAnUnknownClassIsRefused) {
    EXPECT_EQ(numberOf("Missing"), 0);
    EXPECT_EQ(warnings.size(), 1U);
}

// --- hookMessageEx

TEST_F(RuntimeTest, HookReplacesAndHandsOutTheOriginal) {
    Implementation original;
    runtime.hookMessageEx(runtime.getClass("Root"), "number",
                          numberImplementation([&](Thing& t) { return 100 + call(original, t); }),
                          &original);
    EXPECT_EQ(numberOf("Root", 1), 102);
    EXPECT_EQ(numberOf("Leaf", 1), 102);
    EXPECT_TRUE(warnings.empty());
}

TEST_F(RuntimeTest, HookOfAnInheritedMethodLeavesTheParentAlone) {
    Implementation original;
    runtime.hookMessageEx(runtime.getClass("Middle"), "number",
                          numberImplementation([&](Thing& t) { return 100 + call(original, t); }),
                          &original);
    EXPECT_TRUE(runtime.hasOwnMethod(runtime.getClass("Middle"), "number"));
    EXPECT_EQ(numberOf("Root", 1), 2);
    EXPECT_EQ(numberOf("Middle", 1), 102);
    EXPECT_EQ(numberOf("Leaf", 1), 102);
}

TEST_F(RuntimeTest, OriginalOfAnInheritedMethodSeesALaterHookOfTheParent) {
    Implementation middleOriginal;
    Implementation rootOriginal;
    runtime.hookMessageEx(runtime.getClass("Middle"), "number", numberImplementation([&](Thing& t) {
                              return 100 + call(middleOriginal, t);
                          }),
                          &middleOriginal);
    runtime.hookMessageEx(runtime.getClass("Root"), "number", numberImplementation([&](Thing& t) {
                              return 1000 + call(rootOriginal, t);
                          }),
                          &rootOriginal);
    EXPECT_EQ(numberOf("Middle"), 1101);
}

TEST_F(RuntimeTest, HooksOfOneMethodStack) {
    Implementation first;
    Implementation second;
    const ClassRef root = runtime.getClass("Root");
    runtime.hookMessageEx(
        root, "number", numberImplementation([&](Thing& t) { return 2 * call(first, t); }), &first);
    runtime.hookMessageEx(root, "number",
                          numberImplementation([&](Thing& t) { return 10 + call(second, t); }),
                          &second);
    EXPECT_EQ(numberOf("Root", 2), 16);
}

TEST_F(RuntimeTest, ClassSideIsHookedThroughTheMetaclass) {
    Implementation original;
    runtime.hookMessageEx(runtime.getMetaclass(runtime.getClass("Leaf")), "label",
                          makeImplementation(std::function<std::string(Class&)>([&](Class& cls) {
                              return "new " + (*original.as<std::string(Object&)>())(cls);
                          })),
                          &original);
    EXPECT_EQ(runtime.sendToClass<std::string>("Leaf", "label"), "new label of Leaf");
    EXPECT_EQ(runtime.sendToClass<std::string>("Middle", "label"), "label of Middle");
}

TEST_F(RuntimeTest, HookOfAMissingSelectorWarnsAndChangesNothing) {
    const Implementation before = numberImplementation([](Thing&) { return 5; });
    Implementation original = before;
    runtime.hookMessageEx(runtime.getClass("Leaf"),
                          "missing:", numberImplementation([](Thing&) { return 1; }), &original);
    EXPECT_EQ(warnings, std::vector<std::string>{"MS:Warning: message not found [Leaf missing:]"});
    EXPECT_TRUE(original == before);
    EXPECT_FALSE(runtime.methodOf(runtime.getClass("Leaf"), "missing:"));
}

TEST_F(RuntimeTest, HookOfNilClassOrWithoutReplacementWarnsAndChangesNothing) {
    Implementation original;
    runtime.hookMessageEx(nullptr, "number", numberImplementation([](Thing&) { return 1; }),
                          &original);
    runtime.hookMessageEx(runtime.getClass("Root"), "number", Implementation(), &original);
    EXPECT_EQ(warnings,
              (std::vector<std::string>{"MS:Warning: nil class argument for selector number",
                                        "MS:Warning: nil imp argument for [Root number]"}));
    EXPECT_FALSE(original);
    EXPECT_EQ(numberOf("Root"), 1);
}

TEST_F(RuntimeTest, HookOfAnotherSignatureWarnsAndChangesNothing) {
    Implementation original;
    runtime.hookMessageEx(
        runtime.getClass("Root"), "number",
        makeImplementation(std::function<double(Thing&)>([](Thing&) { return 1.5; })), &original);
    ASSERT_EQ(warnings.size(), 1U);
    EXPECT_EQ(warnings[0].rfind("MS:Warning: [Root number]", 0), 0U) << warnings[0];
    EXPECT_FALSE(original);
    EXPECT_EQ(numberOf("Root"), 1);
}

TEST_F(RuntimeTest, HookNeedsNoPlaceForTheOriginalAndSendsNoMessage) {
    int initialized = 0;
    runtime.registerClass(
        {.name = "Library", .superclass = "Root", .load = {}, .initialize = [&](const ClassRef&) {
             ++initialized;
         }});
    runtime.hookMessageEx(runtime.getClass("Library"), "number",
                          numberImplementation([](Thing&) { return 8; }), nullptr);
    EXPECT_EQ(initialized, 0);
    EXPECT_EQ(numberOf("Library"), 8);
}

TEST_F(RuntimeTest, MethodMayReplaceItselfWhileItRuns) {
    auto captured = std::make_shared<std::string>("still here");
    runtime.addInstanceMethod(
        "Root", "number", number([this, captured](Thing& t) {
            for (int i = 0; i < 100; ++i) {
                runtime.addInstanceMethod("Root", "number", number([](Thing&) { return -1; }));
            }
            // What this call captured is alive although nothing else holds the method any more.
            return numberOf("Root") + static_cast<int>(captured->size()) + t.value;
        }));
    captured.reset();
    EXPECT_EQ(numberOf("Root", 5), -1 + 10 + 5);
    EXPECT_EQ(numberOf("Root", 5), -1);
}

// --- addMethod

TEST_F(RuntimeTest, AddedMethodGoesOverAnInheritedOneButNotOverAnOwnOne) {
    EXPECT_TRUE(runtime.addMethod(runtime.getClass("Leaf"), "number",
                                  numberImplementation([](Thing&) { return 33; }), "i@:"));
    EXPECT_EQ(numberOf("Leaf"), 33);
    EXPECT_EQ(numberOf("Middle"), 1);
    EXPECT_FALSE(runtime.addMethod(runtime.getClass("Leaf"), "number",
                                   numberImplementation([](Thing&) { return 44; }), "i@:"));
    EXPECT_EQ(numberOf("Leaf"), 33);
    EXPECT_FALSE(runtime.addMethod(nullptr, "number",
                                   numberImplementation([](Thing&) { return 44; }), "i@:"));
    EXPECT_FALSE(runtime.addMethod(runtime.getClass("Leaf"), "none", Implementation(), "v@:"));
}

// --- Classes of a library

class RuntimeLibraryTest : public RuntimeTest {
  public:
    void add(const std::string& name, const std::string& superclass, bool withInitialize = true) {
        runtime.registerClass(
            {.name = name,
             .superclass = superclass,
             .load = [this, name] { events.push_back("load " + name); },
             .initialize =
                 withInitialize
                     ? [this, name](
                           const ClassRef&
                               cls) { events.push_back(name + " initialize for " + cls->name()); }
                     : std::function<void(const ClassRef&)>()});
    }

    std::vector<std::string> events;
};

TEST_F(RuntimeLibraryTest, RegistrationRunsLoadAndNotInitialize) {
    add("Library", "NSObject");
    EXPECT_EQ(events, std::vector<std::string>{"load Library"});
    ASSERT_NE(runtime.getClass("Library"), nullptr);
    EXPECT_TRUE(runtime.isKindOf(runtime.getClass("Library"), "NSObject"));
}

TEST_F(RuntimeLibraryTest, TakenNameOrMissingSuperclassIsRefusedAndNothingRuns) {
    add("Root", "NSObject");
    add("Library", "Missing");
    EXPECT_TRUE(events.empty());
    EXPECT_EQ(warnings.size(), 2U);
    EXPECT_EQ(runtime.getClass("Library"), nullptr);
    EXPECT_EQ(numberOf("Root"), 1);
}

TEST_F(RuntimeLibraryTest, SendLoadInitializesFirstAndOnlyOnce) {
    add("Library", "NSObject");
    events.clear();
    runtime.sendMessage(runtime.getClass("Library"), "load");
    runtime.sendMessage(runtime.getClass("Library"), "load");
    EXPECT_EQ(events, (std::vector<std::string>{"Library initialize for Library", "load Library",
                                                "load Library"}));
    runtime.sendMessage(nullptr, "load");
    EXPECT_TRUE(warnings.empty());
}

TEST_F(RuntimeLibraryTest, SuperclassInitializesBeforeItsSubclass) {
    add("Base", "NSObject");
    add("Derived", "Base");
    events.clear();
    runtime.sendMessage(runtime.getClass("Derived"), "load");
    runtime.sendMessage(runtime.getClass("Base"), "load");
    EXPECT_EQ(events, (std::vector<std::string>{"Base initialize for Base",
                                                "Derived initialize for Derived", "load Derived",
                                                "load Base"}));
}

TEST_F(RuntimeLibraryTest, SubclassWithoutInitializeRunsItsParentsOnItsOwnBehalf) {
    add("Base", "NSObject");
    add("Derived", "Base", false);
    events.clear();
    runtime.sendMessage(runtime.getClass("Derived"), "load");
    EXPECT_EQ(events, (std::vector<std::string>{"Base initialize for Base",
                                                "Base initialize for Derived", "load Derived"}));
}

TEST_F(RuntimeLibraryTest, LoadIsNotInheritedAtRegistrationButByMessage) {
    add("Base", "NSObject");
    runtime.registerClass({.name = "Quiet", .superclass = "Base", .load = {}, .initialize = {}});
    EXPECT_EQ(events, std::vector<std::string>{"load Base"});
    events.clear();
    runtime.sendMessage(runtime.getClass("Quiet"), "load");
    EXPECT_EQ(events.back(), "load Base");
}

TEST_F(RuntimeLibraryTest, ClassWithoutLoadAnswersItByDoingNothing) {
    runtime.registerClass(
        {.name = "Plain", .superclass = "NSObject", .load = {}, .initialize = {}});
    runtime.sendMessage(runtime.getClass("Plain"), "load");
    EXPECT_TRUE(events.empty());
    EXPECT_TRUE(warnings.empty());
}

TEST_F(RuntimeLibraryTest, AnyFirstMessageInitializes) {
    add("Library", "Root");
    events.clear();
    Thing thing("Library");
    runtime.send<int>(thing, "number");
    EXPECT_EQ(events, std::vector<std::string>{"Library initialize for Library"});
}

TEST_F(RuntimeLibraryTest, MessageFromWithinInitializeIsDelivered) {
    std::string answer;
    runtime.registerClass({.name = "Library",
                           .superclass = "Root",
                           .load = {},
                           .initialize = [&](const ClassRef& cls) {
                               answer = runtime.send<std::string>(*cls, "label");
                           }});
    runtime.sendMessage(runtime.getClass("Library"), "load");
    EXPECT_EQ(answer, "label of Library");
}

TEST_F(RuntimeLibraryTest, OtherThreadsWaitForInitialize) {
    std::atomic<int> initialized = 0;
    std::atomic<bool> early = false;
    runtime.registerClass({.name = "Library",
                           .superclass = "Root",
                           .load = [&] { early = early || initialized == 0; },
                           .initialize =
                               [&](const ClassRef&) {
                                   std::this_thread::sleep_for(std::chrono::milliseconds(30));
                                   ++initialized;
                               }});
    early = false;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] { runtime.sendMessage(runtime.getClass("Library"), "load"); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(initialized, 1);
    EXPECT_FALSE(early);
}

TEST_F(RuntimeTest, MessagesRunWhileMethodsAreReplaced) {
    std::atomic<bool> stop = false;
    std::atomic<int> wrong = 0;
    std::vector<std::thread> readers;
    readers.reserve(3);
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            while (!stop) {
                const int answer = numberOf("Leaf");
                wrong += answer != 1 && answer != 2 ? 1 : 0;
            }
        });
    }
    for (int i = 0; i < 2000; ++i) {
        runtime.addInstanceMethod("Root", "number", number([i](Thing&) { return 1 + i % 2; }));
    }
    stop = true;
    for (std::thread& reader : readers) {
        reader.join();
    }
    EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace velmoranth::desktop::runtime_test
