// Objects of a class of the platform's, whose name is a part of their type.
#pragma once

#include "platform/objc_runtime.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace velmoranth::simulator {

// Text as an argument of a template.
template <std::size_t kLength>
struct ClassName {
    // NOLINTNEXTLINE(google-explicit-constructor): a literal is meant to become one.
    constexpr ClassName(const char (&name)[kLength]) { std::copy_n(name, kLength, text); }

    char text[kLength];
};

// `Base` is what replacements of the class's methods receive.
//     class DockView final : public Named<"SBDockView", desktop::ViewImplementation<…>> { … };
template <ClassName kName, class Base = platform::Object>
class Named : public Base {
  public:
    using Base::Base;

    [[nodiscard]] std::string className() const override { return kName.text; }
};

}  // namespace velmoranth::simulator
