// What is asked of an object apart from messages: its kind, its instance variables, and values by
// key.
#include "desktop/runtime/runtime.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::desktop::object_access_test {
namespace {

using platform::ClassRef;
using platform::Implementation;
using platform::makeImplementation;
using platform::Object;
using platform::ObjectRef;

class Thing final : public Object {
  public:
    explicit Thing(std::string cls, std::string id = {})
        : name(std::move(id)), class_(std::move(cls)) {}

    [[nodiscard]] std::string className() const override { return class_; }

    [[nodiscard]] std::string description() const override { return "<" + class_ + ": 0x1>"; }

    std::string name;
    ObjectRef held;

  private:
    std::string class_;
};

using ThingRef = std::shared_ptr<Thing>;

// Root <- Middle <- Leaf, and Other beside them.
class ObjectAccess : public testing::Test {
  public:
    ObjectAccess() {
        runtime.addClass("Root");
        runtime.addClass("Middle", "Root");
        runtime.addClass("Leaf", "Middle");
        runtime.addClass("Other");
    }

    // A variable or method that gives a thing of its own name.
    static ThingRef thing(const std::string& name) {
        return std::make_shared<Thing>("Other", name);
    }

    void addVariable(const std::string& cls, const std::string& name) {
        EXPECT_TRUE(
            runtime.addInstanceVariable(cls, name, std::function<ObjectRef(Thing&)>([name](Thing&) {
                                            return thing("variable " + name);
                                        })));
    }

    void addGetter(const std::string& cls, const std::string& selector) {
        EXPECT_TRUE(runtime.addInstanceMethod(cls, selector,
                                              std::function<ThingRef(Thing&)>([selector](Thing&) {
                                                  return thing("method " + selector);
                                              })));
    }

    // "nil" when there is none.
    static std::string nameOf(const ObjectRef& object) {
        const auto* const found = dynamic_cast<const Thing*>(object.get());
        return found == nullptr ? "nil" : found->name;
    }

    std::string valueOf(const std::string& key) { return nameOf(runtime.valueForKey(leaf, key)); }

    std::string variableOf(const std::string& name) {
        return nameOf(runtime.instanceVariable(leaf, name));
    }

