// Tables of the platform's classes, and what gives a class its methods.
#pragma once

#include "desktop/runtime/runtime.h"
#include "simulator/device.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace velmoranth::simulator {

enum class Systems { both, only12, only13 };

struct ClassRow {
    std::string_view name;
    std::string_view superclass;  // "" for a root
    Systems systems = Systems::both;
};

[[nodiscard]] inline bool isIn(Systems systems, const SystemVersion& system) {
    return systems == Systems::both || (systems == Systems::only12) == (system.major < 13);
}

// Makes the classes of that system known. Each stands after its superclass.
inline void addClasses(std::span<const ClassRow> rows, const SystemVersion& system,
                       desktop::Runtime& runtime) {
    for (const ClassRow& row : rows) {
        if (isIn(row.systems, system)) {
            runtime.addClass(std::string(row.name), std::string(row.superclass));
        }
    }
}

// The std::function of a method that a function or a receiver's member function stands for.
// Arguments are values in a message, however the function takes them.
template <class Function>
struct MethodOf : MethodOf<decltype(&Function::operator())> {};

template <class R, class Function, class Receiver, class... Args>
struct MethodOf<R (Function::*)(Receiver&, Args...) const> {
    using Type = std::function<R(std::remove_const_t<Receiver>&, std::decay_t<Args>...)>;
};

template <class R, class Receiver, class... Args>
struct MemberMethod {
    using Type = std::function<std::decay_t<R>(Receiver&, std::decay_t<Args>...)>;
    using Variable = std::function<platform::ObjectRef(Receiver&)>;
};

template <class R, class Receiver, class... Args>
MemberMethod<R, Receiver, Args...> memberMethod(R (Receiver::*)(Args...));
template <class R, class Receiver, class... Args>
MemberMethod<R, Receiver, Args...> memberMethod(R (Receiver::*)(Args...) const);

// Gives a class that is known its methods, each by its selector: what a function does whose first
// parameter is the receiver, or a member function of the receiver.
//     ClassMethods(runtime, "SBDockView")
//         .add("layoutSubviews", &DockView::placeSubviews)
//         .add("isHigh", [](DockView& dock) { return dock.bounds().size.height > 90; })
class ClassMethods {
  public:
    ClassMethods(desktop::Runtime& runtime, std::string className)
        : runtime_(runtime), className_(std::move(className)) {}

    template <class Function>
    ClassMethods& add(const platform::Selector& selector, Function function) {
        if constexpr (std::is_member_function_pointer_v<Function>) {
            using Method = typename decltype(memberMethod(function))::Type;
            runtime_.addInstanceMethod(className_, selector, Method(function));
        } else {
            using Method = typename MethodOf<Function>::Type;
            runtime_.addInstanceMethod(className_, selector, Method(std::move(function)));
        }
        return *this;
    }

    // Of the class itself: `function` takes the arguments alone.
    template <class Function>
    ClassMethods& addToClass(const platform::Selector& selector, Function function) {
        addClassMethod(selector, std::move(function), &Function::operator());
        return *this;
    }

    // An instance variable that holds an object; `value` is the receiver's member function that
    // reads it.
    template <class Function>
    ClassMethods& addVariable(const std::string& name, Function value) {
        using Variable = typename decltype(memberMethod(value))::Variable;
        runtime_.addInstanceVariable(className_, name, Variable(value));
        return *this;
    }

  private:
    template <class Function, class R, class... Args>
    void addClassMethod(const platform::Selector& selector, Function function,
                        R (Function::*)(Args...) const) {
        runtime_.addClassMethod(className_, selector,
                                std::function<R(platform::Class&, std::decay_t<Args>...)>(
                                    [function = std::move(function)](
                                        platform::Class&, const std::decay_t<Args>&... args) {
                                        return function(args...);
                                    }));
    }

    desktop::Runtime& runtime_;
    std::string className_;
};

}  // namespace velmoranth::simulator
