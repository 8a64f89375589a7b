// For the tests of named images: the eight class methods of UIImage that find an image by name, as
// a table, and a process that has them, replaced.
#pragma once

#include "platform/foundation.h"
#include "platform/objc_runtime.h"
#include "platform/uikit.h"

#include "image_request_fixture.h"

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>

namespace velmoranth::tests {

enum class Shape { named, namedWithTrait, namedInBundle, namedInBundleWith, bitmapFile };

// A replaced class method of UIImage.
struct Method {
    const char* selector;
    Shape shape;
    const char* logLine;
};

inline void PrintTo(const Method& method, std::ostream* stream) {
    *stream << method.selector;
}

inline constexpr Method kSystemImageNamed{"systemImageNamed:", Shape::named,
                                          "VELMORANTH systemImageNamed arg1: %@  Orig: %@"};
inline constexpr Method kWithConfiguration{
    "imageNamed:inBundle:withConfiguration:", Shape::namedInBundleWith,
    "VELMORANTH imageNamed arg1: %@  inBundle: %@  withConfiguration: %@ Orig: %@"};
inline constexpr Method kWithTraitCollection{
    "imageNamed:inBundle:compatibleWithTraitCollection:", Shape::namedInBundleWith,
    "VELMORANTH imageNamed arg1: %@  inBundle: %@  compatibleWithTraitCollection: %@ Orig: %@"};
inline constexpr Method kInBundle{"imageNamed:inBundle:", Shape::namedInBundle,
                                  "VELMORANTH imageNamed arg1: %@  inBundle: %@ Orig: %@"};
inline constexpr Method kImageNamedWithTrait{"_imageNamed:withTrait:", Shape::namedWithTrait,
                                             "VELMORANTH _imageNamed arg1: %@  Orig: %@"};
inline constexpr Method kBitmapFile{"imageWithContentsOfCPBitmapFile:flags:", Shape::bitmapFile,
                                    "VELMORANTH imageWithContentsOfCPBitmapFile arg1: %@ ORIG: %@"};
inline constexpr Method kKitImageNamed{"kitImageNamed:", Shape::named,
                                       "VELMORANTH kitImageNamed arg1: %@ ORIG: %@"};
inline constexpr Method kKitImageNamedWithTrait{
    "_kitImageNamed:withTrait:", Shape::namedWithTrait,
    "VELMORANTH kitImageNamedwithTrait arg1: %@ ORIG: %@"};

inline constexpr std::array kMethods{
    kSystemImageNamed,    kWithConfiguration, kWithTraitCollection, kInBundle,
    kImageNamedWithTrait, kBitmapFile,        kKitImageNamed,       kKitImageNamedWithTrait};
inline constexpr std::array kBundleMethods{kWithConfiguration, kWithTraitCollection, kInBundle};

inline bool hasBundle(const Method& method) {
    return method.shape == Shape::namedInBundle || method.shape == Shape::namedInBundleWith;
}

struct Request {
    platform::NullableString name = "back";
    platform::BundleRef bundle = bundleNamed("com.x.kit");
    platform::ObjectRef extra = std::make_shared<PlainObject>("UITraitCollection");
    int flags = 7;
};

class NamedImages : public ImageProcess {
  protected:
    explicit NamedImages(double versionNumber = kiOS13) {
        device.runtime.addClass("UIImage");
        device.runtime.addClass("AppImage", "UIImage");
        for (const Method& method : kMethods) {
            addPlatformMethod(method);
        }
        install(versionNumber);
    }

    // Sends the message to the class.
    ImageRef send(const Method& method, const Request& request,
                  const std::string& className = "UIImage") {
        desktop::Runtime& runtime = device.runtime;
        switch (method.shape) {
            case Shape::named:
                return runtime.sendToClass<ImageRef>(className, method.selector, request.name);
            case Shape::namedWithTrait:
                return runtime.sendToClass<ImageRef>(className, method.selector, request.name,
                                                     request.extra);
            case Shape::namedInBundle:
                return runtime.sendToClass<ImageRef>(className, method.selector, request.name,
                                                     request.bundle);
            case Shape::namedInBundleWith:
                return runtime.sendToClass<ImageRef>(className, method.selector, request.name,
                                                     request.bundle, request.extra);
            case Shape::bitmapFile:
                return runtime.sendToClass<ImageRef>(className, method.selector, request.name,
                                                     request.flags);
        }
        return nullptr;
    }

    // Sends the message after the answers and the journal are forgotten.
    ImageRef sendAnew(const Method& method, const Request& request) {
        given.clear();
        device.journal.clear();
        return send(method, request);
    }

