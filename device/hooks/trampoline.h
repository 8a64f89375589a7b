// A C function of the true signature for each row of the hook table, made from the row's types. It
// wraps the receiver and the arguments, runs the engine's replacement, which may call the
// platform's implementation through it, and hands the result over as the caller expects it.
#pragma once

#include "core/hook_rows.h"

#include "device/hooks/arguments.h"
#include <objc/runtime.h>

#include <cstddef>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace velmoranth::device {

// Whether a method of that name consumes its receiver and gives a reference to its result: the
// family of init, underscores before it not counted.
[[nodiscard]] constexpr bool isInitializer(std::string_view selector) {
    while (selector.starts_with('_')) {
        selector.remove_prefix(1);
    }
    constexpr std::string_view kInit = "init";
    return selector.starts_with(kInit) &&
           (selector.size() == kInit.size() || selector[kInit.size()] < 'a' ||
            selector[kInit.size()] > 'z');
}

// The receiver of a call, without a reference of its own. So there is nothing to do at the end.
template <class Receiver>
class ReceiverHandle {
  public:
    explicit ReceiverHandle(id self) : handle_(self, Hold::borrow) {}

    ReceiverHandle(const ReceiverHandle&) = delete;
    ReceiverHandle& operator=(const ReceiverHandle&) = delete;

    ~ReceiverHandle() {}

    Receiver& get() { return handle_; }

  private:
    union {
        HandleFor<Receiver> handle_;
    };
};

template <>
class ReceiverHandle<platform::Class> {
  public:
    // Class sides are called with the class or a subclass of it.
    explicit ReceiverHandle(id self) : cls_(*wrapClass(static_cast<Class>(self))) {}

    platform::Class& get() { return cls_; }

  private:
    platform::Class& cls_;
};

// A reference to the receiver for an initialiser to take. An initialiser that raises has not taken
// it.
class ReferenceToGive {
  public:
    explicit ReferenceToGive(id object) : object_([object retain]) {}

    ReferenceToGive(const ReferenceToGive&) = delete;
    ReferenceToGive& operator=(const ReferenceToGive&) = delete;

    ~ReferenceToGive() { [object_ release]; }

    void given() { object_ = nil; }

  private:
    id object_;
};

// A result of the platform's as the engine sees it.
template <class R>
struct PlatformResult {
    R of(typename Argument<R>::Native native) { return Argument<R>::fromNative(native); }
};

// A replacement asks the platform several times as a rule and is given the same object: one handle
// serves all of them.
template <class T>
class PlatformResult<std::shared_ptr<T>> {
  public:
    using Native = typename Argument<std::shared_ptr<T>>::Native;

    std::shared_ptr<T> of(Native native) {
        if (native == nullptr) {
            return nullptr;
        }
        if (last_ == nullptr || native != native_) {
            last_ = Argument<std::shared_ptr<T>>::fromNative(native);
            native_ = native;
        }
        return last_;
    }

  private:
    std::shared_ptr<T> last_;
    Native native_ = nullptr;
};

template <>
struct PlatformResult<void> {};

// A result that no caller owns: an object lives as long as the caller's pool.
template <class R>
typename Argument<R>::Native handOver(const R& result) {
    using NativeResult = typename Argument<R>::Native;
    if constexpr (std::is_same_v<NativeResult, id>) {
        return [[Argument<R>::toNative(result, nil) retain] autorelease];
    } else if constexpr (std::is_same_v<R, platform::BitmapImageRef>) {
        return autoreleased(result);
    } else {
        return Argument<R>::toNative(result, NativeResult{});
    }
}

// A function of any signature as the runtime keeps it, and back.
template <class Function>
IMP implementationOf(Function function) {
    return reinterpret_cast<IMP>(reinterpret_cast<void (*)()>(function));
}

template <class Function>
Function functionOf(IMP implementation) {
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(implementation));
}

