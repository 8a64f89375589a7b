// Property lists, bundles, dates and the log.
#include "device/platform/foundation_handles.h"
#include "device/platform/services.h"
#include "device/platform/text.h"
#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::device {
namespace {

using platform::PropertyList;

// The value of NSCalendarIdentifierGregorian: it takes no knowing which of the phone's libraries
// has the name.
NSString* const kGregorianCalendar = @"gregorian";

// As deep as the platform's own reader of old-style text goes.
constexpr int kDeepest = 512;

// What became of an object of a property list.
enum class Conversion { done, skipped, tooDeep };

Conversion convert(id object, int depth, std::optional<PropertyList>& value);

PropertyList numberOf(NSNumber* number) {
    // The platform's two booleans have a class of their own.
    static const Class kBoolean = object_getClass([NSNumber numberWithBool:YES]);
    if (object_getClass(number) == kBoolean) {
        return PropertyList(static_cast<bool>([number boolValue]));
    }
    const double real = [number doubleValue];
    const char kind = [number objCType][0];
    if (kind == 'd' || kind == 'f') {
        return PropertyList(real);
    }
    // An integer above or below what 64 bits hold comes as its nearest real number. The largest
    // that they hold round up to the first that they do not, which then is a negative one.
    constexpr double kLimit = 9223372036854775808.0;
    const std::int64_t integer = [number longLongValue];
    const bool fits = real >= -kLimit && (real < kLimit || (real == kLimit && integer > 0));
    return fits ? PropertyList(integer) : PropertyList(real);
}

Conversion arrayOf(NSArray* objects, int depth, std::optional<PropertyList>& value) {
    PropertyList::Array array;
    array.reserve([objects count]);
    for (id object in objects) {
        std::optional<PropertyList> item;
        if (convert(object, depth, item) == Conversion::tooDeep) {
            return Conversion::tooDeep;
        }
        if (item) {
            array.push_back(std::move(*item));
        }
    }
    value = std::move(array);
    return Conversion::done;
}

Conversion dictionaryOf(NSDictionary* objects, int depth, std::optional<PropertyList>& value) {
    PropertyList::Dictionary dictionary;
    for (id key in objects) {
        platform::NullableString name = textOf(key);
        if (!name) {
            continue;
        }
        std::optional<PropertyList> item;
        if (convert([objects objectForKey:key], depth, item) == Conversion::tooDeep) {
            return Conversion::tooDeep;
        }
        if (item) {
            dictionary.insert_or_assign(std::move(*name), std::move(*item));
        }
    }
    value = std::move(dictionary);
    return Conversion::done;
}

// What is none of a property list's kinds is left out.
Conversion convert(id object, int depth, std::optional<PropertyList>& value) {
    if (depth > kDeepest) {
        return Conversion::tooDeep;
    }
    if (platform::NullableString text = textOf(object)) {
        value = PropertyList(std::move(*text));
    } else if ([object isKindOfClass:[NSNumber class]]) {
        value = numberOf(object);
    } else if ([object isKindOfClass:[NSDictionary class]]) {
        return dictionaryOf(object, depth + 1, value);
    } else if ([object isKindOfClass:[NSArray class]]) {
        return arrayOf(object, depth + 1, value);
    } else if ([object isKindOfClass:[NSDate class]]) {
        value = PropertyList(platform::Date{[object timeIntervalSinceReferenceDate]});
    } else if ([object isKindOfClass:[NSData class]]) {
        value = PropertyList(*dataOf(object));
    } else {
        return Conversion::skipped;
    }
    return Conversion::done;
}

class FoundationPropertyLists final : public platform::PropertyLists {
  public:
    std::optional<platform::Dictionary> dictionaryWithContentsOfFile(
        const std::string& path) override {
        if (path.find('\0') != std::string::npos) {
            return std::nullopt;
        }
        @autoreleasepool {
            NSDictionary* const objects =
                [NSDictionary dictionaryWithContentsOfFile:stringOf(path)];
            std::optional<PropertyList> value;
            if (![objects isKindOfClass:[NSDictionary class]] ||
                convert(objects, 0, value) != Conversion::done) {
                return std::nullopt;
            }
            return *value->as<platform::Dictionary>();
        }
    }
};

class FoundationBundles final : public platform::Bundles {
  public:
    platform::BundleRef bundleWithPath(const std::string& path) override {
        // A path ends at a U+0000 for the system: with more behind it it leads nowhere.
        return path.find('\0') != std::string::npos
                   ? nullptr
                   : wrap<platform::Bundle>([NSBundle bundleWithPath:stringOf(path)]);
    }

    bool load(const platform::BundleRef& bundle) override {
        return static_cast<bool>([static_cast<NSBundle*>(nativeOf(bundle)) load]);
    }
};

class FoundationDates final : public platform::Dates {
  public:
    platform::Date date() override { return {[[NSDate date] timeIntervalSinceReferenceDate]}; }

    long dayFromDate(const platform::Date& date) override {
        NSCalendar* const calendar =
            [[classNamed("NSCalendar") alloc] initWithCalendarIdentifier:kGregorianCalendar];
        const NSInteger day = [[calendar components:NSCalendarUnitDay fromDate:native(date)] day];
        [calendar release];
        return day;
    }

    std::string stringFromDate(const platform::Date& date, const std::string& dateFormat) override {
        NSDateFormatter* const formatter = [[NSDateFormatter alloc] init];
        [formatter setDateFormat:stringOf(dateFormat)];
        platform::NullableString text = textOf([formatter stringFromDate:native(date)]);
        [formatter release];
        return std::move(text).value_or("");
    }

  private:
    static NSDate* native(const platform::Date& date) {
        return [NSDate dateWithTimeIntervalSinceReferenceDate:date.secondsSinceReferenceDate];
    }
};

class FoundationLog final : public platform::SystemLog {
  public:
    void write(const std::string& line) override {
        // The line is no format: what it holds of per cent signs came with it.
        NSLog(@"%@", stringOf(line));
    }
};

}  // namespace

platform::NullableString HandleFor<platform::Bundle>::bundleIdentifier() const {
    return textOf([object() bundleIdentifier]);
}

platform::PropertyLists& propertyLists() {
    return theOne<FoundationPropertyLists>();
}

platform::Bundles& bundles() {
    return theOne<FoundationBundles>();
}

platform::Dates& dates() {
    return theOne<FoundationDates>();
}

platform::SystemLog& systemLog() {
    return theOne<FoundationLog>();
}

}  // namespace velmoranth::device
