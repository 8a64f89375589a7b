#include "device/platform/text.h"

#include "device/platform/phone_test.h"

#include <limits>
#include <vector>

// Counts what is asked of it.
@interface CountingString : NSString {
  @public
    int asked;
}
@end

@implementation CountingString

- (BOOL)isKindOfClass:(Class)cls {
    ++asked;
    return [super isKindOfClass:cls];
}

- (NSUInteger)length {
    ++asked;
    return 5;
}

- (unichar)characterAtIndex:(NSUInteger)index {
    return static_cast<unichar>('a' + index);
}

- (void)getCharacters:(unichar*)buffer range:(NSRange)range {
    ++asked;
    for (NSUInteger i = 0; i < range.length; ++i) {
        buffer[i] = static_cast<unichar>('a' + range.location + i);
    }
}

@end

// No string, but one that answers for a string, or not.
@interface Pretender : NSObject {
  @public
    BOOL pretends;
}
@end

@implementation Pretender

- (BOOL)isKindOfClass:(Class)cls {
    return pretends && cls == [NSString class];
}

- (NSUInteger)length {
    return 1;
}

- (void)getCharacters:(unichar*)buffer range:(NSRange)range {
    buffer[range.location] = 'x';
}

@end

// Any characters at all: GNUstep makes no string of half a surrogate pair.
@interface AnyString : NSString {
  @public
    std::vector<unichar>* units;
}
@end

@implementation AnyString

- (NSUInteger)length {
    return units->size();
}

- (unichar)characterAtIndex:(NSUInteger)index {
    return units->at(index);
}

@end

@interface FarError : NSError {
}
@end

@implementation FarError

- (NSInteger)code {
    return NSIntegerMin;
}

@end

@interface Wordless : NSObject {
}
@end

@implementation Wordless

- (NSString*)description {
    return nil;
}

@end