template <std::size_t Row, class Signature>
struct TypedTrampoline;

template <std::size_t Row, class R, class Receiver, class... Args>
struct TypedTrampoline<Row, R(Receiver&, Args...)> {
    static constexpr auto& kRow = std::get<Row>(core::kHookRows);
    static constexpr auto kReplacement = std::decay_t<decltype(kRow)>::kReplacement;
    static constexpr bool kIsInitializer = isInitializer(kRow.selector);

    template <class T>
    using Native = typename Argument<T>::Native;

    template <class T>
    struct ResultOf {
        using Type = Native<T>;
    };

    template <class T>
        requires std::is_void_v<T>
    struct ResultOf<T> {
        using Type = void;
    };

    using NativeResult = typename ResultOf<R>::Type;
    using Function = NativeResult (*)(id, SEL, Native<Args>...);
    using Original = core::OriginalImplementation<R(Receiver&, Args...)>;

    // What a call of the platform's implementation needs beside what the engine hands in.
    struct Call {
        const Receiver* receiver;
        id self;  // the receiver's
        SEL selector;
        std::tuple<Native<Args>...> given;
        [[no_unique_address]] mutable PlatformResult<R> result = {};
    };

    // The platform's implementation; filled by the installation.
    static inline IMP slot = nullptr;

    static R callOriginal(const void* opaque, Receiver& self, const Args&... args) {
        const Call& call = *static_cast<const Call*>(opaque);
        const auto function = functionOf<Function>(slot);
        if (function == nullptr) {
            return R();
        }
        const id receiver = receiverOf(call, self);
        if constexpr (std::is_void_v<R>) {
            send(function, call, receiver, args...);
        } else if constexpr (kIsInitializer) {
            // The platform's takes a reference to the receiver each time, and gives one.
            ReferenceToGive reference(receiver);
            const id result = send(function, call, receiver, args...);
            reference.given();
            return wrap<typename R::element_type>(result, Hold::adopt);
        } else {
            return call.result.of(send(function, call, receiver, args...));
        }
    }

    // The result is not made into a handle.
    static bool originalGivesObject(const void* opaque, Receiver& self, const Args&... args) {
        const Call& call = *static_cast<const Call*>(opaque);
        const auto function = functionOf<Function>(slot);
        return function != nullptr &&
               send(function, call, receiverOf(call, self), args...) != nullptr;
    }

    static NativeResult send(Function function, const Call& call, id receiver,
                             const Args&... args) {
        return std::apply(
            [&](const Native<Args>&... given) {
                return function(receiver, call.selector, Argument<Args>::toNative(args, given)...);
            },
            call.given);
    }

    static id receiverOf(const Call& call, const Receiver& self) {
        return &self == call.receiver ? call.self : static_cast<id>(self.native());
    }

    // Only for a result that may be dropped: an initialiser's has to be released.
    static constexpr typename Original::DirectTest testOf() {
        if constexpr (std::is_pointer_v<NativeResult> && !kIsInitializer) {
            return &originalGivesObject;
        } else {
            return nullptr;
        }
    }

    // The method's implementation as the runtime calls it.
    static NativeResult entry(id self, SEL selector, Native<Args>... args) {
        ReceiverHandle<Receiver> receiver(self);
        const Call call{&receiver.get(), self, selector, {args...}};
        const Original original(&callOriginal, testOf(), &call);
        if constexpr (std::is_void_v<R>) {
            kReplacement(original, receiver.get(), Argument<Args>::fromNative(args)...);
        } else if constexpr (kIsInitializer) {
            const R result =
                kReplacement(original, receiver.get(), Argument<Args>::fromNative(args)...);
            const id object = [nativeOf(result) retain];
            [self release];  // the caller's reference, which an initialiser takes
            return object;
        } else {
            return handOver(
                kReplacement(original, receiver.get(), Argument<Args>::fromNative(args)...));
        }
    }
};

}  // namespace velmoranth::device
