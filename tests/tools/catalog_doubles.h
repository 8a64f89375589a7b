// Bundles and catalogs that answer as a test says, and tell what they are asked.
#pragma once

#include "platform/core_ui.h"

#include "record/operations.h"
#include "record/recorder.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tools {

// What a bundle that the platform made keeps.
struct Folder final : platform::Bundle {
    [[nodiscard]] std::string className() const override { return "NSBundle"; }

    [[nodiscard]] platform::NullableString bundleIdentifier() const override { return "a.bundle"; }
};

struct Bundles final : platform::Bundles {
    platform::BundleRef bundleWithPath(const std::string& /*path*/) override {
        return std::make_shared<Folder>();
    }

    bool load(const platform::BundleRef& /*bundle*/) override { return loads; }

    bool loads = true;
};

struct Rendition final : platform::CUINamedImage {
    Rendition(std::string itsName, double itsScale)
        : ownName(std::move(itsName)), ownScale(itsScale) {}

    [[nodiscard]] std::string className() const override { return kind; }

    [[nodiscard]] platform::NullableString name() const override {
        record::tell(*this, record::messageOf("CUINamedImage", "name"));
        return ownName;
    }

    [[nodiscard]] double scale() const override { return ownScale; }

    [[nodiscard]] platform::BitmapImageRef createImageFromPDFRenditionWithScale(
        double asked) override {
        record::tell(*this,
                     record::messageOf("CUINamedImage", "createImageFromPDFRenditionWithScale"),
                     asked);
        return pdf;
    }

    [[nodiscard]] platform::BitmapImageRef image() override {
        record::tell(*this, record::messageOf("CUINamedImage", "image"));
        return bitmap;
    }

    std::string kind = "CUINamedImage";
    std::string ownName;
    double ownScale;
    platform::BitmapImageRef pdf;
    platform::BitmapImageRef bitmap;
};

struct Catalog final : platform::CUICatalog {
    [[nodiscard]] std::string className() const override { return "CUICatalog"; }

    std::vector<std::string> allImageNames() override { return names; }

    platform::ObjectRef imageWithNameScaleFactor(const std::string& name, double factor) override {
        record::tell(*this, record::messageOf("CUICatalog", "imageWithNameScaleFactor"), name,
                     factor);
        return answer(-1, name);
    }

    platform::ObjectRef imageWithNameScaleFactorDeviceIdiom(const std::string& name, double factor,
                                                            long idiom) override {
        record::tell(*this, record::messageOf("CUICatalog", "imageWithNameScaleFactorDeviceIdiom"),
                     name, factor, idiom);
        return answer(idiom, name);
    }

    std::vector<platform::ObjectRef> imagesWithName(const std::string& name) override {
        record::tell(*this, record::messageOf("CUICatalog", "imagesWithName"), name);
        return renditions[name];
    }

    platform::ObjectRef answer(long idiom, const std::string& name) {
        return single.contains({idiom, name}) ? single[{idiom, name}] : nullptr;
    }

    std::vector<std::string> names;
    std::map<std::pair<long, std::string>, platform::ObjectRef>
        single;  // by idiom, -1 for none, and name
    std::map<std::string, std::vector<platform::ObjectRef>> renditions;
};

struct CatalogClass final : platform::CatalogClass {
    platform::OpenedCatalog initWithURL(const platform::ClassRef& cls,
                                        const std::string& /*path*/) override {
        classes.push_back(cls);
        return fromFile;
    }

    platform::CUICatalogRef defaultUICatalogForBundle(const platform::ClassRef& cls,
                                                      const platform::BundleRef&) override {
        classes.push_back(cls);
        return ofBundle;
    }

    platform::OpenedCatalog initWithNameFromBundle(const platform::ClassRef& cls,
                                                   const std::string& /*name*/,
                                                   const platform::BundleRef&) override {
        classes.push_back(cls);
        return named;
    }

    std::vector<platform::ClassRef> classes;
    platform::OpenedCatalog fromFile;
    platform::CUICatalogRef ofBundle;
    platform::OpenedCatalog named;
};

}  // namespace velmoranth::tools
