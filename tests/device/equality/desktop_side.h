// The desktop's side: the engine on the desktop's services, with the platform's methods in the
// desktop's runtime, which answer with the given image.
#pragma once

#include "core/entry_points.h"
#include "desktop/core_ui/bundles.h"
#include "desktop/core_ui/catalogs.h"
#include "desktop/files/device_root.h"
#include "desktop/views/layer.h"
#include "desktop/views/view_node.h"
#include "platform/springboard.h"
#include "simulator/process/recording.h"
#include "tests/support/catalog/car_writer.h"
#include "tests/support/test_device.h"

#include "device/equality/phone_files.h"
#include "device/equality/transcript.h"
#include "record/recorder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::equality {

using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;

inline NullableString textAt(const Step& step, std::size_t index) {
    const Text text = step.texts[index];
    return text == nullptr ? NullableString() : NullableString(text);
}

struct Icon final : platform::SBApplicationIcon {
    explicit Icon(NullableString text) : identifier(std::move(text)) {}

    NullableString identifier;

    [[nodiscard]] std::string className() const override { return "SBApplicationIcon"; }

    [[nodiscard]] NullableString leafIdentifier() const override { return identifier; }

    [[nodiscard]] NullableString nodeIdentifier() const override { return identifier; }

    [[nodiscard]] NullableString uniqueIdentifier() const override { return identifier; }
};

// Nil for a step without an identifier.
inline platform::SBIconRef iconFor(const Step& step) {
    return step.texts[0] == nullptr ? nullptr : std::make_shared<Icon>(step.texts[0]);
}

// A view of the home screen, under its class's name.
template <class Base>
struct HomeScreenView : desktop::ViewImplementation<Base> {
    explicit HomeScreenView(std::string name) : name_(std::move(name)) {}

    [[nodiscard]] std::string className() const override { return name_; }

  private:
    std::string name_;
};

template <class Base>
struct IconHolder final : HomeScreenView<Base> {
    IconHolder(std::string name, platform::SBIconRef icon)
        : HomeScreenView<Base>(std::move(name)), icon_(std::move(icon)) {}

    [[nodiscard]] platform::SBIconRef icon() const override { return icon_; }

  private:
    platform::SBIconRef icon_;
};

template <class Base>
struct PlainObject final : Base {
    explicit PlainObject(std::string name) : name_(std::move(name)) {}

    [[nodiscard]] std::string className() const override { return name_; }

  private:
    std::string name_;
};

struct Feedback final : platform::UIFeedback {
    explicit Feedback(std::uint32_t number) : number_(number) {}

    [[nodiscard]] std::string className() const override { return "_UIFeedback"; }

    [[nodiscard]] std::uint32_t _effectiveSystemSoundID() override { return number_; }

  private:
    std::uint32_t number_;
};

inline std::string shownFrame(const platform::Rect& frame) {
    return shownNumber(frame.origin.x) + " " + shownNumber(frame.origin.y) + " " +
           shownNumber(frame.size.width) + " " + shownNumber(frame.size.height);
}

class DesktopSide final : public Side {
  public:
    explicit DesktopSide(const Scenario& scenario)
        : device_(scenario.device.scale),
          root_(desktop::DeviceRoot::open(device_.hostFolder()).value()),
          bundles_(root_),
          catalogClass_(root_) {
        device_.system.number = scenario.system.coreFoundation;
        device_.system.major = scenario.system.major;
        device_.system.minor = scenario.system.minor;
        device_.idiom.idiom = static_cast<int>(scenario.device.idiom);
        device_.bundles.real = &bundles_;
        device_.catalogClass.real = &catalogClass_;
        device_.audio.namesPlayers = false;
        device_.application.root = device_.application.showRoot("", device_.application.rootView);
        given_ = device_.image(tests::solid(kGivenSide, kGivenSide, {}), kGivenScale);
        addPlatformClasses();
        addMainClass();
        addImageMethods();
        addIconMethods();
        addFileManager();
        addSounds();
        addHomeScreen();
    }

    [[nodiscard]] std::string root() const override { return device_.hostFolder(); }

    void startRecording() override {
        device_.stopRecording();
        recording_ = std::make_unique<simulator::ProcessRecording>();
    }

    [[nodiscard]] record::Record takeRecord() override { return recording_->take(); }

    void load() override {
        writeCatalogs();
        core::registerClasses();
        core::installHooks();
        core::startSettings();
    }

    std::string send(const Step& step) override {
        const auto answer = answers_.find(step.message);
        if (answer == answers_.end()) {
            std::fprintf(stderr, "unknown message %s\n", step.message);
            std::abort();
        }
        answer_ = step.given == Given::image ? given_ : nullptr;
        // What the engine tells sounds is its own doing.
        const record::Frame frame({.kind = record::EntryKind::callback, .message = step.message});
        std::string result = answer->second(step);
        answer_ = given_;
        return result;
    }

