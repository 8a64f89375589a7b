// The phone's Objective-C runtime, on GCC's: sending messages, references, pools, and what changes
// or hands out methods, which pass through what lies between the two calling conventions.
#include "device/emulator/calls.h"
#include "device/emulator/imports.h"
#include "device/emulator/load_error.h"
#include "device/emulator/pac.h"
#import <Foundation/Foundation.h>
#include <dlfcn.h>
#include <objc/message.h>
#include <objc/runtime.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

// dispatch.S
extern "C" {
void emulatorMessageSend();
void emulatorMessageSendSuper();
void emulatorVariadicLog();
void emulatorVariadicMessage();
void emulatorVariadicRaise();
}

namespace velmoranth::emulator {
namespace {

// A variable argument list whose arguments all lie on the stack.
void listOnStack(va_list& arguments, void* stack) {
    std::memset(&arguments, 0, sizeof arguments);  // no register has any left
    std::memcpy(&arguments, &stack, sizeof stack);
}

NSString* formatted(NSString* format, void* stack) {
    va_list arguments;
    listOnStack(arguments, stack);
    return [[[NSString alloc] initWithFormat:format arguments:arguments] autorelease];
}

extern "C" void emulatorLog(NSString* format, void* stack) {
    NSLog(@"%@", formatted(format, stack));
}

extern "C" void emulatorRaiseFormat(Class cls, SEL /*selector*/, NSString* name, NSString* format,
                                    void* stack) {
    [cls raise:name format:@"%@", formatted(format, stack)];
}

extern "C" id emulatorFormatMessage(id self, SEL selector, NSString* format, void* stack) {
    NSString* const text = formatted(format, stack);
    const char* const name = sel_getName(selector);
    if (std::strcmp(name, "initWithFormat:") == 0) {
        return [self initWithString:text];
    }
    if (std::strcmp(name, "appendFormat:") == 0) {
        [self appendString:text];
        return nil;
    }
    if (std::strcmp(name, "stringByAppendingFormat:") == 0) {
        return [self stringByAppendingString:text];
    }
    return [self stringWithString:text];
}

// Messages with a variable number of arguments, and the function that takes their place; null for
// those that nothing here has had to send yet.
struct VariadicMessage {
    const char* name;
    void (*function)();
};

constexpr std::array kVariadicMessages = {
    VariadicMessage{"appendFormat:", &emulatorVariadicMessage},
    VariadicMessage{"initWithFormat:", &emulatorVariadicMessage},
    VariadicMessage{"localizedStringWithFormat:", &emulatorVariadicMessage},
    VariadicMessage{"raise:format:", &emulatorVariadicRaise},
    VariadicMessage{"stringByAppendingFormat:", &emulatorVariadicMessage},
    VariadicMessage{"stringWithFormat:", &emulatorVariadicMessage},
    VariadicMessage{"arrayWithObjects:", nullptr},
    VariadicMessage{"dictionaryWithObjectsAndKeys:", nullptr},
    VariadicMessage{"initWithObjects:", nullptr},
    VariadicMessage{"initWithObjectsAndKeys:", nullptr},
    VariadicMessage{"predicateWithFormat:", nullptr},
    VariadicMessage{"setWithObjects:", nullptr},
};

// A selector begins with what is one for all selectors of a name.
const void* identityOf(SEL selector) {
    return *reinterpret_cast<void* const*>(selector);
}

const VariadicMessage* variadicMessageOf(SEL selector) {
    static const auto kByIdentity = [] {
        std::unordered_map<const void*, const VariadicMessage*> messages;
        for (const VariadicMessage& message : kVariadicMessages) {
            messages[identityOf(sel_registerName(message.name))] = &message;
        }
        return messages;
    }();
    const auto found = kByIdentity.find(identityOf(selector));
    return found == kByIdentity.end() ? nullptr : found->second;
}

void* pointerTo(IMP implementation) {
    return reinterpret_cast<void*>(implementation);
}

IMP implementationAt(void* pointer) {
    return reinterpret_cast<IMP>(pointer);
}

IMP methodOf(IMP implementation, const char* encoding) {
    return implementationAt(
        methodOfLibrary(pointerTo(implementation), encoding == nullptr ? "" : encoding));
}

IMP methodFrom(IMP implementation, const char* encoding) {
    return implementationAt(
        methodFromLibrary(pointerTo(implementation), encoding == nullptr ? "" : encoding));
}

// Methods that the library has called, and what it calls them through.
class KnownMethods {
  public:
    static KnownMethods& instance() {
        static auto* const methods = new KnownMethods;
        return *methods;
    }

