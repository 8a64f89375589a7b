// Foundation: strings that may be nil, property lists with the platform's conversions, paths,
// bundles, dates, the file manager and the system log.
#pragma once

#include "platform/objc_runtime.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace velmoranth::platform {

// --- Values
// -------------------------------------------------------------------------------------------

// A string in UTF-8, or nil. Nil is not "".
using NullableString = std::optional<std::string>;

// Bytes as they stand in a file.
using Data = std::vector<std::uint8_t>;

// A point in time: seconds since 2001-01-01 00:00:00 UTC.
struct Date {
    double secondsSinceReferenceDate = 0;

    friend bool operator==(const Date&, const Date&) = default;
};

// A property-list value. Booleans and numbers stay apart, as the platform's do.
class PropertyList {
  public:
    using Array = std::vector<PropertyList>;
    using Dictionary = std::map<std::string, PropertyList, std::less<>>;
    using Value =
        std::variant<bool, std::int64_t, double, std::string, Date, Data, Array, Dictionary>;

    // NOLINTBEGIN(google-explicit-constructor): a property list is written as its value.
    PropertyList(bool value) : value_(value) {}

    PropertyList(int value) : value_(std::int64_t{value}) {}

    PropertyList(std::int64_t value) : value_(value) {}

    PropertyList(double value) : value_(value) {}

    PropertyList(const char* value) : value_(std::string(value)) {}

    PropertyList(std::string value) : value_(std::move(value)) {}

    PropertyList(Date value) : value_(value) {}

    PropertyList(Data value) : value_(std::move(value)) {}

    PropertyList(Array value) : value_(std::move(value)) {}

    PropertyList(Dictionary value) : value_(std::move(value)) {}

    // NOLINTEND(google-explicit-constructor)

    PropertyList(const PropertyList&) = default;
    PropertyList(PropertyList&&) = default;
    PropertyList& operator=(const PropertyList&) = default;
    PropertyList& operator=(PropertyList&&) = default;

    // Takes no more of the stack for containers in containers, however many.
    ~PropertyList() {
        if (std::holds_alternative<Array>(value_) || std::holds_alternative<Dictionary>(value_)) {
            dismantle();
        }
    }

    [[nodiscard]] const Value& value() const { return value_; }

    // The value when it is of that kind, otherwise null. Owned by this object.
    template <class T>
    [[nodiscard]] const T* as() const {
        return std::get_if<T>(&value_);
    }

    // Not defaulted: the compiler works a default out before the class is finished, and what it
    // then tells the templates' library (moving the bytes is as good as moving the value, while a
    // dictionary knows where it lies) stays that library's answer.
    friend bool operator==(const PropertyList& left, const PropertyList& right) {
        return left.value_ == right.value_;
    }

  private:
    void dismantle();

    Value value_;
};

using Dictionary = PropertyList::Dictionary;

// objectForKey: the value under the key, null when there is none. Owned by the dictionary.
[[nodiscard]] const PropertyList* objectForKey(const Dictionary& dictionary, std::string_view key);

// -[NSString boolValue]: leading white space is skipped; then true for one of Y y T t; else an
// optional single sign, any zeroes, and true when a digit 1 to 9 follows. The rest of the text does
// not count. White space: U+0009 to U+000D, U+0020, U+0085, U+00A0 and the Unicode spaces.
[[nodiscard]] bool boolValue(std::string_view text);
// boolValue of a property-list value; null (no such key) is false. Numbers: anything but 0 is true
// (a NaN too). The platform's dates, data, arrays and dictionaries do not have the message; they
// count as false here.
[[nodiscard]] bool boolValue(const PropertyList* value);

// -[NSString floatValue]: leading white space is skipped, then the longest run of 0-9 + - . e E is
// read as a decimal number in the C locale, as far as it is one; the rest does not count. No
// number: 0. Too large: infinity of the number's sign. Hexadecimal, "inf" and "nan" are no numbers.
[[nodiscard]] float floatValue(std::string_view text);
// floatValue of a property-list value; null is 0. Numbers convert as in C; a boolean is 0 or 1;
// other kinds, which do not have the message, count as 0.
[[nodiscard]] float floatValue(const PropertyList* value);

// Where the description of a container or of data is cut off, bytes.
inline constexpr std::size_t kLongestDescription = std::size_t{64} * 1024;

// What "%@" prints for a property-list value: strings as they stand, booleans 1 or 0, containers in
// old-style text with keys in ascending order and 4 spaces a level. Containers and data are cut
// off soon after kLongestDescription, whatever they hold.
[[nodiscard]] std::string description(const PropertyList& value);

// -[NSString stringByAppendingPathComponent:]: joins the two with one slash, collapses every run of
// slashes in the whole result and removes trailing ones; "." and ".." stay.
[[nodiscard]] std::string stringByAppendingPathComponent(std::string_view path,
                                                         std::string_view component);

// An error of the platform.
struct Error {
    std::string localizedDescription;  // English, as the platform words it
    std::string domain = "NSCocoaErrorDomain";
    int code = 0;
    ObjectRef object = nullptr;  // the platform's own, where there is one

    // Whatever their objects.
    friend bool operator==(const Error& a, const Error& b) {
        return a.localizedDescription == b.localizedDescription && a.domain == b.domain &&
               a.code == b.code;
    }
};

// What "%@" prints for an error: what the platform's object says of itself, its userInfo included.
// Without an object there is no userInfo.
[[nodiscard]] std::string description(const Error& error);

// What an operation that may fail returns: nothing when it succeeded, else the error.
using Failure = std::optional<Error>;

// --- Handles
// ------------------------------------------------------------------------------------------

