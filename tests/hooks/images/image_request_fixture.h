// For the tests of the replacements of image sources: a process whose platform methods write their
// calls into the journal ("orig [UIImage kitImageNamed:] back") and answer each with an image of
// its own, so that a test sees which call's answer went where; and the lines that a look-up for
// that request writes.
#pragma once

#include "platform/foundation.h"
#include "platform/platform.h"
#include "platform/uikit.h"
#include "tests/hooks/springboard/springboard_fixture.h"
#include "tests/support/replaced_services.h"
#include "tests/theme/lookup_lines.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests {

struct NamedBundle final : platform::Bundle {
    explicit NamedBundle(platform::NullableString bundleIdentifier)
        : identifier(std::move(bundleIdentifier)) {}

    platform::NullableString identifier;
    mutable int questions = 0;  // for the identifier

    [[nodiscard]] std::string className() const override { return "NSBundle"; }

    [[nodiscard]] platform::NullableString bundleIdentifier() const override {
        ++questions;
        return identifier;
    }
};

[[nodiscard]] inline platform::BundleRef bundleNamed(platform::NullableString identifier) {
    return std::make_shared<NamedBundle>(std::move(identifier));
}

// An object of which nothing is known but its class.
struct PlainObject final : platform::Object {
    explicit PlainObject(std::string objectClass) : name(std::move(objectClass)) {}

    std::string name;

    [[nodiscard]] std::string className() const override { return name; }
};

// An image that has no bitmap, as one of filters.
struct UnrenderedImage final : platform::Image {
    [[nodiscard]] std::string className() const override { return "UIImage"; }

    [[nodiscard]] platform::Size size() const override { return {1, 1}; }

    [[nodiscard]] double scale() const override { return 1; }

    [[nodiscard]] platform::BitmapImageRef bitmap() const override { return nullptr; }

    [[nodiscard]] bool hasCIImage() const override { return true; }
};

// The process's images, except where a test says what a call gives.
class ScriptedImages final : public platform::Images {
  public:
    explicit ScriptedImages(platform::Images& process) : process_(process) {}

    std::function<platform::ImageRef(const std::string& path)> load;
    std::function<platform::ImageRef(const platform::BitmapImageRef& bitmap)> wrap;

    platform::ImageRef imageWithContentsOfFile(const std::string& path) override {
        return load ? load(path) : process_.imageWithContentsOfFile(path);
    }

    platform::ImageRef imageWithCGImage(const platform::BitmapImageRef& bitmap) override {
        return wrap ? wrap(bitmap) : process_.imageWithCGImage(bitmap);
    }

    void drawInRect(const platform::ImageRef& image, const platform::Rect& rect) override {
        process_.drawInRect(image, rect);
    }

    std::optional<platform::Data> pngRepresentation(const platform::ImageRef& image) override {
        return process_.pngRepresentation(image);
    }

    platform::ImageRef applicationIconImageForBundleIdentifierFormatScale(
        const platform::NullableString& bundleIdentifier, int format, double scale) override {
        return process_.applicationIconImageForBundleIdentifierFormatScale(bundleIdentifier, format,
                                                                           scale);
    }

  private:
    platform::Images& process_;
};

[[nodiscard]] inline std::string textOf(const platform::NullableString& string) {
    return string.value_or("(null)");
}

template <class T>
[[nodiscard]] std::string textOf(const std::shared_ptr<T>& object) {
    return object == nullptr ? "(null)" : object->description();
}

// A log line, with the texts in place of its "%@" in order.
[[nodiscard]] inline std::string logged(const std::string& format, const Lines& texts) {
    std::string line = "log ";
    std::size_t next = 0;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format.compare(i, 2, "%@") == 0) {
            line += texts.at(next++);
            ++i;
        } else {
            line += format[i];
        }
    }
    EXPECT_EQ(next, texts.size()) << format;
    return line;
}

inline constexpr const char* kDictHasImg = "log VELMORANTH WeatherImageLoader Dict HasImg";
inline constexpr const char* kDumpFolder = "/var/mobile/Library/VelmoranthImageDump";