    // The line that the platform's method writes for a request.
    static std::string call(const Method& method, const Request& request,
                            const std::string& className = "UIImage") {
        std::string line =
            "orig [" + className + " " + method.selector + "] " + textOf(request.name);
        if (hasBundle(method)) {
            line += " " + textOf(request.bundle);
        }
        if (method.shape == Shape::namedWithTrait || method.shape == Shape::namedInBundleWith) {
            line += " " + textOf(request.extra);
        }
        if (method.shape == Shape::bitmapFile) {
            line += " " + std::to_string(request.flags);
        }
        return line;
    }

    // The line that the replacement logs for a request.
    static std::string logLine(const Method& method, const Request& request,
                               const ImageRef& image) {
        Lines texts{textOf(request.name)};
        if (hasBundle(method)) {
            texts.push_back(textOf(request.bundle));
        }
        if (method.shape == Shape::namedInBundleWith) {
            texts.push_back(textOf(request.extra));
        }
        texts.push_back(textOf(image));
        return logged(method.logLine, texts);
    }

    // The look-up that the request ends in where nothing bypasses it.
    static Lookup lookup(const Method& method, const Request& request) {
        const platform::NullableString identifier =
            hasBundle(method) ? platform::bundleIdentifierOf(request.bundle) : std::nullopt;
        return {textOf(request.name), identifier};
    }

    // Expects that the platform answers the request, whatever the switches, and nothing is looked
    // up.
    void expectLeftToPlatform(const Method& method, const Request& request) {
        const std::string orig = call(method, request);
        for (const bool enable : {false, true}) {
            switches(enable, false, true);
            EXPECT_EQ(answeredBy(sendAnew(method, request)), 1) << method.selector;
            EXPECT_EQ(taken(), (Lines{orig, orig})) << method.selector;
            switches(enable, true, true);
            EXPECT_EQ(answeredBy(sendAnew(method, request)), 2) << method.selector;
            EXPECT_EQ(taken(), (Lines{orig, orig, logLine(method, request, given.at(1)), orig}))
                << method.selector;
        }
        EXPECT_FALSE(device.exists(kDumpFolder));
    }

    // Expects that the request goes to that look-up, which finds nothing.
    void expectLookup(const Method& method, const Request& request, const Lookup& wanted) {
        const std::string orig = call(method, request);
        switches(true, false);
        EXPECT_EQ(answeredBy(sendAnew(method, request)), 1) << method.selector;
        EXPECT_EQ(taken(), joined({{orig, orig}, wanted.lines(given.at(1), LookupLogging::off)}))
            << method.selector;
        switches(true, true);
        EXPECT_EQ(answeredBy(sendAnew(method, request)), 2) << method.selector;
        EXPECT_EQ(taken(), joined({{orig, orig, logLine(method, request, given.at(1)), orig},
                                   wanted.lines(given.at(2), LookupLogging::on)}))
            << method.selector;
    }

    void expectLookup(const Method& method, const Request& request) {
        expectLookup(method, request, lookup(method, request));
    }

  private:
    void addPlatformMethod(const Method& method) {
        switch (method.shape) {
            case Shape::named:
                add(method,
                    std::function<ImageRef(platform::Class&, platform::NullableString)>(
                        [this, method](platform::Class& self, platform::NullableString name) {
                            return answer(call(method, {.name = name}, self.name()));
                        }));
                break;
            case Shape::namedWithTrait:
                add(method, std::function<ImageRef(platform::Class&, platform::NullableString,
                                                   platform::ObjectRef)>(
                                [this, method](platform::Class& self, platform::NullableString name,
                                               platform::ObjectRef trait) {
                                    return answer(
                                        call(method, {.name = name, .extra = trait}, self.name()));
                                }));
                break;
            case Shape::namedInBundle:
                add(method, std::function<ImageRef(platform::Class&, platform::NullableString,
                                                   platform::BundleRef)>(
                                [this, method](platform::Class& self, platform::NullableString name,
                                               platform::BundleRef bundle) {
                                    return answer(call(method, {.name = name, .bundle = bundle},
                                                       self.name()));
                                }));
                break;
            case Shape::namedInBundleWith:
                add(method,
                    std::function<ImageRef(platform::Class&, platform::NullableString,
                                           platform::BundleRef, platform::ObjectRef)>(
                        [this, method](platform::Class& self, platform::NullableString name,
                                       platform::BundleRef bundle, platform::ObjectRef extra) {
                            return answer(call(method,
                                               {.name = name, .bundle = bundle, .extra = extra},
                                               self.name()));
                        }));
                break;
            case Shape::bitmapFile:
                add(method,
                    std::function<ImageRef(platform::Class&, platform::NullableString, int)>(
                        [this, method](platform::Class& self, platform::NullableString path,
                                       int flags) {
                            return answer(
                                call(method, {.name = path, .flags = flags}, self.name()));
                        }));
                break;
        }
    }

    template <class... Args>
    void add(const Method& method, std::function<ImageRef(platform::Class&, Args...)> function) {
        device.runtime.addClassMethod("UIImage", method.selector, std::move(function));
    }
};

}  // namespace velmoranth::tests
