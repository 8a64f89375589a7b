// UIFont on Linux: the names of the phone's own faces, and the installed face that each is drawn
// with.
#pragma once

#include "desktop/text/text.h"
#include "platform/uikit.h"

#include <string>
#include <utility>

namespace velmoranth::desktop {

class DesktopFont final : public platform::Font {
  public:
    explicit DesktopFont(TextStyle style) : style_(std::move(style)) {}

    [[nodiscard]] std::string className() const override { return "UICTFont"; }

    // Family, weight and size are the face's; the rest is a text's own.
    [[nodiscard]] const TextStyle& style() const { return style_; }

  private:
    TextStyle style_;
};

class DesktopFonts final : public platform::Fonts {
  public:
    [[nodiscard]] platform::FontRef fontWithNameSize(const platform::NullableString& name,
                                                     double size) override;
};

}  // namespace velmoranth::desktop