enum class LookupLogging { off, on };
enum class LookupResult { miss, found };

// What a look-up in the active theme A writes. One that finds its image finds it as "@3x.png".
struct Lookup {
    std::string name;
    std::optional<std::string> bundle;  // nothing: among the loose images

    [[nodiscard]] Lines lines(const platform::ImageRef& original, LookupLogging logging,
                              LookupResult result = LookupResult::miss) const {
        Lines lines{kReadPreferences};
        const bool logs = logging == LookupLogging::on;
        if (logs) {
            lines.push_back(logged(
                bundle ? "VelmoranthImageLoader loadUIImage %@   fromBundle: %@     ForOrigImg: %@ "
                       : "VelmoranthImageLoader loadUIImage %@ ForOrigImg: %@ ",
                bundle ? Lines{name, *bundle, textOf(original)} : Lines{name, textOf(original)}));
        }
        lines.emplace_back(kReadPreferences);
        if (logs && bundle) {
            const platform::Size size = platform::sizeOf(original);
            lines.push_back(
                logged("VELMORANTH LOAD IMAGE: %@ BUNDLEID: %@ Image Width: %@ Image Height: %@",
                       {name, *bundle, std::to_string(size.width), std::to_string(size.height)}));
        }
        const std::string base = "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/" +
                                 (bundle ? "Bundles/" + *bundle : "UIImages") + "/" + name;
        lines.push_back(base + "@3x.png");
        if (result == LookupResult::miss) {
            if (!bundle) {
                lines.push_back(base + "@2x.png");
            }
            lines.push_back(base + ".png");
            lines.push_back(base);
        } else if (logs) {
            lines.push_back(
                bundle ? logged("Velmoranth found bundle @3x image: %@ in theme: A fromBundle: %@",
                                {name, *bundle})
                       : logged("VelmoranthImageDump @3x found image %@ in theme: A ", {name}));
        }
        return lines;
    }

    // Where the theme A has the image.
    [[nodiscard]] std::string file() const {
        return "A/" + (bundle ? "Bundles/" + *bundle : "UIImages") + "/" + name + "@3x.png";
    }

    // Where a dump of the platform's image lands.
    [[nodiscard]] std::string dump() const {
        return kDumpFolder + std::string(bundle ? "/Bundles/" + *bundle : "/UIImages") + "/" +
               name + "@3x.png";
    }
};

class ImageProcess : public SpringBoardProcess {
  protected:
    // Writes the call of a platform method with its receiver and arguments, and gives an image of
    // its own for it; nil where a test says so.
    ImageRef answer(const std::string& call) {
        device.journal.write(call);
        if (whenCalled) {
            whenCalled(given.size());
        }
        const bool isNil = isNilAnswer && isNilAnswer(given.size());
        given.push_back(isNil ? nullptr : device.image(solid(6, 9, kGreen)));
        return given.back();
    }

    // The number of the call of a platform's method that gave the image, -1 when none did.
    [[nodiscard]] int answeredBy(const ImageRef& image) const {
        const auto found = std::find(given.begin(), given.end(), image);
        return image == nullptr || found == given.end() ? -1
                                                        : static_cast<int>(found - given.begin());
    }

    // What a journal of requests holds since the last time, without the questions to the object
    // runtime.
    Lines steps() {
        Lines lines = taken();
        std::erase_if(lines, [](const std::string& line) {
            return line.starts_with("objc_getClass ") ||
                   line.starts_with("-[NSObject isKindOfClass:] ") ||
                   line.starts_with("class_getInstanceVariable ");
        });
        return lines;
    }

    // Theme A, and these switches.
    void switches(bool enable, bool enableLogging, bool enableImageDump = false) {
        settings({"A"}, {{"enable", enable},
                         {"enableLogging", enableLogging},
                         {"enableImageDump", enableImageDump}});
    }

    // The answers of the platform's methods by call.
    std::vector<ImageRef> given;
    std::function<bool(std::size_t call)> isNilAnswer;
    // Runs inside a platform's method.
    std::function<void(std::size_t call)> whenCalled;
};

}  // namespace velmoranth::tests
