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

// In a binary file objects may refer to one another in any way: a small one may stand for more than
// memory holds.
constexpr std::size_t kMostValues = 1'000'000;
// The platform reads by recursion, so no file nests so deep: only what holds itself does.
constexpr std::size_t kDeepest = 100'000;

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

// Of none of the containers; nothing for what is none of a property list's kinds.
std::optional<PropertyList> leafOf(id object) {
    if (platform::NullableString text = textOf(object)) {
        return PropertyList(std::move(*text));
    }
    if ([object isKindOfClass:[NSNumber class]]) {
        return numberOf(object);
    }
    if ([object isKindOfClass:[NSDate class]]) {
        return PropertyList(platform::Date{[object timeIntervalSinceReferenceDate]});
    }
    if ([object isKindOfClass:[NSData class]]) {
        return PropertyList(*dataOf(object));
    }
    return std::nullopt;
}

// A container that is being converted, member by member.
class Container {
  public:
    // `object` is an array or a dictionary, which outlives this.
    Container(id object, bool isDictionary) : object_(object), isDictionary_(isDictionary) {
        for (id member in object) {
            members_.push_back(member);
        }
    }

    [[nodiscard]] bool hasNext() const { return next_ < members_.size(); }

    // Nil for what stands under a key that is no string.
    [[nodiscard]] id next() {
        const id member = members_[next_++];
        if (!isDictionary_) {
            return member;
        }
        platform::NullableString name = textOf(member);
        if (!name) {
            return nil;
        }
        key_ = std::move(*name);
        return [object_ objectForKey:member];
    }

    // What became of the member that was the next.
    void add(PropertyList value) {
        if (isDictionary_) {
            entries_.insert_or_assign(std::move(key_), std::move(value));
        } else {
            items_.push_back(std::move(value));
        }
    }

    [[nodiscard]] PropertyList taken() {
        return isDictionary_ ? PropertyList(takenEntries()) : PropertyList(std::move(items_));
    }

    [[nodiscard]] platform::Dictionary takenEntries() { return std::move(entries_); }

  private:
    id object_;
    bool isDictionary_;
    std::vector<id> members_;  // of a dictionary the keys
    std::size_t next_ = 0;
    std::string key_;
    platform::Dictionary entries_;
    PropertyList::Array items_;
};

// Nothing for what is no dictionary. What is none of a property list's kinds is left out. Takes no
// more of the stack for containers in containers: whatever the platform could read is read.
std::optional<platform::Dictionary> dictionaryOf(id object) {
    if (![object isKindOfClass:[NSDictionary class]]) {
        return std::nullopt;
    }
    std::vector<Container> open;
    open.emplace_back(object, true);
    std::size_t values = 0;
    while (values < kMostValues && open.size() < kDeepest) {
        if (!open.back().hasNext()) {
            if (open.size() == 1) {
                return open.back().takenEntries();
            }
            PropertyList finished = open.back().taken();
            open.pop_back();
            open.back().add(std::move(finished));
            continue;
        }
        ++values;
        const id member = open.back().next();
        const bool isDictionary = [member isKindOfClass:[NSDictionary class]];
        if (isDictionary || [member isKindOfClass:[NSArray class]]) {
            open.emplace_back(member, isDictionary);
        } else if (std::optional<PropertyList> leaf = leafOf(member)) {
            open.back().add(std::move(*leaf));
        }
    }
    return std::nullopt;
}

class FoundationPropertyLists final : public platform::PropertyLists {
  public:
    std::optional<platform::Dictionary> dictionaryWithContentsOfFile(
        const std::string& path) override {
        @autoreleasepool {
            return dictionaryOf(read(path));
        }
    }

    std::optional<platform::PrintableDictionary> printableDictionaryWithContentsOfFile(
        const std::string& path) override {
        @autoreleasepool {
            const id object = read(path);
            std::optional<platform::Dictionary> values = dictionaryOf(object);
            if (!values) {
                return std::nullopt;
            }
            return platform::PrintableDictionary{
                .values = std::move(*values),
                .object = std::make_shared<Handle<platform::Object>>(object, Hold::retain)};
        }
    }

  private:
    static id read(const std::string& path) {
        // A path ends at a U+0000 for the system: with more behind it it leads nowhere.
        return path.find('\0') != std::string::npos
                   ? nil
                   : [NSDictionary dictionaryWithContentsOfFile:stringOf(path)];
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
        @autoreleasepool {
            // The line is no format: what it holds of per cent signs came with it.
            NSLog(@"%@", stringOf(line));
        }
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