    void post(const std::string& name) override { device_.notifications.post(name); }

    void wait(long long milliseconds) override {
        now_ += milliseconds * 1'000'000;
        takeQueued();
        for (bool ran = true; ran;) {
            const auto next =
                std::min_element(waiting_.begin(), waiting_.end(),
                                 [](const auto& a, const auto& b) { return a.first < b.first; });
            ran = next != waiting_.end() && next->first <= now_;
            if (ran) {
                const auto block = next->second;
                waiting_.erase(next);
                block();
            }
        }
    }

    std::vector<std::string> events() override {
        takeQueued();
        std::vector<std::string> all;
        for (const std::string& line : device_.journal.linesWith("warning: ")) {
            // Classes that only other processes have.
            if (line.find("message not found") == std::string::npos &&
                line.find("nil class") == std::string::npos) {
                all.push_back(line);
            }
        }
        device_.journal.clear();
        for (const platform::ViewRef& view : device_.application.rootView->subviews()) {
            all.push_back("over the screen: " + shownView(view));
        }
        return all;
    }

  private:
    using Answer = std::function<std::string(const Step& step)>;

    [[nodiscard]] std::string shownImage(const ImageRef& image) const {
        if (image == nullptr) {
            return kNothing;
        }
        if (image == given_) {
            return kTheGiven;
        }
        return shown({image->size().width, image->size().height, image->scale()});
    }

    [[nodiscard]] std::string shownView(const platform::ViewRef& view) const {
        if (view == nullptr) {
            return kNothing;
        }
        std::string text = view->className() + " at " + shownFrame(view->frame());
        const auto node = std::dynamic_pointer_cast<desktop::ViewNode>(view);
        text += node != nullptr && node->desktopLayer()->appearance.hidden ? " hidden" : "";
        if (const auto imageView = std::dynamic_pointer_cast<platform::ImageView>(view)) {
            text += " with " + shownImage(imageView->image());
        }
        return text;
    }

    // What has come to the main queue since the last time comes due from now on.
    void takeQueued() {
        for (auto& [nanoseconds, block] : std::exchange(device_.libSystem.mainQueue, {})) {
            waiting_.emplace_back(now_ + nanoseconds, block);
        }
    }

    void writeCatalogs() const {
        for (const std::string& file : catalogFiles()) {
            tests::CarWriter car;
            std::map<std::string, std::uint16_t> identifiers;
            for (const CatalogImage& image : catalogImages()) {
                if (image.catalog != file) {
                    continue;
                }
                const auto number = static_cast<std::uint16_t>(identifiers.size() + 1);
                const auto [entry, isNew] = identifiers.emplace(image.name, number);
                if (isNew) {
                    car.facet(image.name, number);
                }
                car.bitmap({.identifier = entry->second,
                            .scale = static_cast<std::uint16_t>(image.scale),
                            .idiom = static_cast<std::uint16_t>(image.idiom),
                            .name = std::string(image.name) + ".png"},
                           tests::CarPixels::pattern(static_cast<std::uint32_t>(image.width),
                                                     static_cast<std::uint32_t>(image.height)));
            }
            const tests::ByteVector bytes = car.build();
            writeFile(root(), file, std::string(bytes.begin(), bytes.end()));
        }
    }

    platform::BundleRef bundleFor(const Step& step, std::size_t index) {
        return step.texts[index] == nullptr
                   ? nullptr
                   : bundles_.bundleWithPath(bundleFolder(step.texts[index]));
    }

    // --- The platform's methods, which answer with the given image
    // --------------------------------

    template <class... Args>
    void imageClassMethod(const char* cls, const char* selector) {
        device_.runtime.addClassMethod(cls, selector,
                                       std::function<ImageRef(platform::Class&, Args...)>(
                                           [this](platform::Class&, Args...) { return answer_; }));
    }

    template <class Receiver, class... Args>
    void imageMethod(const char* cls, const char* selector) {
        device_.runtime.addInstanceMethod(cls, selector,
                                          std::function<ImageRef(Receiver&, Args...)>(
                                              [this](Receiver&, Args...) { return answer_; }));
    }

    template <class Receiver>
    void layoutMethod(const char* cls) {
        device_.runtime.addInstanceMethod(cls, "layoutSubviews",
                                          std::function<void(Receiver&)>([](Receiver&) {}));
    }