// NSBundle.
class Bundle : public Object {
  public:
    // Nil for a bundle without one.
    [[nodiscard]] virtual NullableString bundleIdentifier() const = 0;
};

using BundleRef = std::shared_ptr<Bundle>;

// A message to a bundle that may be nil: the identifier of nil is nil.
[[nodiscard]] NullableString bundleIdentifierOf(const BundleRef& bundle);

// --- Services
// -----------------------------------------------------------------------------------------

// Whether a path exists, symbolic links followed; `isDirectory` is false when it does not.
struct FileExistence {
    bool exists = false;
    bool isDirectory = false;
};

// NSFileManager's defaultManager, and NSData's reading and atomic writing. Paths are absolute paths
// of the device.
class FileManager {
  public:
    FileManager() = default;
    FileManager(const FileManager&) = delete;
    FileManager& operator=(const FileManager&) = delete;
    virtual ~FileManager() = default;

    // fileExistsAtPath: follows links; a dangling link and "" do not exist.
    [[nodiscard]] virtual bool fileExistsAtPath(const std::string& path) = 0;
    // fileExistsAtPath:isDirectory:
    [[nodiscard]] virtual FileExistence fileExistsAtPathIsDirectory(const std::string& path) = 0;
    // setAttributes:ofItemAtPath:error: with NSFilePosixPermissions alone; follows links.
    virtual Failure setPosixPermissionsOfItemAtPath(unsigned mode, const std::string& path) = 0;
    // copyItemAtPath:toPath:error: recursive; fails when the destination exists, and changes
    // nothing then.
    virtual Failure copyItemAtPathToPath(const std::string& source,
                                         const std::string& destination) = 0;
    // moveItemAtPath:toPath:error: fails when the destination exists, the same path included.
    virtual Failure moveItemAtPathToPath(const std::string& source,
                                         const std::string& destination) = 0;
    // removeItemAtPath:error: a folder with all it holds; a link itself, never what it points to.
    virtual Failure removeItemAtPath(const std::string& path) = 0;
    // createFileAtPath:contents:attributes: with nil attributes: writes atomically, replacing an
    // existing file. False when it could not.
    virtual bool createFileAtPathContents(const std::string& path, const Data& contents) = 0;
    // createDirectoryAtPath:withIntermediateDirectories:attributes:error: with YES and nil: an
    // existing folder is no failure.
    virtual Failure createDirectoryAtPathWithIntermediateDirectories(const std::string& path) = 0;
    // -[NSData writeToFile:atomically:] with atomically on: the file is whole or as it was. False
    // when it could not.
    virtual bool writeToFileAtomically(const Data& contents, const std::string& path) = 0;
    // +[NSData dataWithContentsOfFile:]: nil when the file is missing, a folder or unreadable.
    [[nodiscard]] virtual std::optional<Data> dataWithContentsOfFile(const std::string& path) = 0;
};

// NSBundle's making and loading.
class Bundles {
  public:
    Bundles() = default;
    Bundles(const Bundles&) = delete;
    Bundles& operator=(const Bundles&) = delete;
    virtual ~Bundles() = default;

    // +[NSBundle bundleWithPath:]: nil when the path leads to no folder.
    [[nodiscard]] virtual BundleRef bundleWithPath(const std::string& path) = 0;
    // load: makes the bundle's classes available. False when it could not, and for nil.
    virtual bool load(const BundleRef& bundle) = 0;
};

// A dictionary that was read, for whoever prints it too.
struct PrintableDictionary {
    Dictionary values;
    ObjectRef object = nullptr;  // the platform's own, where there is one
};

// What "%@" prints for it: what the platform's object says of itself, else as for its values.
[[nodiscard]] std::string description(const PrintableDictionary& dictionary);

class PropertyLists {
  public:
    PropertyLists() = default;
    PropertyLists(const PropertyLists&) = delete;
    PropertyLists& operator=(const PropertyLists&) = delete;
    virtual ~PropertyLists() = default;

    // +[NSDictionary dictionaryWithContentsOfFile:] (and NSMutableDictionary's
    // initWithContentsOfFile:, which reads alike): nil when the file is missing, unreadable, no
    // property list, or its root is no dictionary. Binary, XML and old-style text, told apart by
    // content.
    [[nodiscard]] virtual std::optional<Dictionary> dictionaryWithContentsOfFile(
        const std::string& path) = 0;
    // The same.
    [[nodiscard]] virtual std::optional<PrintableDictionary> printableDictionaryWithContentsOfFile(
        const std::string& path) = 0;
};

// NSDate, NSCalendar and NSDateFormatter, in the device's time zone.
class Dates {
  public:
    Dates() = default;
    Dates(const Dates&) = delete;
    Dates& operator=(const Dates&) = delete;
    virtual ~Dates() = default;

    // +[NSDate date].
    [[nodiscard]] virtual Date date() = 0;
    // The day of components:fromDate: with NSCalendarUnitDay, of a calendar made with
    // NSCalendarIdentifierGregorian, whatever calendar the user has chosen: 1 to 31.
    [[nodiscard]] virtual long dayFromDate(const Date& date) = 0;
    // stringFromDate: of a new NSDateFormatter after setDateFormat:, in the device's locale. The
    // format is in the letters of Unicode TR 35.
    [[nodiscard]] virtual std::string stringFromDate(const Date& date,
                                                     const std::string& dateFormat) = 0;
};

// NSLog.
class SystemLog {
  public:
    SystemLog() = default;
    SystemLog(const SystemLog&) = delete;
    SystemLog& operator=(const SystemLog&) = delete;
    virtual ~SystemLog() = default;

    // Writes one line, already formatted, without a line end.
    virtual void write(const std::string& line) = 0;
};

}  // namespace velmoranth::platform
