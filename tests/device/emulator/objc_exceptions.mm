// Objective-C's exceptions in the library's functions: what this process's runtime throws is caught
// there by class. The library's own tables of handlers are read by the routine below; those of
// functions that catch C++ exceptions alone are read by the C++ library's.
#include "device/emulator/imports.h"
#include "device/emulator/load_error.h"
#include <objc/runtime.h>
#include <unwind.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

namespace velmoranth::emulator {
namespace {

// Where GCC's runtime keeps the object of an exception.
struct ObjectiveCException {
    _Unwind_Exception base;
    id value;
};

bool isObjectiveC(_Unwind_Exception_Class kind) {
    _Unwind_Exception_Class known = 0;
    for (const char letter : {'G', 'N', 'U', 'C', 'O', 'B', 'J', 'C'}) {
        known = known << 8U | static_cast<unsigned char>(letter);
    }
    return kind == known;
}

// How the library describes the class that a handler is for.
struct CaughtType {
    const void* vtable;
    const char* name;
    Class cls;
};

// The C++ library asks the first of a type's functions whether it may catch something; these belong
// to no C++ type, so they do not.
bool catchesNothing() {
    return false;
}

using TypeFunction = bool (*)();

constexpr std::array<TypeFunction, 16> kTypeFunctions = {
    nullptr,         nullptr,         &catchesNothing, &catchesNothing,
    &catchesNothing, &catchesNothing, &catchesNothing, &catchesNothing,
    &catchesNothing, &catchesNothing, &catchesNothing, &catchesNothing,
    &catchesNothing, &catchesNothing, &catchesNothing, &catchesNothing};

bool catches(const CaughtType* type, id value) {
    if (type == nullptr) {
        return true;  // @finally, and what catches everything
    }
    if (type->vtable != &kTypeFunctions[2]) {
        return false;  // a C++ type
    }
    for (Class cls = value == nullptr ? Nil : object_getClass(value); cls != Nil;
         cls = class_getSuperclass(cls)) {
        if (cls == type->cls) {
            return true;
        }
    }
    return std::strcmp(type->name, "id") == 0;
}

// A function's table of handlers, as C++ compilers write it.
class HandlerTable {
  public:
    HandlerTable(const std::uint8_t* table, std::uint64_t functionStart)
        : next_(table), landingBase_(functionStart) {
        if (const std::uint8_t encoding = *next_++; encoding != kOmitted) {
            landingBase_ = pointer(encoding);
        }
        typeEncoding_ = *next_++;
        if (typeEncoding_ != kOmitted) {
            const std::uint64_t distance = uleb();
            types_ = next_ + distance;
        }
        callSiteEncoding_ = *next_++;
        const std::uint64_t size = uleb();
        actions_ = next_ + size;
    }

    struct Handler {
        std::uint64_t landingPad = 0;  // 0: none
        std::int64_t selector = 0;     // 0: only cleans up
    };

    // What is to run when `value` passes through the call at `offset`.
    Handler find(std::uint64_t offset, id value) {
        while (next_ < actions_) {
            const std::uint64_t start = pointer(callSiteEncoding_);
            const std::uint64_t length = pointer(callSiteEncoding_);
            const std::uint64_t landing = pointer(callSiteEncoding_);
            const std::uint64_t action = uleb();
            if (offset >= start && offset < start + length) {
                if (landing == 0) {
                    return {};
                }
                return {landingBase_ + landing,
                        action == 0 ? 0 : selectorOf(actions_ + action - 1, value)};
            }
        }
        return {};
    }

  private:
    static constexpr std::uint8_t kOmitted = 0xff;

    template <class T>
    T number() {
        T value;
        std::memcpy(&value, next_, sizeof value);
        next_ += sizeof value;
        return value;
    }

    std::uint64_t uleb() {
        std::uint64_t value = 0;
        for (unsigned shift = 0;; shift += 7) {
            const std::uint8_t part = *next_++;
            value |= std::uint64_t{part & 0x7fU} << shift;
            if ((part & 0x80U) == 0) {
                return value;
            }
        }
    }

    std::int64_t sleb() {
        std::uint64_t value = 0;
        unsigned shift = 0;
        std::uint8_t part = 0x80;
        for (; (part & 0x80U) != 0; shift += 7) {
            part = *next_++;
            value |= std::uint64_t{part & 0x7fU} << shift;
        }
        const bool negative = (part & 0x40U) != 0 && shift < 64;
        return static_cast<std::int64_t>(negative ? value | ~std::uint64_t{0} << shift : value);
    }

    // Only the encodings that the compiler uses for this system.
    std::uint64_t pointer(std::uint8_t encoding) {
        constexpr std::uint8_t kRelative = 0x10;
        constexpr std::uint8_t kIndirect = 0x80;
        const auto place = reinterpret_cast<std::uint64_t>(next_);
        std::uint64_t value = 0;
        switch (encoding & 0x0fU) {
            case 0x00:
                value = number<std::uint64_t>();
                break;
            case 0x01:
                value = uleb();
                break;
            case 0x03:
                value = number<std::uint32_t>();
                break;
            case 0x0b:
                value = static_cast<std::uint64_t>(std::int64_t{number<std::int32_t>()});
                break;
            default:
                stop(LoadError("a table of exception handlers in an unknown form"));
        }
        if (value == 0) {
            return 0;
        }
        value += (encoding & 0x70U) == kRelative ? place : 0;
        return (encoding & kIndirect) != 0 ? *reinterpret_cast<const std::uint64_t*>(value) : value;
    }

