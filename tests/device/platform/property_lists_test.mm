// Property lists as the platform reads them: their kinds, how deep they nest, and what they print.
#include "device/platform/phone_test.h"
#include "device/platform/services.h"
#include "device/standins/standin.h"
#import <Foundation/NSThread.h>
#include <GNUstepBase/GSObjCRuntime.h>
#include <pthread.h>

#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>

namespace velmoranth::device::property_lists_test {
namespace {

using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::PropertyList;
using standins::logLines;

class PropertyLists : public PhoneTest {
  protected:
    std::optional<Dictionary> parsed(const std::string& text) {
        write("/User/file.plist", text);
        return propertyLists().dictionaryWithContentsOfFile("/User/file.plist");
    }

    std::optional<Dictionary> ofXml(const std::string& entries) {
        return parsed("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" +
                      entries + "</dict></plist>\n");
    }

    // What the platform's reader gives for the dictionary.
    std::optional<Dictionary> ofObject(NSDictionary* objects);
};

TEST_F(PropertyLists, KeepKindsApart) {
    EXPECT_EQ(ofXml("<key>yes</key><true/><key>no</key><false/><key>one</key><integer>1</integer>"
                    "<key>zero</key><integer>0</integer><key>half</key><real>0.5</real>"
                    "<key>whole</key><real>2</real><key>text</key><string>1</string>"
                    "<key>data</key><data>AQID</data>"
                    "<key>date</key><date>2001-01-02T00:00:00Z</date>"),
              (Dictionary{{"yes", true},
                          {"no", false},
                          {"one", 1},
                          {"zero", 0},
                          {"half", 0.5},
                          {"whole", 2.0},
                          {"text", "1"},
                          {"data", Data{1, 2, 3}},
                          {"date", Date{86400}}}));
}

TEST_F(PropertyLists, HoldContainers) {
    EXPECT_EQ(ofXml("<key>Themes</key><array><string>a</string><dict><key>b</key><true/></dict>"
                    "<array/></array><key>empty</key><dict/>"),
              (Dictionary{{"Themes", PropertyList::Array{"a", Dictionary{{"b", true}},
                                                         PropertyList::Array{}}},
                          {"empty", Dictionary{}}}));
}

TEST_F(PropertyLists, AreReadInTheOldStyle) {
    EXPECT_EQ(parsed("{ a = 1; \"b c\" = ( x, y ); d = <0102>; }"),
              (Dictionary{{"a", "1"}, {"b c", PropertyList::Array{"x", "y"}}, {"d", Data{1, 2}}}));
}

TEST_F(PropertyLists, AreNothingWithoutADictionary) {
    EXPECT_EQ(propertyLists().dictionaryWithContentsOfFile("/User/none.plist"), std::nullopt);
    EXPECT_EQ(propertyLists().dictionaryWithContentsOfFile("/User"), std::nullopt);
    EXPECT_EQ(propertyLists().dictionaryWithContentsOfFile(""), std::nullopt);
    EXPECT_EQ(parsed("<plist><array/></plist>"), std::nullopt);
    EXPECT_EQ(parsed("( a, b )"), std::nullopt);
    EXPECT_EQ(parsed(""), std::nullopt);
    EXPECT_EQ(parsed("<plist><dict><key>a</key>"), std::nullopt);
    EXPECT_EQ(parsed("\x89PNG\r\n\x1a\n"), std::nullopt);
    EXPECT_EQ(logLines(), std::vector<std::string>());
}

// Takes the place of the reader, to give what no file of this platform's reader gives.
NSDictionary* given = nil;

}  // namespace
}  // namespace velmoranth::device::property_lists_test

@interface GivenDictionary : NSObject {
}
@end

@implementation GivenDictionary

+ (id)dictionaryWithContentsOfFile:(NSString*)path {
    static_cast<void>(path);
    return velmoranth::device::property_lists_test::given;
}

@end

