// UIFont on Linux: the names of the phone's own faces, and the installed face that each is drawn
// with.
#pragma once

#include "desktop/text/text.h"
#include "platform/uikit.h"

#include <string>
#include <utility>

namespace velmoranth::desktop {

// +[UIFont systemFontSize], points: the size of a font that is asked for in none, or in less.
inline constexpr double kSystemFontSize = 14;

class DesktopFont final : public platform::Font {
  public:
    explicit DesktopFont(TextStyle style) : style_(std::move(style)) {}

    [[nodiscard]] std::string className() const override { return "UICTFont"; }

    // Family, weight, slant and size are the face's; the rest is a text's own.
    [[nodiscard]] const TextStyle& style() const { return style_; }

  private:
    TextStyle style_;
};

class DesktopFonts final : public platform::Fonts {
  public:
    // Of which system the names are, by its major version: 12 or 13.
    explicit DesktopFonts(int systemVersion = 13) : systemVersion_(systemVersion) {}

    // Names are told apart by case. The system face's private names (".SFUIText-Bold") are the
    // system face on iOS 12 and Times New Roman on iOS 13, as there. A size that no text is drawn
    // at is that of the largest.
    [[nodiscard]] platform::FontRef fontWithNameSize(const platform::NullableString& name,
                                                     double size) override;

  private:
    int systemVersion_;
};

}  // namespace velmoranth::desktop
