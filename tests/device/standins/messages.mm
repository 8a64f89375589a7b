#import "device/standins/messages.h"

#include "device/standins/hooking.h"
#include "record/operations.h"
#include <objc/runtime.h>
#include <sys/stat.h>

#include <algorithm>
#include <deque>
#include <map>
#include <mutex>
#include <utility>

namespace velmoranth::standins {
namespace {

struct Script {
    std::optional<id> object;
    std::deque<id> laterObjects;  // held
    std::optional<double> number;
    std::deque<double> laterNumbers;
    std::optional<CGRect> rect;
    std::string exception;
    id exceptionObject = nil;
    int callsBeforeException = 0;

    [[nodiscard]] bool raises() const { return exceptionObject != nil || !exception.empty(); }
};

struct State {
    std::recursive_mutex mutex;
    std::map<std::string, Script> scripts;
};

State& state() {
    static auto* const instance = new State;
    return *instance;
}

template <class Change>
void changeScript(const std::string& method, Change change) {
    const std::scoped_lock lock(state().mutex);
    change(state().scripts[method]);
}

void setObject(Script& script, std::optional<id> object) {
    const id before = script.object.value_or(nil);
    script.object = object;
    [object.value_or(nil) retain];
    [before release];
    for (const id later : script.laterObjects) {
        [later release];
    }
    script.laterObjects.clear();
}

void setNumber(Script& script, std::optional<double> number) {
    script.number = number;
    script.laterNumbers.clear();
}

id nextObject(Script& script) {
    const id object = *script.object;
    if (!script.laterObjects.empty()) {
        [object autorelease];
        script.object = script.laterObjects.front();
        script.laterObjects.pop_front();
    }
    return object;
}

double nextNumber(Script& script) {
    const double number = *script.number;
    if (!script.laterNumbers.empty()) {
        script.number = script.laterNumbers.front();
        script.laterNumbers.pop_front();
    }
    return number;
}

void setException(Script& script, const std::string& name, id object, int call) {
    const id before = script.exceptionObject;
    script.exception = name;
    script.exceptionObject = [object retain];
    script.callsBeforeException = call - 1;
    [before release];
}

bool isClass(id receiver) {
    return class_isMetaClass(object_getClass(receiver));
}

std::string methodName(id receiver, Class cls, const std::string& rest) {
    return (isClass(receiver) ? "+[" : "-[") + std::string(class_getName(cls)) + " " + rest + "]";
}

// The script of the receiver's class, or of the nearest one above that has what is looked for;
// null for none. The state is locked.
template <class Part>
Script* scriptWith(id receiver, SEL selector, Part part) {
    for (Class cls = object_getClass(receiver); cls != Nil; cls = class_getSuperclass(cls)) {
        const auto entry = state().scripts.find(methodName(receiver, cls, sel_getName(selector)));
        if (entry != state().scripts.end() && part(entry->second)) {
            return &entry->second;
        }
    }
    return nullptr;
}

struct Exception {
    std::string name;
    id object = nil;
};

// What the call raises; neither for nothing.
Exception exceptionOf(id receiver, SEL selector) {
    const std::scoped_lock lock(state().mutex);
    Script* const script =
        scriptWith(receiver, selector, [](const Script& found) { return found.raises(); });
    if (script == nullptr) {
        return {};
    }
    if (script->callsBeforeException > 0) {
        --script->callsBeforeException;
        return {};
    }
    return {script->exception, script->exceptionObject};
}

bool isInitialiser(SEL selector) {
    const std::string_view name = sel_getName(selector);
    return name.starts_with("init") || name.starts_with("_init");
}

bool isOperation(std::string_view message) {
    return std::ranges::any_of(record::operations(), [&](const record::Operation& operation) {
        return operation.message == message;
    });
}

// What the message is called where it is the platform's part of a replaced method: by the class
// whose method that is. "" for any other.
std::string replacedMethod(id receiver, SEL selector) {
    for (Class cls = object_getClass(receiver); cls != Nil; cls = class_getSuperclass(cls)) {
        if (isHooked(cls, selector)) {
            return methodName(receiver, cls, sel_getName(selector));
        }
    }
    return {};
}

// By the class that the operation is named after, an object in the making by its own.
std::string messageName(id receiver, SEL selector) {
    const std::string own = methodName(receiver, object_getClass(receiver), sel_getName(selector));
    if (isInitialiser(selector)) {
        return own;
    }
    for (Class cls = object_getClass(receiver); cls != Nil; cls = class_getSuperclass(cls)) {
        std::string name = methodName(receiver, cls, sel_getName(selector));
        if (isOperation(name)) {
            return name;
        }
    }
    return own;
}

void raiseIfAsked(id receiver, SEL selector) {
    const Exception exception = exceptionOf(receiver, selector);
    if (exception.object != nil) {
        @throw exception.object;
    }
    if (!exception.name.empty()) {
        [NSException raise:[NSString stringWithUTF8String:exception.name.c_str()]
                    format:@"as the test asked"];
    }
}

}  // namespace

void setAnswer(const std::string& method, id object) {
    changeScript(method, [object](Script& script) { setObject(script, object); });
}

void setAnswer(const std::string& method, double number) {
    changeScript(method, [number](Script& script) { setNumber(script, number); });
}

void setAnswer(const std::string& method, CGRect rect) {
    changeScript(method, [rect](Script& script) { script.rect = rect; });
}

void clearAnswer(const std::string& method) {
    changeScript(method, [](Script& script) {
        setObject(script, std::nullopt);
        setNumber(script, std::nullopt);
        script.rect.reset();
    });
}

void setAnswers(const std::string& method, std::initializer_list<id> objects) {
    changeScript(method, [&](Script& script) {
        setObject(script, *objects.begin());
        for (auto later = objects.begin() + 1; later != objects.end(); ++later) {
            script.laterObjects.push_back([*later retain]);
        }
    });
}

void setAnswers(const std::string& method, std::initializer_list<double> numbers) {
    changeScript(method, [&](Script& script) {
        setNumber(script, *numbers.begin());
        script.laterNumbers.assign(numbers.begin() + 1, numbers.end());
    });
}

void raiseFrom(const std::string& method, const std::string& exceptionName) {
    changeScript(method, [&](Script& script) { setException(script, exceptionName, nil, 1); });
}

void raiseFrom(const std::string& method, id exception, int call) {
    changeScript(method, [&](Script& script) { setException(script, "", exception, call); });
}

void raiseNoMore(const std::string& method) {
    raiseFrom(method, "");
}

void setVariable(id object, const char* name, id value) {
    const Ivar ivar = class_getInstanceVariable(object_getClass(object), name);
    if (ivar == nullptr) {
        [NSException raise:NSInvalidArgumentException format:@"no variable %s", name];
    }
    const id before = object_getIvar(object, ivar);
    object_setIvar(object, ivar, [value retain]);
    [before release];
}

id variable(id object, const char* name) {
    const Ivar ivar = class_getInstanceVariable(object_getClass(object), name);
    return ivar == nullptr ? nil : object_getIvar(object, ivar);
}

Noted receive(id receiver, SEL selector, Told told, std::vector<std::string> arguments) {
    std::erase(arguments, "");  // what is told where it is there alone
    record::Entry entry{.message = replacedMethod(receiver, selector),
                        .arguments = std::move(arguments)};
    const bool isReplaced = !entry.message.empty();
    if (!isReplaced) {
        entry.message = messageName(receiver, selector);
    }
    if (isReplaced) {
        entry.kind = record::EntryKind::original;
        // One in the making has nothing yet that it could be known by.
        entry.subject =
            isInitialiser(selector) ? class_getName(object_getClass(receiver)) : wordsOf(receiver);
    } else if (told == Told::object && !isClass(receiver) && !isInitialiser(selector)) {
        entry.kind = record::EntryKind::message;
        entry.subject = wordsOf(receiver);
    }
    const Noted noted(note(std::move(entry)));
    raiseIfAsked(receiver, selector);
    return noted;
}

void readFile(id receiver, SEL selector, NSString* path, id answer,
              std::vector<std::string> arguments) {
    std::erase(arguments, "");
    struct stat found = {};
    const std::string place = textIn(path);
    const bool exists = ::stat(place.c_str(), &found) == 0;
    note({.kind = answer != nil ? record::EntryKind::found
                  : exists      ? record::EntryKind::unreadable
                                : record::EntryKind::missing,
          .message = messageName(receiver, selector),
          .subject = place,
          .arguments = std::move(arguments),
          .answer = wordsOf(answer)});
    raiseIfAsked(receiver, selector);
}

std::optional<id> answerSet(id receiver, SEL selector) {
    const std::scoped_lock lock(state().mutex);
    Script* const script = scriptWith(receiver, selector,
                                      [](const Script& found) { return found.object.has_value(); });
    return script == nullptr ? std::nullopt : std::optional(nextObject(*script));
}

id answer(id receiver, SEL selector) {
    return answerSet(receiver, selector).value_or(nil);
}

double numberAnswer(id receiver, SEL selector, double otherwise) {
    const std::scoped_lock lock(state().mutex);
    Script* const script = scriptWith(receiver, selector,
                                      [](const Script& found) { return found.number.has_value(); });
    return script == nullptr ? otherwise : nextNumber(*script);
}

CGRect rectAnswer(id receiver, SEL selector) {
    const std::scoped_lock lock(state().mutex);
    const Script* const script =
        scriptWith(receiver, selector, [](const Script& found) { return found.rect.has_value(); });
    return script == nullptr ? CGRect{} : *script->rect;
}

}  // namespace velmoranth::standins