    std::vector<std::string> warnings;
    Runtime runtime{[this](const std::string& line) { warnings.push_back(line); }};
    Thing leaf{"Leaf"};
};

using IsKindOfClass = ObjectAccess;
using InstanceVariable = ObjectAccess;
using ValueForKey = ObjectAccess;

TEST_F(IsKindOfClass, HoldsForItsClassAndItsSuperclasses) {
    const Thing middle("Middle");
    for (const char* const cls : {"Leaf", "Middle", "Root"}) {
        EXPECT_TRUE(runtime.isKindOfClass(leaf, runtime.getClass(cls))) << cls;
    }
    EXPECT_TRUE(runtime.isKindOfClass(middle, runtime.getClass("Root")));
    EXPECT_FALSE(runtime.isKindOfClass(middle, runtime.getClass("Leaf")));
    EXPECT_FALSE(runtime.isKindOfClass(leaf, runtime.getClass("Other")));
}

TEST_F(IsKindOfClass, DoesNotHoldForNilAndForWhatIsUnknown) {
    EXPECT_FALSE(runtime.isKindOfClass(leaf, nullptr));
    EXPECT_FALSE(runtime.isKindOfClass(leaf, runtime.getClass("Missing")));
    EXPECT_FALSE(runtime.isKindOfClass(leaf, runtime.getMetaclass(runtime.getClass("Leaf"))));
    EXPECT_FALSE(runtime.isKindOfClass(Thing("Unknown"), runtime.getClass("Root")));
    EXPECT_FALSE(runtime.isKindOfClass(Thing("Unknown"), nullptr));
    Runtime another({});
    another.addClass("Leaf");
    EXPECT_FALSE(runtime.isKindOfClass(leaf, another.getClass("Leaf")));
    EXPECT_TRUE(warnings.empty());
}

TEST_F(IsKindOfClass, AClassIsAnInstanceOfItsMetaclass) {
    const ClassRef root = runtime.getClass("Root");
    const ClassRef cls = runtime.getClass("Leaf");
    EXPECT_TRUE(runtime.isKindOfClass(*cls, runtime.getMetaclass(cls)));
    EXPECT_TRUE(runtime.isKindOfClass(*cls, runtime.getMetaclass(root)));
    EXPECT_TRUE(runtime.isKindOfClass(*cls, root));
    EXPECT_FALSE(runtime.isKindOfClass(*cls, cls));
    EXPECT_FALSE(runtime.isKindOfClass(*cls, runtime.getClass("Middle")));
}

TEST_F(IsKindOfClass, SendsNoMessage) {
    bool isInitialized = false;
    runtime.registerClass(
        {.name = "Library", .superclass = "Root", .load = {}, .initialize = [&](const ClassRef&) {
             isInitialized = true;
         }});
    EXPECT_TRUE(runtime.isKindOfClass(Thing("Library"), runtime.getClass("Root")));
    EXPECT_FALSE(isInitialized);
}

TEST_F(InstanceVariable, IsReadFromTheObject) {
    runtime.addInstanceVariable(
        "Leaf", "_held", std::function<ObjectRef(Thing&)>([](Thing& self) { return self.held; }));
    EXPECT_EQ(runtime.instanceVariable(leaf, "_held"), nullptr);
    leaf.held = thing("held");
    EXPECT_EQ(runtime.instanceVariable(leaf, "_held"), leaf.held);
    Thing another("Leaf");
    EXPECT_EQ(runtime.instanceVariable(another, "_held"), nullptr);
    EXPECT_TRUE(warnings.empty());
}

TEST_F(InstanceVariable, IsFoundInSuperclassesTheNearestFirst) {
    addVariable("Root", "_a");
    EXPECT_EQ(variableOf("_a"), "variable _a");
    runtime.addInstanceVariable(
        "Middle", "_a", std::function<ObjectRef(Thing&)>([](Thing&) { return thing("nearer"); }));
    EXPECT_EQ(variableOf("_a"), "nearer");
    Thing root("Root");
    EXPECT_EQ(nameOf(runtime.instanceVariable(root, "_a")), "variable _a");
    Thing other("Other");
    EXPECT_EQ(runtime.instanceVariable(other, "_a"), nullptr);
}

TEST_F(InstanceVariable, IsNilWhenThereIsNone) {
    addVariable("Leaf", "_a");
    addGetter("Leaf", "_b");
    for (const char* const name : {"a", "_A", "_a ", "", "_b"}) {
        EXPECT_EQ(variableOf(name), "nil") << name;
    }
    Thing unknown("Unknown");
    EXPECT_EQ(runtime.instanceVariable(unknown, "_a"), nullptr);
    // A class has none of those that its instances have.
    EXPECT_EQ(runtime.instanceVariable(*runtime.getClass("Leaf"), "_a"), nullptr);
    EXPECT_TRUE(warnings.empty());
}

TEST_F(InstanceVariable, NeedsItsClassAndTakesTheLastReader) {
    const auto reader = [](const std::string& name) {
        return std::function<ObjectRef(Thing&)>([name](Thing&) { return thing(name); });
    };
    EXPECT_FALSE(runtime.addInstanceVariable("Missing", "_a", reader("first")));
    EXPECT_TRUE(runtime.addInstanceVariable("Leaf", "_a", reader("first")));
    EXPECT_TRUE(runtime.addInstanceVariable("Leaf", "_a", reader("second")));
    EXPECT_EQ(variableOf("_a"), "second");
}

TEST_F(InstanceVariable, MayUseTheRuntimeWhileItIsRead) {
    runtime.addInstanceVariable("Leaf", "_a", std::function<ObjectRef(Thing&)>([this](Thing& self) {
                                    return runtime.valueForKey(self, "b");
                                }));
    addGetter("Root", "b");
    EXPECT_EQ(variableOf("_a"), "method b");
}

TEST_F(ValueForKey, AsksTheMethodsInTheirOrderThenTheVariables) {
    const std::vector<std::string> methods{"getNice", "nice", "isNice", "_nice"};
    const std::vector<std::string> variables{"_nice", "_isNice", "nice", "isNice"};
    // From the last of the search to the first, each takes over from the one behind it.
    for (auto name = variables.rbegin(); name != variables.rend(); ++name) {
        addVariable("Leaf", *name);
        EXPECT_EQ(valueOf("nice"), "variable " + *name);
    }
    for (auto selector = methods.rbegin(); selector != methods.rend(); ++selector) {
        addGetter("Root", *selector);
        EXPECT_EQ(valueOf("nice"), "method " + *selector);
    }
    EXPECT_TRUE(warnings.empty());
}

TEST_F(ValueForKey, AKeyWithALeadingLineIsTakenAsItStands) {
    addVariable("Leaf", "_backgroundView");
    EXPECT_EQ(valueOf("_backgroundView"), "variable _backgroundView");
    EXPECT_EQ(valueOf("backgroundView"), "variable _backgroundView");
    addGetter("Leaf", "backgroundView");
    EXPECT_EQ(valueOf("backgroundView"), "method backgroundView");
    EXPECT_EQ(valueOf("_backgroundView"), "variable _backgroundView");
}

TEST_F(ValueForKey, SkipsMethodsThatGiveNoObjectOrTakeArguments) {
    runtime.addInstanceMethod("Leaf", "getNice",
                              std::function<int(Thing&)>([](Thing&) { return 1; }));
    runtime.addInstanceMethod("Leaf", "nice", std::function<void(Thing&)>([](Thing&) {}));
    runtime.addInstanceMethod(
        "Leaf", "isNice",
        std::function<ObjectRef(Thing&, int)>([](Thing&, int) { return thing("never"); }));
    addGetter("Leaf", "_nice");
    EXPECT_EQ(valueOf("nice"), "method _nice");
}

TEST_F(ValueForKey, NilIsAValue) {
    runtime.addInstanceVariable(
        "Leaf", "_held", std::function<ObjectRef(Thing&)>([](Thing& self) { return self.held; }));
    addVariable("Leaf", "held");
    EXPECT_EQ(valueOf("held"), "nil");
    runtime.addInstanceMethod("Leaf", "held",
                              std::function<ThingRef(Thing&)>([](Thing&) { return ThingRef(); }));
    leaf.held = thing("held");
    EXPECT_EQ(valueOf("held"), "nil");
    EXPECT_TRUE(warnings.empty());
}

TEST_F(ValueForKey, ReachesAReplacedMethod) {
    addGetter("Leaf", "nice");
    Implementation original;
    runtime.hookMessageEx(runtime.getClass("Leaf"), "nice",
                          makeImplementation(std::function<ThingRef(Thing&)>(
                              [](Thing&) { return thing("replaced"); })),
                          &original);
    EXPECT_EQ(valueOf("nice"), "replaced");
    EXPECT_EQ(nameOf(original.getObject(leaf)), "method nice");
}

TEST_F(ValueForKey, AKeyThatLeadsNowhereIsToldOnceAndNil) {
    EXPECT_EQ(runtime.valueForKey(leaf, "_nothing"), nullptr);
    ASSERT_EQ(warnings.size(), 1U);
    EXPECT_EQ(warnings[0],
              "*** Terminating app due to uncaught exception 'NSUnknownKeyException', reason: "
              "'[<Leaf: 0x1> valueForUndefinedKey:]: this class is not key value "
              "coding-compliant for the key _nothing.'");
    Thing unknown("Unknown");
    EXPECT_EQ(runtime.valueForKey(unknown, ""), nullptr);
    EXPECT_EQ(warnings.size(), 2U);
}

TEST(ImplementationIsObjectGetter, TellsGettersOfObjectsFromTheRest) {
    const Implementation object =
        makeImplementation(std::function<ObjectRef(Thing&)>([](Thing& self) { return self.held; }));
    const Implementation derived = makeImplementation(
        std::function<ThingRef(Thing&)>([](Thing&) { return std::make_shared<Thing>("A", "a"); }));
    EXPECT_TRUE(object.isObjectGetter());
    EXPECT_TRUE(derived.isObjectGetter());
    EXPECT_TRUE(makeImplementation(std::function<ClassRef(Thing&)>([](Thing&) {
                    return ClassRef();
                })).isObjectGetter());
    const std::vector<Implementation> others{
        Implementation(), makeImplementation(std::function<void(Thing&)>([](Thing&) {})),
        makeImplementation(std::function<bool(Thing&)>([](Thing&) { return true; })),
        makeImplementation(std::function<std::string(Thing&)>([](Thing&) { return "a"; })),
        makeImplementation(
            std::function<ObjectRef(Thing&, bool)>([](Thing&, bool) { return ObjectRef(); }))};
    Thing receiver("Receiver");
    receiver.held = std::make_shared<Thing>("Held");
    for (const Implementation& other : others) {
        EXPECT_FALSE(other.isObjectGetter());
        EXPECT_EQ(other.getObject(receiver), nullptr);
    }
    EXPECT_EQ(object.getObject(receiver), receiver.held);
    EXPECT_NE(derived.getObject(receiver), nullptr);
    // What forwards to a getter is one too.
    const Implementation forwarding = object.forwarding([&] { return Implementation(object); });
    EXPECT_TRUE(forwarding.isObjectGetter());
    EXPECT_EQ(forwarding.getObject(receiver), receiver.held);
}

}  // namespace
}  // namespace velmoranth::desktop::object_access_test