    [[nodiscard]] std::uint64_t typeSize() const { return (typeEncoding_ & 0x0fU) == 0 ? 8 : 4; }

    const CaughtType* typeAt(std::int64_t index) {
        next_ = types_ - static_cast<std::uint64_t>(index) * typeSize();
        return reinterpret_cast<const CaughtType*>(pointer(typeEncoding_));
    }

    // The chain of a call's handlers: the first that catches.
    std::int64_t selectorOf(const std::uint8_t* action, id value) {
        while (true) {
            next_ = action;
            const std::int64_t selector = sleb();
            const std::uint8_t* const distanceAt = next_;
            const std::int64_t distance = sleb();
            if (selector > 0 && catches(typeAt(selector), value)) {
                return selector;
            }
            if (distance == 0) {
                return 0;
            }
            action = distanceAt + distance;
        }
    }

    const std::uint8_t* next_;
    std::uint64_t landingBase_;
    const std::uint8_t* types_ = nullptr;
    const std::uint8_t* actions_ = nullptr;
    std::uint8_t typeEncoding_ = kOmitted;
    std::uint8_t callSiteEncoding_ = kOmitted;
};

using Personality = _Unwind_Reason_Code (*)(int, _Unwind_Action, _Unwind_Exception_Class,
                                            _Unwind_Exception*, _Unwind_Context*);

extern "C" _Unwind_Reason_Code emulatorPersonality(int version, _Unwind_Action actions,
                                                   _Unwind_Exception_Class kind,
                                                   _Unwind_Exception* exception,
                                                   _Unwind_Context* context) {
    if (!isObjectiveC(kind)) {
        static const auto kCxx = reinterpret_cast<Personality>(
            reinterpret_cast<std::uint64_t>(cxxImport("___gxx_personality_v0")));
        return kCxx(version, actions, kind, exception, context);
    }
    const auto* const table =
        static_cast<const std::uint8_t*>(_Unwind_GetLanguageSpecificData(context));
    if (table == nullptr) {
        return _URC_CONTINUE_UNWIND;
    }
    const std::uint64_t start = _Unwind_GetRegionStart(context);
    const std::uint64_t call = _Unwind_GetIP(context) - 1 - start;
    const bool isForced = (actions & _UA_FORCE_UNWIND) != 0;
    const id value =
        isForced ? nullptr : reinterpret_cast<const ObjectiveCException*>(exception)->value;
    const HandlerTable::Handler handler = HandlerTable(table, start).find(call, value);
    if (handler.landingPad == 0) {
        return _URC_CONTINUE_UNWIND;
    }
    if ((actions & _UA_SEARCH_PHASE) != 0) {
        return handler.selector == 0 ? _URC_CONTINUE_UNWIND : _URC_HANDLER_FOUND;
    }
    // Frames before the one that catches are only cleaned up.
    const bool isHandler = (actions & _UA_HANDLER_FRAME) != 0;
    _Unwind_SetGR(context, 0, reinterpret_cast<std::uint64_t>(exception));
    _Unwind_SetGR(context, 1, isHandler ? static_cast<std::uint64_t>(handler.selector) : 0);
    _Unwind_SetIP(context, handler.landingPad);
    return _URC_INSTALL_CONTEXT;
}

// The exceptions that this thread's handlers have begun with, the last one last.
std::vector<_Unwind_Exception*>& caught() {
    static thread_local std::vector<_Unwind_Exception*> exceptions;
    return exceptions;
}

id beginCatch(_Unwind_Exception* exception) {
    caught().push_back(exception);
    return isObjectiveC(exception->exception_class)
               ? reinterpret_cast<const ObjectiveCException*>(exception)->value
               : nullptr;
}

void endCatch() {
    _Unwind_Exception* const exception = caught().back();
    caught().pop_back();
    if (exception != nullptr) {
        _Unwind_DeleteException(exception);
    }
}

[[noreturn]] void rethrow() {
    // The handler that is left does not end with the exception then.
    _Unwind_Exception* const exception = caught().back();
    caught().back() = nullptr;
    _Unwind_Resume_or_Rethrow(exception);
    stop(LoadError("an exception that nothing catches"));
}

template <class Function>
const void* addressOf(Function* function) {
    return reinterpret_cast<const void*>(function);
}

}  // namespace

std::span<const Import> exceptionImports() {
    static const std::array kImports = {
        Import{"___objc_personality_v0", addressOf(&emulatorPersonality)},
        Import{"_objc_begin_catch", addressOf(&beginCatch)},
        Import{"_objc_ehtype_vtable", kTypeFunctions.data()},
        Import{"_objc_end_catch", addressOf(&endCatch)},
        Import{"_objc_exception_rethrow", addressOf(&rethrow)},
    };
    return kImports;
}

}  // namespace velmoranth::emulator
