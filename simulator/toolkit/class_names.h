// Objects of a class of the platform's, whose name is a part of their type.
#pragma once

#include "platform/objc_runtime.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace velmoranth::simulator {

// Text as an argument of a template.
template <std::size_t Length>
struct ClassName {
    // NOLINTNEXTLINE(google-explicit-constructor): a literal is meant to become one.
    constexpr ClassName(const char (&name)[Length]) { std::copy_n(name, Length, text); }

    char text[Length];
};

// `Base` is what replacements of the class's methods receive.
//     class DockView final : public Named<"SBDockView", desktop::ViewImplementation<…>> { … };
template <ClassName Name, class Base = platform::Object>
class Named : public Base {
  public:
    using Base::Base;

    [[nodiscard]] std::string className() const override { return Name.text; }
};

// One that is nothing but a value.
template <ClassName Name, class Value, class Base = platform::Object>
class ObjectWith final : public Named<Name, Base> {
  public:
    explicit ObjectWith(Value value) : value_(std::move(value)) {}

    [[nodiscard]] const Value& value() const { return value_; }

  private:
    Value value_;
};

}  // namespace velmoranth::simulator
