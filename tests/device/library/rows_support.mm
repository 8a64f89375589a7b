#include "device/library/rows_support.h"

#include <dlfcn.h>
#include <objc/runtime.h>

#include <algorithm>
#include <mutex>
#include <set>

namespace velmoranth::standins {
namespace {

using Counts = std::map<std::string, long>;

struct HiddenMethods {
    std::mutex mutex;
    std::set<std::string> names;
};

HiddenMethods& hiddenMethods() {
    static auto* const instance = new HiddenMethods;
    return *instance;
}

bool isHidden(Class cls, SEL selector) {
    if (cls == Nil || selector == nullptr) {
        return false;
    }
    const std::scoped_lock lock(hiddenMethods().mutex);
    const auto& names = hiddenMethods().names;
    return !names.empty() &&
           names.contains((class_isMetaClass(cls) ? "+[" : "-[") + std::string(class_getName(cls)) +
                          " " + sel_getName(selector) + "]");
}

Counts counts() {
    Counts found;
    for (const std::string& line : allLiving()) {
        const std::size_t space = line.rfind(' ');
        found[line.substr(0, space)] = std::stol(line.substr(space + 1));
    }
    return found;
}

Lines changes(const Counts& before, const Counts& after) {
    Counts difference = after;
    for (const auto& [name, number] : before) {
        difference[name] -= number;
    }
    Lines lines;
    for (const auto& [name, number] : difference) {
        if (number != 0) {
            lines.push_back(name + (number > 0 ? " +" : " ") + std::to_string(number));
        }
    }
    return lines;
}

Lines messagesOf(const Call& call) {
    clearJournal();
    @autoreleasepool {
        call();
    }
    return journal();
}

// "SBIconView" of "-[SBIconView setTag:]".
std::string classIn(const std::string& message) {
    return message.substr(2, message.find(' ') - 2);
}

IMP implementationIn(Class cls, SEL selector) {
    const Method method = class_getInstanceMethod(cls, selector);
    return method == nullptr ? nullptr : method_getImplementation(method);
}

}  // namespace

ReplacedMethods::ReplacedMethods(const SystemVersion& system) {
    runSystem(system);
    loaded();
}

void ReplacedMethods::settings(std::initializer_list<const char*> themes,
                               std::initializer_list<const char*> switches) {
    activeThemes(themes, switches);
    postDarwinNotification("com.qor.velmoranthprefs.prefs");
    runMainQueue();
    clearJournal();
    clearLog();
}

void ReplacedMethods::settings(NSDictionary* values) {
    preferences(values);
    postDarwinNotification("com.qor.velmoranthprefs.prefs");
    runMainQueue();
    clearJournal();
    clearLog();
}

void ReplacedMethods::themePng(const std::string& path, unsigned side) {
    png("/Library/Themes/" + path, side);
}

Lines ReplacedMethods::taken() {
    Lines lines = journal();
    clearJournal();
    return lines;
}

Lines ReplacedMethods::steps() {
    Lines lines = taken();
    std::erase_if(lines, [](const std::string& line) {
        return line.starts_with("+[UIImage imageWithContentsOfFile:]");
    });
    return lines;
}

Lines joined(std::initializer_list<Lines> parts) {
    Lines lines;
    for (const Lines& part : parts) {
        std::ranges::copy(part, std::back_inserter(lines));
    }
    return lines;
}

std::string sentTo(const std::string& receiver, const std::string& method, const Lines& arguments) {
    std::string line = method + " " + receiver;
    for (const std::string& argument : arguments) {
        line += " " + argument;
    }
    return line;
}

std::string sentToClass(const std::string& method, const Lines& arguments) {
    return sentTo(classIn(method), method, arguments);
}

std::string readsImage(const std::string& path) {
    return "+[UIImage imageWithContentsOfFile:] /Library/Themes/" + path;
}

Lines asksForIdiom() {
    return {"+[UIDevice currentDevice]", "-[UIDevice respondsToSelector:] userInterfaceIdiom",
            "+[UIDevice currentDevice]", "-[UIDevice userInterfaceIdiom]"};
}

std::string describe(id object) {
    return object == nil ? "(null)" : [[object description] UTF8String];
}

UIImage* namedImage(const std::string& name, std::size_t width, std::size_t height) {
    UIImage* const image = imageOfPixels(width, height);
    nameObject(image, name);
    return image;
}

Lines leftBy(const Call& call) {
    const Counts before = counts();
    @autoreleasepool {
        call();
    }
    return changes(before, counts());
}

id thrownBy(const Call& call) {
    id thrown = nil;
    @autoreleasepool {
        @try {
            call();
        } @catch (id exception) {
            thrown = [exception retain];
        }
    }
    return [thrown autorelease];
}

void expectNothingLeft(const Call& call) {
    // What is made once and kept is there after the second time at the latest.
    messagesOf(call);
    const Lines messages = messagesOf(call);
    const Counts before = counts();
    for (int time = 0; time < 3; ++time) {
        EXPECT_EQ(messagesOf(call), messages);
    }
    EXPECT_EQ(changes(before, counts()), Lines{});
}

void expectExceptionsToPass(const std::string& method, const Call& call) {
    messagesOf(call);
    const Lines usual = messagesOf(call);
    const auto isOurs = [&method](const std::string& line) {
        return line == method || line.starts_with(method + " ");
    };
    const auto calls = static_cast<int>(std::ranges::count_if(usual, isOurs));
    EXPECT_GT(calls, 0) << method << " is not called";
    auto end = usual.begin();
    for (int number = 1; number <= calls; ++number) {
        end = std::find_if(end, usual.end(), isOurs) + 1;
        @autoreleasepool {
            NSException* const exception = [NSException exceptionWithName:@"Ours"
                                                                   reason:@"as the test asked"
                                                                 userInfo:nil];
            const Counts before = counts();
            clearJournal();
            raiseFrom(method, exception, number);
            EXPECT_EQ(address(thrownBy(call)), address(exception)) << "call " << number;
            raiseNoMore(method);
            EXPECT_EQ(journal(), Lines(usual.begin(), end)) << "call " << number;
            EXPECT_EQ(changes(before, counts()), Lines{}) << "call " << number;
        }
        EXPECT_EQ(messagesOf(call), usual) << "after call " << number;
    }
}

MethodName::MethodName(std::string_view name) {
    const std::size_t space = name.find(' ');
    const std::string className(name.substr(2, space - 2));
    const std::string selector(name.substr(space + 1, name.size() - space - 2));
    const Class cls = static_cast<Class>(objc_getClass(className.c_str()));
    const Class metaclass = object_getClass(static_cast<id>(cls));
    const bool isClassMethod = name.starts_with('+');
    target_ = isClassMethod ? metaclass : cls;
    otherSide_ = isClassMethod ? cls : metaclass;
    selector_ = sel_registerName(selector.c_str());
}

IMP MethodName::implementation() const {
    return implementationIn(target_, selector_);
}

IMP MethodName::parentsImplementation() const {
    return implementationIn(class_getSuperclass(target_), selector_);
}

Method MethodName::otherSides() const {
    return class_getInstanceMethod(otherSide_, selector_);
}

void hideMethod(const std::string& name) {
    const std::scoped_lock lock(hiddenMethods().mutex);
    hiddenMethods().names.insert(name);
}

void showMethods() {
    const std::scoped_lock lock(hiddenMethods().mutex);
    hiddenMethods().names.clear();
}

Class classWithMethodOf(const char* name, Class parent, const char* method, Class from) {
    const SEL selector = sel_registerName(method);
    const Method found = class_getInstanceMethod(from, selector);
    const Class cls = objc_allocateClassPair(parent, name, 0);
    class_addMethod(cls, selector, method_getImplementation(found), method_getTypeEncoding(found));
    objc_registerClassPair(cls);
    return cls;
}

void addEmptyKey(Class cls, const char* key) {
    const auto none = +[](id /*self*/, SEL /*selector*/) -> id { return nil; };
    class_addMethod(cls, sel_registerName(key), reinterpret_cast<IMP>(none), "@@:");
}

}  // namespace velmoranth::standins

// Ahead of the runtime's own: what the hooking library looks for.
extern "C" __attribute__((visibility("default"))) Method class_getInstanceMethod(Class cls,
                                                                                 SEL selector) {
    static const auto next =
        reinterpret_cast<Method (*)(Class, SEL)>(dlsym(RTLD_NEXT, "class_getInstanceMethod"));
    return velmoranth::standins::isHidden(cls, selector) ? nullptr : next(cls, selector);
}