    void addPlatformClasses() {
        for (const char* const cls :
             {"UIImage", "SBApplicationIcon", "SBHIconImageCache", "SBIconImageView",
              "PKIconImageCache", "APWUtil", "WeatherImageLoader", "_UIFeedback", "SBUISound",
              "SBIconLegibilityLabelView", "SBIconBadgeView", "SBIconView", "CUICatalog",
              "CUINamedImage"}) {
            device_.runtime.addClass(cls);
        }
        imageClassMethod<NullableString>("UIImage", "systemImageNamed:");
        imageClassMethod<NullableString>("UIImage", "kitImageNamed:");
        imageClassMethod<NullableString, ObjectRef>("UIImage", "_imageNamed:withTrait:");
        imageClassMethod<NullableString, ObjectRef>("UIImage", "_kitImageNamed:withTrait:");
        imageClassMethod<NullableString, platform::BundleRef>("UIImage", "imageNamed:inBundle:");
        imageClassMethod<NullableString, platform::BundleRef, ObjectRef>(
            "UIImage", "imageNamed:inBundle:withConfiguration:");
        imageClassMethod<NullableString, platform::BundleRef, ObjectRef>(
            "UIImage", "imageNamed:inBundle:compatibleWithTraitCollection:");
        imageClassMethod<NullableString, int>("UIImage", "imageWithContentsOfCPBitmapFile:flags:");
        imageClassMethod<NullableString, int, double>(
            "UIImage", "_applicationIconImageForBundleIdentifier:format:scale:");
        imageClassMethod<NullableString>("APWUtil", "iconForBundleIdentifier:");
        imageClassMethod<NullableString, long long>("WeatherImageLoader",
                                                    "conditionImageNamed:style:");
        imageMethod<platform::SBApplicationIcon, int>("SBApplicationIcon", "getUnmaskedIconImage:");
        imageMethod<platform::SBHIconImageCache, platform::SBIconRef>("SBHIconImageCache",
                                                                      "imageForIcon:");
        imageMethod<platform::SBHIconImageCache, platform::SBIconRef>("SBHIconImageCache",
                                                                      "unmaskedImageForIcon:");
        imageMethod<platform::SBIconImageView>("SBIconImageView", "contentsImage");
        imageMethod<platform::PKIconImageCache, NullableString>("PKIconImageCache", "imageForKey:");
        layoutMethod<platform::SBIconView>("SBIconView");
        layoutMethod<platform::SBIconBadgeView>("SBIconBadgeView");
        addSoundClasses();
        addLabels();
    }

    void addSoundClasses() {
        device_.runtime.addInstanceMethod(
            "_UIFeedback", "play",
            std::function<void(platform::UIFeedback&)>([](platform::UIFeedback&) {}));
        device_.runtime.addClassMethod(
            "SBUISound", "soundWithFeedbackEventType:",
            std::function<platform::SBUISoundRef(platform::Class&, std::uint64_t)>(
                [this](platform::Class&, std::uint64_t) { return sound_; }));
    }

    void addLabels() {
        using Label = platform::SBIconLegibilityLabelView;
        device_.runtime.addInstanceMethod(
            "SBIconLegibilityLabelView", "isHidden",
            std::function<bool(Label&)>([](Label&) { return false; }));
        device_.runtime.addInstanceMethod(
            "SBIconLegibilityLabelView", "alpha",
            std::function<double(Label&)>([](Label&) { return 1.0; }));
        device_.runtime.addInstanceVariable(
            "SBIconBadgeView", "_backgroundView",
            std::function<ObjectRef(platform::SBIconBadgeView&)>(
                [this](platform::SBIconBadgeView&) -> ObjectRef { return badgeBackground_; }));
    }

    // --- The messages
    // -----------------------------------------------------------------------------

    template <class R, class... Args>
    R ask(const char* cls, const char* selector, Args... arguments) {
        return device_.runtime.sendToClass<R, Args...>(cls, selector, std::move(arguments)...);
    }

    void addMainClass();

    void addImageMethods();

    void addIconMethods();

    void addFileManager();

    ObjectRef sounds() {
        if (sounds_ == nullptr) {
            sounds_ = ask<ObjectRef>("Sounds", "new");
        }
        return sounds_;
    }

    ObjectRef manager() { return ask<ObjectRef>("VelMoranth", "sharedIconManager"); }

    void addSounds();

    void addHomeScreen();

    static std::string shownObject(const ObjectRef& object) {
        return object == nullptr ? kNothing : object->className();
    }

    tests::TestDevice device_;
    std::unique_ptr<simulator::ProcessRecording> recording_;
    std::shared_ptr<const desktop::DeviceRoot> root_;
    desktop::DesktopBundles bundles_;
    desktop::DesktopCatalogClass catalogClass_;
    ImageRef given_;
    ImageRef answer_;
    ObjectRef sounds_;
    platform::SBUISoundRef sound_ = std::make_shared<PlainObject<platform::SBUISound>>("SBUISound");
    std::shared_ptr<desktop::DesktopImageView> badgeBackground_;
    std::map<std::string, Answer> answers_;
    long long now_ = 0;  // nanoseconds
    std::vector<std::pair<long long, std::function<void()>>> waiting_;
};

}  // namespace velmoranth::equality
