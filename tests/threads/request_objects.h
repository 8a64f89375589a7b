// What the platform hands to the replacements that are asked on several threads: objects that say
// no more than they must, and nothing that changes.
#pragma once

#include "desktop/views/view_node.h"
#include "platform/core_ui.h"
#include "platform/springboard.h"
#include "platform/uikit.h"
#include "tests/support/home_screen_icon.h"

#include <memory>
#include <string>
#include <utility>

namespace velmoranth::tests::request_objects {

using platform::BitmapImageRef;
using platform::NullableString;
using platform::ObjectRef;
using platform::SBIconRef;

// An object of a class, of which nothing else is asked.
template <class Base>
struct Plain : Base {
    explicit Plain(std::string objectClass) : name(std::move(objectClass)) {}

    std::string name;

    [[nodiscard]] std::string className() const override { return name; }
};

struct Widget final : Plain<platform::WGWidgetInfo> {
    explicit Widget(NullableString known) : Plain("WGWidgetInfo"), identifier(std::move(known)) {}

    NullableString identifier;

    [[nodiscard]] NullableString widgetIdentifier() const override { return identifier; }
};

struct NotificationIcon final : Plain<platform::UNNotificationIcon> {
    NotificationIcon() : Plain("UNNotificationIcon") {}

    [[nodiscard]] platform::Size size() const override { return {}; }

    [[nodiscard]] double scale() const override { return 1; }

    [[nodiscard]] BitmapImageRef bitmap() const override { return nullptr; }

    [[nodiscard]] bool hasCIImage() const override { return false; }
};

struct Bundle final : Plain<platform::Bundle> {
    Bundle() : Plain("NSBundle") {}

    [[nodiscard]] NullableString bundleIdentifier() const override { return "com.x.kit"; }
};

// Keeps an object in a variable of the platform's.
struct Keeper final : Plain<platform::Object> {
    Keeper(std::string objectClass, ObjectRef object)
        : Plain(std::move(objectClass)), kept(std::move(object)) {}

    ObjectRef kept;
};

struct Glyph final : Plain<platform::CUINamedVectorGlyph> {
    explicit Glyph(ObjectRef itsCatalog)
        : Plain("CUINamedVectorGlyph"), catalog(std::move(itsCatalog)) {}

    ObjectRef catalog;

    [[nodiscard]] NullableString name() const override { return "glyph"; }
};

struct CatalogImage final : Plain<platform::CUINamedImage> {
    CatalogImage() : Plain("CUINamedImage") {}

    [[nodiscard]] NullableString name() const override { return "catalogued"; }

    [[nodiscard]] double scale() const override { return 1; }

    [[nodiscard]] BitmapImageRef createImageFromPDFRenditionWithScale(double) override {
        return nullptr;
    }

    [[nodiscard]] BitmapImageRef image() override { return nullptr; }
};

struct Content final : Plain<platform::UIImageContent> {
    explicit Content(platform::CUINamedVectorGlyphRef itsGlyph)
        : Plain("_UIImageContent"), glyph(std::move(itsGlyph)) {}

    platform::CUINamedVectorGlyphRef glyph;

    [[nodiscard]] platform::CUINamedVectorGlyphRef vectorGlyph() const override { return glyph; }
};

template <class Base>
struct PlainView final : desktop::ViewImplementation<Base> {
    explicit PlainView(std::string objectClass) : name(std::move(objectClass)) {}

    std::string name;

    [[nodiscard]] std::string className() const override { return name; }
};

struct IconImageView final : desktop::ViewImplementation<platform::SBIconImageView> {
    SBIconRef shown;

    [[nodiscard]] std::string className() const override { return "SBIconImageView"; }

    [[nodiscard]] SBIconRef icon() const override { return shown; }
};

struct CalendarIcon final : Plain<platform::SBCalendarApplicationIcon> {
    CalendarIcon() : Plain("SBCalendarApplicationIcon") {}

    [[nodiscard]] NullableString leafIdentifier() const override { return "com.apple.mobilecal"; }

    [[nodiscard]] NullableString nodeIdentifier() const override { return "com.apple.mobilecal"; }

    [[nodiscard]] NullableString uniqueIdentifier() const override { return "com.apple.mobilecal"; }
};

[[nodiscard]] inline SBIconRef iconNamed(const std::string& identifier) {
    auto icon = std::make_shared<HomeScreenIcon>();
    icon->leaf = icon->node = icon->unique = identifier;
    return icon;
}

}  // namespace velmoranth::tests::request_objects
