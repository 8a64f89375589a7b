#include "record/recorded_runtime.h"

#include "record/recorded_calls.h"
#include "record/recorded_methods.h"

#include <utility>

namespace velmoranth::record {

void RecordedRuntime::registerClass(const platform::ClassDefinition& definition) {
    constexpr auto kMessage = messageOf("ObjcRuntime", "registerClass");
    add({.message = std::string(kMessage), .arguments = {definition.name, definition.superclass}});
    platform::ClassDefinition told = definition;
    told.load = recordedCallback<>("+[" + definition.name + " load]", definition.load);
    told.initialize = recordedCallback<const platform::ClassRef&>(
        "+[" + definition.name + " initialize]", definition.initialize);
    real_.registerClass(told);
}

platform::ClassRef RecordedRuntime::getClass(const std::string& name) {
    return recorded(messageOf("ObjcRuntime", "getClass"), {name},
                    [&] { return real_.getClass(name); });
}

platform::ClassRef RecordedRuntime::getMetaclass(const platform::ClassRef& cls) {
    return recorded(messageOf("ObjcRuntime", "getMetaclass"), {words(cls)},
                    [&] { return real_.getMetaclass(cls); });
}

void RecordedRuntime::sendMessage(const platform::ClassRef& cls,
                                  const platform::Selector& selector) {
    recorded(messageOf("ObjcRuntime", "sendMessage"), {words(cls), selector},
             [&] { real_.sendMessage(cls, selector); });
}

bool RecordedRuntime::addMethod(const platform::ClassRef& cls, const platform::Selector& selector,
                                const platform::Implementation& implementation,
                                const std::string& typeEncoding) {
    return recorded(
        messageOf("ObjcRuntime", "addMethod"), {words(cls), selector, words(typeEncoding)}, [&] {
            const auto told =
                method_ == nullptr || cls == nullptr
                    ? implementation
                    : method_(implementation, EntryKind::entered, messageTo(*cls, selector));
            return real_.addMethod(cls, selector, told, typeEncoding);
        });
}

bool RecordedRuntime::isKindOfClass(const platform::Object& object, const platform::ClassRef& cls) {
    return recorded(messageOf("ObjcRuntime", "isKindOfClass"), {words(object), words(cls)},
                    [&] { return real_.isKindOfClass(object, cls); });
}

platform::ObjectRef RecordedRuntime::instanceVariable(platform::Object& object,
                                                      const std::string& name) {
    return recorded(messageOf("ObjcRuntime", "instanceVariable"), {words(object), name},
                    [&] { return real_.instanceVariable(object, name); });
}

platform::ObjectRef RecordedRuntime::valueForKey(platform::Object& object, const std::string& key) {
    return recorded(messageOf("ObjcRuntime", "valueForKey"), {words(object), key},
                    [&] { return real_.valueForKey(object, key); });
}

void RecordedSubstrate::hookMessageEx(const platform::ClassRef& cls,
                                      const platform::Selector& selector,
                                      const platform::Implementation& replacement,
                                      platform::Implementation* original) {
    add({.message = std::string(messageOf("Substrate", "hookMessageEx")),
         .arguments = cls == nullptr ? std::vector<std::string>{kNil, selector}
                                     : std::vector<std::string>{messageTo(*cls, selector)}});
    if (method_ == nullptr || cls == nullptr) {
        real_.hookMessageEx(cls, selector, replacement, original);
        return;
    }
    const std::string message = messageTo(*cls, selector);
    real_.hookMessageEx(cls, selector, method_(replacement, EntryKind::entered, message), original);
    if (original != nullptr && *original) {
        *original = method_(*original, EntryKind::original, message);
    }
}

double RecordedCoreFoundation::versionNumber() {
    return recorded(messageOf("CoreFoundation", "versionNumber"), {},
                    [&] { return real_.versionNumber(); });
}

bool RecordedCoreFoundation::isSystemVersionAtLeast(int major, int minor, int patch) {
    return recorded(messageOf("CoreFoundation", "isSystemVersionAtLeast"),
                    {words(major), words(minor), words(patch)},
                    [&] { return real_.isSystemVersionAtLeast(major, minor, patch); });
}

void RecordedNotificationCenter::deliver(platform::DarwinNotificationCenter& /*center*/,
                                         void* observer, const std::string& name,
                                         const void* object, const platform::Dictionary* userInfo) {
    const Observer& told = *static_cast<Observer*>(observer);
    const Frame frame({.kind = EntryKind::callback, .message = name});
    told.callback(*told.center, told.observer, name, object, userInfo);
}

void RecordedNotificationCenter::addObserver(void* observer,
                                             platform::NotificationCallback callback,
                                             const std::string& name, const void* object,
                                             platform::SuspensionBehavior suspensionBehavior) {
    recorded(
        messageOf("DarwinNotificationCenter", "addObserver"),
        {wordsOfPointer(observer), words(name), wordsOfPointer(object), words(suspensionBehavior)},
        [&] {
            Observer* told = nullptr;
            {
                const std::scoped_lock lock(mutex_);
                told = &observers_.emplace_back(this, observer, callback);
            }
            real_.addObserver(told, deliver, name, object, suspensionBehavior);
        });
}

platform::Date RecordedDates::date() {
    return recorded(messageOf("Dates", "date"), {}, [&] { return real_.date(); });
}

long RecordedDates::dayFromDate(const platform::Date& date) {
    return recorded(messageOf("Dates", "dayFromDate"), {words(date)},
                    [&] { return real_.dayFromDate(date); });
}

std::string RecordedDates::stringFromDate(const platform::Date& date,
                                          const std::string& dateFormat) {
    return recorded(messageOf("Dates", "stringFromDate"), {words(date), words(dateFormat)},
                    [&] { return real_.stringFromDate(date, dateFormat); });
}

void RecordedLog::write(const std::string& line) {
    add({.kind = EntryKind::log, .message = {}, .subject = line});
    real_.write(line);
}

bool RecordedDevice::respondsToUserInterfaceIdiom() {
    return recorded(messageOf("Device", "respondsToUserInterfaceIdiom"), {"userInterfaceIdiom"},
                    [&] { return real_.respondsToUserInterfaceIdiom(); });
}

int RecordedDevice::userInterfaceIdiom() {
    return recorded(messageOf("Device", "userInterfaceIdiom"), {},
                    [&] { return real_.userInterfaceIdiom(); });
}

int RecordedDevice::orientation() {
    return recorded(messageOf("Device", "orientation"), {}, [&] { return real_.orientation(); });
}

double RecordedScreen::scale() {
    return recorded(messageOf("Screen", "scale"), {}, [&] { return real_.scale(); });
}

platform::Rect RecordedScreen::bounds() {
    return recorded(messageOf("Screen", "bounds"), {}, [&] { return real_.bounds(); });
}

platform::SBIconControllerRef RecordedSpringBoard::sharedInstance(
    const platform::ClassRef& iconController) {
    return recorded(messageOf("SpringBoard", "sharedInstance"), {words(iconController)},
                    [&] { return real_.sharedInstance(iconController); });
}

platform::AlertControllerRef RecordedAlerts::alertControllerWithTitleMessagePreferredStyle(
    const platform::NullableString& title, const platform::NullableString& message,
    platform::AlertControllerStyle style) {
    return recorded(
        messageOf("Alerts", "alertControllerWithTitleMessagePreferredStyle"),
        {words(title), words(message), words(style)},
        [&] { return real_.alertControllerWithTitleMessagePreferredStyle(title, message, style); });
}

platform::AlertActionRef RecordedAlerts::actionWithTitleStyleHandler(
    const platform::NullableString& title, platform::AlertActionStyle style,
    const std::function<void()>& handler) {
    constexpr auto kMessage = messageOf("Alerts", "actionWithTitleStyleHandler");
    return recorded(kMessage, {words(title), words(style), wordsOfBlock(handler)}, [&] {
        return real_.actionWithTitleStyleHandler(title, style,
                                                 recordedCallback<>(kMessage, handler));
    });
}

platform::WindowRef RecordedApplication::keyWindow() {
    return recorded(messageOf("Application", "keyWindow"), {}, [&] { return real_.keyWindow(); });
}

}  // namespace velmoranth::record