    IMP find(IMP implementation, Class cls, SEL selector) {
        {
            const std::shared_lock lock(mutex_);
            if (const auto entry = calls_.find(implementation); entry != calls_.end()) {
                return entry->second;
            }
        }
        const Method method = class_getInstanceMethod(cls, selector);
        if (method == nullptr) {
            return implementation;  // forwarded
        }
        const IMP call = methodFrom(implementation, method_getTypeEncoding(method));
        const std::scoped_lock lock(mutex_);
        return calls_[implementation] = call;
    }

  private:
    std::shared_mutex mutex_;
    std::unordered_map<IMP, IMP> calls_;
};

IMP callOf(IMP implementation, Class cls, SEL selector) {
    const VariadicMessage* const variadic = variadicMessageOf(selector);
    if (variadic == nullptr) {
        return KnownMethods::instance().find(implementation, cls, selector);
    }
    if (variadic->function == nullptr) {
        stop(LoadError(std::string("a message with a variable number of arguments: ") +
                       variadic->name));
    }
    return reinterpret_cast<IMP>(variadic->function);
}

extern "C" IMP emulatorLookUp(id self, SEL selector) {
    return callOf(objc_msg_lookup(self, selector), object_getClass(self), selector);
}

struct SuperCall {
    id self;
    Class current;
};

extern "C" IMP emulatorLookUpSuper(const SuperCall* call, SEL selector) {
    const Class superclass = class_getSuperclass(call->current);
    objc_super target = {call->self, superclass};
    return callOf(objc_msg_lookup_super(&target, selector), superclass, selector);
}

id retain(id object) {
    return [object retain];
}

void release(id object) {
    [object release];
}

id autorelease(id object) {
    return [object autorelease];
}

id retainAutorelease(id object) {
    return [[object retain] autorelease];
}

id allocate(Class cls) {
    return [cls alloc];
}

id allocateAndInit(Class cls) {
    return [[cls alloc] init];
}

id sendClass(id object) {
    return [object class];
}

BOOL sendIsKindOfClass(id object, Class cls) {
    return [object isKindOfClass:cls] ? 1 : 0;
}

BOOL sendRespondsToSelector(id object, SEL selector) {
    return [object respondsToSelector:selector] ? 1 : 0;
}

id sendSelf(id object) {
    return [object self];
}

void* pushPool() {
    return [[NSAutoreleasePool alloc] init];
}

void popPool(void* pool) {
    [static_cast<NSAutoreleasePool*>(pool) drain];
}

void storeStrong(id* place, id object) {
    const id previous = *place;
    *place = [object retain];
    [previous release];
}

Class classOf(id object) {
    return object == nil ? Nil : object_getClass(object);
}

// GCC's runtime takes a bit that this compiler sets in every metaclass for a sign that the class is
// not complete yet, and loses methods that are added to it.
void completeMetaclass(Class cls) {
    struct Layout {
        Class isa;
        Class super;
        const char* name;
        long version;
        unsigned long info;
    };

    constexpr unsigned long kIncomplete = 0x10;
    if (class_isMetaClass(cls) != 0) {
        reinterpret_cast<Layout*>(cls)->info &= ~kIncomplete;
    }
}

BOOL addMethod(Class cls, SEL selector, IMP implementation, const char* encoding) {
    completeMetaclass(cls);
    const IMP given = pac::given(implementation, "class_addMethod's function");
    return class_addMethod(cls, selector, methodOf(given, encoding), encoding) ? 1 : 0;
}

IMP replaceMethod(Class cls, SEL selector, IMP implementation, const char* encoding) {
    completeMetaclass(cls);
    const IMP given = pac::given(implementation, "class_replaceMethod's function");
    const IMP previous = class_replaceMethod(cls, selector, methodOf(given, encoding), encoding);
    return previous == nullptr ? nullptr : pac::handedOver(methodFrom(previous, encoding));
}

IMP implementationOf(Method method) {
    const IMP implementation = method_getImplementation(method);
    return implementation == nullptr
               ? nullptr
               : pac::handedOver(methodFrom(implementation, method_getTypeEncoding(method)));
}

IMP setImplementation(Method method, IMP implementation) {
    const char* const encoding = method_getTypeEncoding(method);
    const IMP given = pac::given(implementation, "method_setImplementation's function");
    return pac::handedOver(
        methodFrom(method_setImplementation(method, methodOf(given, encoding)), encoding));
}

IMP classImplementation(Class cls, SEL selector) {
    return pac::handedOver(callOf(class_getMethodImplementation(cls, selector), cls, selector));
}

using HookMessage = void (*)(Class cls, SEL selector, IMP replacement, IMP* original);

void hookMessage(Class cls, SEL selector, IMP replacement, IMP* original) {
    static const auto kHook = reinterpret_cast<HookMessage>(dlsym(RTLD_DEFAULT, "MSHookMessageEx"));
    if (kHook == nullptr) {
        stop(LoadError("nothing stands for MSHookMessageEx"));
    }
    const Method method = class_getInstanceMethod(cls, selector);
    const char* const encoding = method == nullptr ? "" : method_getTypeEncoding(method);
    kHook(cls, selector, methodOf(pac::given(replacement, "MSHookMessageEx's function"), encoding),
          original);
    if (method != nullptr && original != nullptr && *original != nullptr) {
        *original = methodFrom(*original, encoding);
        // Whether hooking libraries sign what they give back is not known, so that one in two is
        // signed.
        static bool isSigned = false;
        isSigned = !isSigned;
        *original = isSigned ? pac::handedOver(*original) : *original;
    }
}

template <class Function>
const void* addressOf(Function* function) {
    return reinterpret_cast<const void*>(function);
}

}  // namespace

std::span<const Import> objectiveCImports() {
    static const std::array<std::uint64_t, 4> kEmptyCache = {};
    static const std::array kImports = {
        Import{"_MSHookMessageEx", addressOf(&hookMessage)},
        Import{"_NSLog", addressOf(&emulatorVariadicLog)},
        Import{"__objc_empty_cache", &kEmptyCache},
        Import{"_class_addMethod", addressOf(&addMethod)},
        Import{"_class_getMethodImplementation", addressOf(&classImplementation)},
        Import{"_class_replaceMethod", addressOf(&replaceMethod)},
        Import{"_method_getImplementation", addressOf(&implementationOf)},
        Import{"_method_setImplementation", addressOf(&setImplementation)},
        Import{"_objc_alloc", addressOf(&allocate)},
        Import{"_objc_alloc_init", addressOf(&allocateAndInit)},
        Import{"_objc_autorelease", addressOf(&autorelease)},
        Import{"_objc_autoreleasePoolPop", addressOf(&popPool)},
        Import{"_objc_autoreleasePoolPush", addressOf(&pushPool)},
        Import{"_objc_autoreleaseReturnValue", addressOf(&autorelease)},
        Import{"_objc_msgSend", addressOf(&emulatorMessageSend)},
        Import{"_objc_msgSendSuper2", addressOf(&emulatorMessageSendSuper)},
        Import{"_objc_opt_class", addressOf(&sendClass)},
        Import{"_objc_opt_isKindOfClass", addressOf(&sendIsKindOfClass)},
        Import{"_objc_opt_new", addressOf(&allocateAndInit)},
        Import{"_objc_opt_respondsToSelector", addressOf(&sendRespondsToSelector)},
        Import{"_objc_opt_self", addressOf(&sendSelf)},
        Import{"_objc_release", addressOf(&release)},
        Import{"_objc_retain", addressOf(&retain)},
        Import{"_objc_retainAutorelease", addressOf(&retainAutorelease)},
        Import{"_objc_retainAutoreleaseReturnValue", addressOf(&retainAutorelease)},
        Import{"_objc_retainAutoreleasedReturnValue", addressOf(&retain)},
        Import{"_objc_storeStrong", addressOf(&storeStrong)},
        Import{"_object_getClass", addressOf(&classOf)},
    };
    return kImports;
}

}  // namespace velmoranth::emulator
