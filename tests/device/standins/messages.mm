#import "device/standins/messages.h"

#include <objc/runtime.h>

#include <charconv>
#include <cstring>
#include <deque>
#include <iterator>
#include <map>
#include <mutex>

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
    std::map<const void*, std::string> names;
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

// The shortest text that reads back as the same number.
template <class Number>
std::string shortest(Number number) {
    char text[32];
    return {text, std::to_chars(std::begin(text), std::end(text), number).ptr};
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

void nameObject(id object, const std::string& name) {
    const std::scoped_lock lock(state().mutex);
    state().names[object] = name;
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

std::string shown(id object) {
    if (object == nil) {
        return "nil";
    }
    {
        const std::scoped_lock lock(state().mutex);
        const auto name = state().names.find(object);
        if (name != state().names.end()) {
            return name->second;
        }
    }
    if ([object isKindOfClass:[NSString class]]) {
        return "\"" + std::string([object UTF8String]) + "\"";
    }
    return "<" + std::string(class_getName(object_getClass(object))) + ">";
}

std::string shown(BOOL flag) {
    return flag ? "YES" : "NO";
}

std::string shown(int number) {
    return std::to_string(number);
}

std::string shown(long number) {
    return std::to_string(number);
}

std::string shown(long long number) {
    return std::to_string(number);
}

std::string shown(unsigned long number) {
    return std::to_string(number);
}

std::string shown(unsigned long long number) {
    return std::to_string(number);
}

std::string shown(float number) {
    return shortest(number);
}

std::string shown(double number) {
    return shortest(number);
}

std::string shown(CGPoint point) {
    return "{" + shown(point.x) + ", " + shown(point.y) + "}";
}

std::string shown(CGSize size) {
    return "{" + shown(size.width) + ", " + shown(size.height) + "}";
}

std::string shown(CGRect rect) {
    return "{" + shown(rect.origin) + ", " + shown(rect.size) + "}";
}

std::string shown(const IconImageInfo& info) {
    return "{" + shown(info.width) + ", " + shown(info.height) + ", " + shown(info.scale) + ", " +
           shown(info.continuousCornerRadius) + "}";
}

std::string shown(SEL selector) {
    return selector == nullptr ? "null" : sel_getName(selector);
}

std::string shown(const Shown& argument) {
    return argument.text;
}

Shown shownPointer(const void* pointer) {
    return {pointer == nullptr ? "null" : "set"};
}

void receive(id receiver, SEL selector, const std::vector<std::string>& arguments) {
    std::string call;
    const char* rest = sel_getName(selector);
    for (const std::string& argument : arguments) {
        const char* const colon = std::strchr(rest, ':');
        if (colon == nullptr) {
            break;
        }
        call += (call.empty() ? "" : " ") + std::string(rest, colon + 1) + " " + argument;
        rest = colon + 1;
    }
    note(methodName(receiver, object_getClass(receiver), call + rest));
    const Exception exception = exceptionOf(receiver, selector);
    if (exception.object != nil) {
        @throw exception.object;
    }
    if (!exception.name.empty()) {
        [NSException raise:[NSString stringWithUTF8String:exception.name.c_str()]
                    format:@"as the test asked"];
    }
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