namespace velmoranth::device::property_lists_test {
namespace {

std::optional<Dictionary> PropertyLists::ofObject(NSDictionary* objects) {
    given = objects;
    const SEL selector = @selector(dictionaryWithContentsOfFile:);
    const Method method = class_getClassMethod([NSDictionary class], selector);
    const IMP replacement =
        method_getImplementation(class_getClassMethod([GivenDictionary class], selector));
    const IMP platforms = method_setImplementation(method, replacement);
    const auto result = propertyLists().dictionaryWithContentsOfFile("/any");
    method_setImplementation(method, platforms);
    given = nil;
    return result;
}

TEST_F(PropertyLists, IntegersThatDoNotFitComeAsRealNumbers) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
    const auto number = [&](NSNumber* value) {
        return ofObject([NSDictionary dictionaryWithObject:value forKey:@"n"])->at("n");
    };
    EXPECT_EQ(number([NSNumber numberWithLongLong:kMost]), PropertyList(kMost));
    EXPECT_EQ(number([NSNumber numberWithLongLong:kMost - 1]), PropertyList(kMost - 1));
    EXPECT_EQ(number([NSNumber numberWithLongLong:kLeast]), PropertyList(kLeast));
    EXPECT_EQ(number([NSNumber numberWithUnsignedLongLong:1ULL << 63U]),
              PropertyList(9223372036854775808.0));
    EXPECT_EQ(number([NSNumber numberWithUnsignedLongLong:~0ULL]),
              PropertyList(18446744073709551616.0));
    EXPECT_EQ(number([NSNumber numberWithUnsignedLongLong:7]), PropertyList(7));
    EXPECT_EQ(number([NSNumber numberWithFloat:0.25F]), PropertyList(0.25));
    EXPECT_EQ(number([NSNumber numberWithChar:1]), PropertyList(1));
    EXPECT_TRUE(std::isnan(*number([NSNumber numberWithDouble:NAN]).as<double>()));
}

TEST_F(PropertyLists, LeaveOutWhatIsNoneOfTheirKinds) {
    NSArray* const items = [NSArray arrayWithObjects:[NSNull null], @"a", [NSObject new], nil];
    EXPECT_EQ(ofObject([NSDictionary
                  dictionaryWithObjectsAndKeys:@"dropped", [NSNumber numberWithInt:1],
                                               [NSNull null], @"null", items, @"items", nil]),
              (Dictionary{{"items", PropertyList::Array{"a"}}}));
    EXPECT_EQ(ofObject(static_cast<NSDictionary*>(static_cast<id>(@"text"))), std::nullopt);
}

id nested(int depth) {
    id value = @"core";
    for (int i = 0; i < depth; ++i) {
        value = i % 2 == 0 ? static_cast<id>([NSArray arrayWithObjects:value, @"beside", nil])
                           : [NSDictionary dictionaryWithObject:value forKey:@"below"];
    }
    return value;
}

int depthOf(const PropertyList& list) {
    int depth = 0;
    const PropertyList* value = &list;
    while (value->as<std::string>() == nullptr) {
        const auto* const array = value->as<PropertyList::Array>();
        value = array == nullptr ? platform::objectForKey(*value->as<Dictionary>(), "below")
                                 : &array->front();
        ++depth;
    }
    return depth;
}

TEST_F(PropertyLists, AreReadHoweverDeepTheyNest) {
    const auto result = ofObject([NSDictionary dictionaryWithObject:nested(5000) forKey:@"a"]);
    ASSERT_TRUE(result);
    EXPECT_EQ(depthOf(result->at("a")), 5000);
    // On a stack that bears no recursion of the kind.
    NSDictionary* const deep = [NSDictionary dictionaryWithObject:nested(4000) forKey:@"a"];
    std::optional<Dictionary> onSmallStack;
    std::function<void()> convert = [&] {
        onSmallStack = ofObject(deep);
        onSmallStack.reset();
        onSmallStack = ofObject(deep);
    };
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, std::size_t{128} * 1024), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(
                  &thread, &attributes,
                  [](void* work) -> void* {
                      GSRegisterCurrentThread();
                      @autoreleasepool {
                          (*static_cast<std::function<void()>*>(work))();
                      }
                      GSUnregisterCurrentThread();
                      return nullptr;
                  },
                  &convert),
              0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    ASSERT_TRUE(onSmallStack);
    EXPECT_EQ(depthOf(onSmallStack->at("a")), 4000);
}

TEST_F(PropertyLists, ThatHoldThemselvesOrStandForTooMuchAreNothing) {
    NSMutableArray* const circle = [NSMutableArray array];
    const id itself = circle;
    [circle addObject:itself];
    EXPECT_EQ(ofObject([NSDictionary dictionaryWithObject:circle forKey:@"a"]), std::nullopt);
    [circle removeAllObjects];
    // Each twice in the next: a million times a million strings.
    id value = @"core";
    for (int i = 0; i < 40; ++i) {
        value = [NSArray arrayWithObjects:value, value, nil];
    }
    EXPECT_EQ(ofObject([NSDictionary dictionaryWithObject:value forKey:@"a"]), std::nullopt);
}

TEST_F(PropertyLists, PrintAsThePlatformsOwn) {
    write("/User/file.plist", "{ b = (1, 2); a = <0102>; }");
    const auto read = propertyLists().printableDictionaryWithContentsOfFile("/User/file.plist");
    ASSERT_TRUE(read);
    EXPECT_EQ(read->values, (Dictionary{{"a", Data{1, 2}}, {"b", PropertyList::Array{"1", "2"}}}));
    ASSERT_NE(read->object, nullptr);
    NSDictionary* const own = [NSDictionary
        dictionaryWithContentsOfFile:[NSString
                                         stringWithUTF8String:at("/User/file.plist").c_str()]];
    EXPECT_EQ(platform::description(*read), [[own description] UTF8String]);
    EXPECT_FALSE(propertyLists().printableDictionaryWithContentsOfFile("/User/none.plist"));
    EXPECT_FALSE(propertyLists().printableDictionaryWithContentsOfFile(
        std::string("/User/file.plist\0x", 18)));
}

}  // namespace
}  // namespace velmoranth::device::property_lists_test