namespace velmoranth::device::text_test {
namespace {

using Text = PhoneTest;

NSString* stringOfUnits(const std::vector<unichar>& units) {
    return [NSString stringWithCharacters:units.data() length:units.size()];
}

constexpr const char* kReplacement = "\xEF\xBF\xBD";

TEST_F(Text, IsNothingForNilAndForWhatIsNoString) {
    EXPECT_EQ(textOf(nil), std::nullopt);
    EXPECT_EQ(textOf([NSNumber numberWithInt:3]), std::nullopt);
    EXPECT_EQ(textOf([NSNull null]), std::nullopt);
    EXPECT_EQ(textOf(static_cast<id>([NSString class])), std::nullopt);
    EXPECT_EQ(textOf(@""), "");
}

TEST_F(Text, AsksEachObjectThatOnlyAnswersForAString) {
    Pretender* const pretender = [[[Pretender alloc] init] autorelease];
    EXPECT_EQ(textOf(pretender), std::nullopt);
    pretender->pretends = YES;
    EXPECT_EQ(textOf(pretender), "x");
    EXPECT_EQ(textOf(pretender), "x");
    pretender->pretends = NO;
    EXPECT_EQ(textOf(pretender), std::nullopt);
    EXPECT_EQ(textOf(@"a"), "a");
    EXPECT_EQ(textOf(pretender), std::nullopt);
}

TEST_F(Text, KeepsEveryCharacter) {
    EXPECT_EQ(textOf(@"com.apple.mobilesafari"), "com.apple.mobilesafari");
    EXPECT_EQ(textOf(stringOfUnits({'a', 0, 'b'})), std::string("a\0b", 3));
    EXPECT_EQ(textOf(stringOfUnits({0x7F, 0x80, 0x7FF, 0x800, 0xFFFF})),
              "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF");
    EXPECT_EQ(textOf(stringOfUnits({0xD83C, 0xDF4E, 0xDBFF, 0xDFFF})),
              "\xF0\x9F\x8D\x8E\xF4\x8F\xBF\xBF");
}

TEST_F(Text, HalvesOfPairsBecomeReplacements) {
    const auto textOfUnits = [](std::vector<unichar> units) {
        AnyString* const string = [[[AnyString alloc] init] autorelease];
        string->units = &units;
        return textOf(string);
    };
    const std::string lone = kReplacement;
    EXPECT_EQ(textOfUnits({'a', 0xD83C}), "a" + lone);
    EXPECT_EQ(textOfUnits({0xD83C, 'a'}), lone + "a");
    EXPECT_EQ(textOfUnits({0xDF4E, 'a'}), lone + "a");
    EXPECT_EQ(textOfUnits({0xDF4E, 0xD83C}), lone + lone);
    EXPECT_EQ(textOfUnits({0xDF4E, 0xDF4E}), lone + lone);
    EXPECT_EQ(textOfUnits({0xD83C, 0xD83C}), lone + lone);
    EXPECT_EQ(textOfUnits({0xD83C, 0xD83C, 0xDF4E}), lone + "\xF0\x9F\x8D\x8E");
}

TEST_F(Text, LongStringsAreAsShortOnes) {
    for (const std::size_t length : {255U, 256U, 257U, 100000U}) {
        std::vector<unichar> units(length, 'x');
        EXPECT_EQ(textOf(stringOfUnits(units)), std::string(length, 'x'));
        units[length - 2] = 0xD83C;
        units[length - 1] = 0xDF4E;
        EXPECT_EQ(textOf(stringOfUnits(units)), std::string(length - 2, 'x') + "\xF0\x9F\x8D\x8E");
    }
}

TEST_F(Text, TakesThreeMessages) {
    CountingString* const string = [[[CountingString alloc] init] autorelease];
    EXPECT_EQ(textOf(string), "abcde");
    EXPECT_EQ(string->asked, 3);
}

TEST_F(Text, StringsHaveTheText) {
    EXPECT_TRUE([stringOf(std::string_view("icon.png")) isEqualToString:@"icon.png"]);
    EXPECT_TRUE([stringOf(std::string_view()) isEqualToString:@""]);
    EXPECT_TRUE([stringOf("\xE5\xAD\x97") isEqualToString:stringOfUnits({0x5B57})]);
    EXPECT_TRUE([stringOf(std::string("a\0b", 3)) isEqualToString:stringOfUnits({'a', 0, 'b'})]);
    EXPECT_TRUE([stringOf("\xF0\x9F\x8D\x8E") isEqualToString:stringOfUnits({0xD83C, 0xDF4E})]);
    // What begins like a byte-order mark is a character as any other.
    EXPECT_TRUE([stringOf("\xEF\xBB\xBFz") isEqualToString:stringOfUnits({0xFEFF, 'z'})]);
}

TEST_F(Text, WhatIsNoUtf8BecomesReplacements) {
    struct Case {
        const char* text;
        std::vector<unichar> units;
    };

    const Case cases[] = {
        {"\xFF", {0xFFFD}},
        {"a\x80z", {'a', 0xFFFD, 'z'}},
        {"\xE5\xAD", {0xFFFD, 0xFFFD}},
        {"\xC0\xAF", {0xFFFD, 0xFFFD}},
        {"\xED\xA0\x80", {0xFFFD, 0xFFFD, 0xFFFD}},
        {"\xF4\x90\x80\x80", {0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD}},
    };
    for (const Case& broken : cases) {
        EXPECT_TRUE(
            [stringOf(std::string_view(broken.text)) isEqualToString:stringOfUnits(broken.units)])
            << broken.text;
    }
}

TEST_F(Text, NothingIsNil) {
    EXPECT_EQ(stringOf(platform::NullableString()), nil);
    EXPECT_TRUE([stringOf(platform::NullableString("x")) isEqualToString:@"x"]);
}

TEST_F(Text, StringsEndWithTheirPool) {
    NSString* string = nil;
    @autoreleasepool {
        string = [stringOf("a string too long to be kept within its own pointer") retain];
        EXPECT_EQ([string retainCount], 2U);
    }
    EXPECT_EQ([string retainCount], 1U);
    [string release];
}

TEST_F(Text, ObjectsHaveAClassAndADescription) {
    Wordless* const wordless = [[[Wordless alloc] init] autorelease];
    EXPECT_EQ(classNameOf(wordless), "Wordless");
    EXPECT_EQ(descriptionOf(wordless), "(null)");
    EXPECT_EQ(descriptionOf(nil), "(null)");
    EXPECT_EQ(descriptionOf(@"itself"), "itself");
}

TEST_F(Text, ErrorsAreLookedAtOnlyAfterFailures) {
    NSDictionary* const details = [NSDictionary dictionaryWithObject:@"It did not work."
                                                              forKey:NSLocalizedDescriptionKey];
    NSError* const error = [NSError errorWithDomain:@"Some" code:516 userInfo:details];
    EXPECT_EQ(failureOf(true, error), std::nullopt);
    EXPECT_EQ(failureOf(false, error), (platform::Error{"It did not work.", "Some", 516}));
    EXPECT_EQ(failureOf(false, nil), platform::Error());
}

TEST_F(Text, ErrorsPrintAsThemselves) {
    NSDictionary* const details =
        [NSDictionary dictionaryWithObjectsAndKeys:@"It did not work.", NSLocalizedDescriptionKey,
                                                   @"/Library/a", @"NSFilePath", nil];
    platform::Error error;
    @autoreleasepool {
        error = errorOf([NSError errorWithDomain:@"Some" code:516 userInfo:details]);
    }
    EXPECT_EQ(platform::description(error),
              "Error Domain=Some Code=516 \"It did not work.\" UserInfo={NSFilePath=/Library/a, "
              "NSLocalizedDescription=It did not work.}");
}

TEST_F(Text, ErrorsOfAnyKindAreTaken) {
    EXPECT_EQ(errorOf(nil), platform::Error());
    EXPECT_EQ(errorOf(static_cast<NSError*>(static_cast<id>(@"no error"))), platform::Error());
    // They print as what they are.
    EXPECT_EQ(platform::description(errorOf(nil)), "(null)");
    EXPECT_EQ(platform::description(errorOf(static_cast<NSError*>(static_cast<id>(@"no error")))),
              "no error");
    NSError* const far = [FarError errorWithDomain:@"Some" code:1 userInfo:nil];
    EXPECT_EQ(errorOf(far).code, std::numeric_limits<int>::min());
}

}  // namespace
}  // namespace velmoranth::device::text_test
