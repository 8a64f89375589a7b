// Views that have a class of the platform's and nothing else of their own.
#pragma once

#include "desktop/views/views.h"
#include "simulator/toolkit/class_names.h"

#include <string>
#include <string_view>

namespace velmoranth::simulator {

// A view whose class is a part of its type.
template <ClassName Name, class Base>
using NamedAs = Named<Name, desktop::ViewImplementation<Base>>;

// `Base` is the view class of the platform's interface that replacements of the class receive.
template <class Base>
class NamedViewOf : public desktop::ViewImplementation<Base> {
  public:
    NamedViewOf(std::string_view className, const platform::Rect& frame) : className_(className) {
        this->setNodeFrame(frame);
    }

    [[nodiscard]] std::string className() const override { return className_; }

  private:
    std::string className_;
};

// A view that only groups others.
using NamedView = NamedViewOf<platform::View>;

// An image view of a class of its own: wallpaper, badge background.
class NamedImageView final : public desktop::DesktopImageView {
  public:
    NamedImageView(std::string_view className, const platform::Rect& frame,
                   const platform::ImageRef& image)
        : DesktopImageView(frame), className_(className) {
        setImage(image);
    }

    [[nodiscard]] std::string className() const override { return className_; }

  private:
    std::string className_;
};

}  // namespace velmoranth::simulator
