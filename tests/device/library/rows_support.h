// What the tests of the replaced methods share: a process with the library in it, whose preferences
// change as the user changes them, the methods as the phone calls them, and what a call leaves
// behind: messages, objects, exceptions.
#pragma once

#include "device/library/device_process.h"
#include "device/standins/messages.h"
#include "device/standins/springboard.h"

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::standins {

using Lines = std::vector<std::string>;

// A call of the phone's. Whatever it makes, it lets go again.
using Call = std::function<void()>;

// A process, of iOS 13 unless said otherwise, with the library in it, the theming off.
class ReplacedMethods : public DeviceProcess {
  protected:
    explicit ReplacedMethods(const SystemVersion& system = kiOS13);

    // Writes the preferences and tells the library, then forgets journal and log.
    static void settings(std::initializer_list<const char*> themes,
                         std::initializer_list<const char*> switches);
    static void settings(NSDictionary* preferences);

    // An image of the theme's: "A/Velmoranth/Folder.png".
    static void themePng(const std::string& path, unsigned side = 6);

    // The journal since the last time.
    [[nodiscard]] static Lines taken();
    // The same without files that are asked for images.
    [[nodiscard]] static Lines steps();
};

[[nodiscard]] Lines joined(std::initializer_list<Lines> parts);
// How the journal has a message to that object: "-[UIView setTag:] view 546".
[[nodiscard]] std::string sentTo(const std::string& receiver, const std::string& method,
                                 const Lines& arguments = {});
// How it has the platform's part of a replaced method of a class, or of an object in the making:
// "+[SBUISound soundWithFeedbackEventType:] SBUISound 7".
[[nodiscard]] std::string sentToClass(const std::string& method, const Lines& arguments = {});
// "+[UIImage imageWithContentsOfFile:] /Library/Themes/<path>"
[[nodiscard]] std::string readsImage(const std::string& path);
// How the engine asks whether the device is a pad.
[[nodiscard]] Lines asksForIdiom();
inline constexpr long kPhone = 0;
inline constexpr long kPad = 1;
// As shown in log lines.
[[nodiscard]] std::string describe(id object);

// For comparisons, which print it.
[[nodiscard]] inline const void* address(id object) {
    return static_cast<const void*>(object);
}

// A new object that the journal calls by that name, the test's pool's own.
template <class Object>
Object* named(Object* object, const std::string& name) {
    nameObject(object, name);
    return [object autorelease];
}

[[nodiscard]] UIImage* namedImage(const std::string& name, std::size_t width, std::size_t height);

// The classes of which more or fewer objects live after the call, its pool drained, "UIImage +1".
[[nodiscard]] Lines leftBy(const Call& call);

// What the call throws; nil for nothing. Lives as long as the test's pool.
[[nodiscard]] id thrownBy(const Call& call);

// The call is made several times, each with the same messages and nothing left behind. `method` is
// its name for raiseFrom.
void expectNothingLeft(const Call& call);

// Whichever of the call's passes through the platform's method raises, that very exception comes
// out, no further message is sent, nothing is left behind, and the next call is as any other.
void expectExceptionsToPass(const std::string& method, const Call& call);

// A replaced method by its name: "-[SBIconView layoutSubviews]".
class MethodName {
  public:
    explicit MethodName(std::string_view name);

    [[nodiscard]] IMP implementation() const;
    // That of the class's parent; null when it has none of that name.
    [[nodiscard]] IMP parentsImplementation() const;
    // The one on the other side, the class's for an instance method; null as a rule.
    [[nodiscard]] Method otherSides() const;

  private:
    Class
        target_;  // the class, or the metaclass of a class method; known though it is hidden later
    Class otherSide_;
    SEL selector_;
};

// What the runtime finds no longer, as in a system that has no such method: "-[SBIconView icon]".
// Before the library is loaded.
void hideMethod(const std::string& name);
// All of them again.
void showMethods();

// A class of that name, made now, that derives from `parent` and has `method` with the
// implementation that the class `from` has for it: that of the library on a class that lacks what
// `from` has besides.
[[nodiscard]] Class classWithMethodOf(const char* name, Class parent, const char* method,
                                      Class from);
// Such a class has the key from now on, with nothing under it.
void addEmptyKey(Class cls, const char* key);

}  // namespace velmoranth::standins
