// The platform's own methods behind the replacements that are asked on several threads: each
// answers with one image, whatever it is asked.
#pragma once

#include "desktop/runtime/runtime.h"
#include "tests/threads/request_objects.h"

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <utility>

namespace velmoranth::tests::request_objects {

inline constexpr const char* kWidget =
    "_queue_iconWithSize:scale:forWidgetWithIdentifier:extension:";
inline constexpr const char* kBanner = "_iconImageFromAppWithBundleIdentifier:withIconImageCache:";
inline constexpr const char* kNotification = "_initWithName:path:applicationIdentifier:";
inline constexpr const char* kFromAsset = "UIImageWithAsset:configuration:flippedHorizontally:";
inline constexpr const char* kFromAssetAndVector =
    "UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage:";
inline constexpr const char* kClock =
    "generateProcessedMappedIconImageWithName:imageInfo:includingMask:";

class PlatformMethods {
  public:
    explicit PlatformMethods(platform::ImageRef image) : image_(std::move(image)) {}

    // Makes the classes known, with their methods and variables. Lives as long as the runtime.
    void addTo(desktop::Runtime& runtime) {
        runtime_ = &runtime;
        addAll();
    }

    // So many threads meet in the first method that each of them calls, and go on together: what a
    // replacement does next it does on all of them, and none has seen what another has done.
    void letMeet(int threads) { meeting_ = threads; }

    // How often one has run.
    [[nodiscard]] int calls() const { return calls_; }

  private:
    using ImageRef = platform::ImageRef;
    using Class = platform::Class;

    ImageRef answer() {
        calls_.fetch_add(1, std::memory_order_relaxed);
        // Later calls must not put the threads' steps in an order.
        if (arrived_.load(std::memory_order_relaxed) < meeting_) {
            arrived_.fetch_add(1);
            while (arrived_.load() < meeting_) {
                std::this_thread::yield();
            }
        }
        // A handle of its own: counting the users of one would put the threads' steps in an order.
        return {image_.get(), [](platform::Image*) {}};
    }

    // A method of the platform's that answers with its image whatever it is asked.
    template <class Receiver, class... Args>
    void addImageMethod(const std::string& className, const std::string& selector) {
        runtime_->addClass(className);
        runtime_->addInstanceMethod(className, selector,
                                    std::function<ImageRef(Receiver&, Args...)>(
                                        [this](Receiver&, const Args&...) { return answer(); }));
    }

    template <class... Args>
    void addImageClassMethod(const std::string& className, const std::string& selector) {
        runtime_->addClass(className);
        runtime_->addClassMethod(className, selector,
                                 std::function<ImageRef(Class&, Args...)>(
                                     [this](Class&, const Args&...) { return answer(); }));
    }

    template <class Receiver>
    void addBitmapMethod(const std::string& className, const std::string& selector) {
        runtime_->addInstanceMethod(className, selector,
                                    std::function<BitmapImageRef(Receiver&)>([this](Receiver&) {
                                        return platform::bitmapOf(answer());
                                    }));
    }

    void addAll() {
        using namespace platform;  // NOLINT(google-build-using-namespace): the classes' names
        addImageClassMethod<NullableString, int, double>(
            "UIImage", "_applicationIconImageForBundleIdentifier:format:scale:");
        addImageMethod<SBApplicationIcon, int>("SBApplicationIcon", "getUnmaskedIconImage:");
        addImageMethod<SBHIconImageCache, SBIconRef>("SBHIconImageCache", "imageForIcon:");
        addImageMethod<SBHIconImageCache, SBIconRef>("SBHIconImageCache", "unmaskedImageForIcon:");
        addImageMethod<SBIconImageView>("SBIconImageView", "contentsImage");
        addImageMethod<SBFolderIconImageCache, SBIconRef>("SBFolderIconImageCache",
                                                          "gridCellImageForIcon:");
        addImageMethod<WGWidgetInfo, Size, double, NullableString, ObjectRef>("WGWidgetInfo",
                                                                              kWidget);
        addImageMethod<SBSwitcherAppSuggestionBannerView, NullableString, ObjectRef>(
            "SBSwitcherAppSuggestionBannerView", kBanner);
        addImageMethod<PKIconImageCache, NullableString>("PKIconImageCache", "imageForKey:");
        addImageMethod<UNNotificationIcon, NullableString, NullableString, NullableString>(
            "UNNotificationIcon", kNotification);
        addImageClassMethod<NullableString>("APWUtil", "iconForBundleIdentifier:");
        addImageMethod<UISwitchModernVisualElement>("UISwitchModernVisualElement",
                                                    "_effectiveThumbImage");
        addImageClassMethod<NullableString, long long>("WeatherImageLoader",
                                                       "conditionImageNamed:style:");
        addImageClassMethod<NullableString>("UIImage", "systemImageNamed:");
        addImageClassMethod<NullableString, BundleRef>("UIImage", "imageNamed:inBundle:");
        for (const char* const selector : {"imageNamed:inBundle:withConfiguration:",
                                           "imageNamed:inBundle:compatibleWithTraitCollection:"}) {
            addImageClassMethod<NullableString, BundleRef, ObjectRef>("UIImage", selector);
        }
        for (const char* const selector : {"_imageNamed:withTrait:", "_kitImageNamed:withTrait:"}) {
            addImageClassMethod<NullableString, ObjectRef>("UIImage", selector);
        }
        addImageClassMethod<NullableString>("UIImage", "kitImageNamed:");
        addImageClassMethod<NullableString, int>("UIImage",
                                                 "imageWithContentsOfCPBitmapFile:flags:");
        addImageMethod<CUINamedVectorGlyph, ObjectRef, ObjectRef, bool>("CUINamedVectorGlyph",
                                                                        kFromAsset);
        addBitmapMethod<CUINamedVectorGlyph>("CUINamedVectorGlyph", "image");
        addImageMethod<CUINamedImage, ObjectRef, ObjectRef, bool, ObjectRef>("CUINamedImage",
                                                                             kFromAssetAndVector);
        runtime_->addClass("_UIImageContent");
        addBitmapMethod<UIImageContent>("_UIImageContent", "CGImage");
        for (const char* const name : {"UIImageAsset", "CUICatalog", "NSBundle"}) {
            runtime_->addClass(name);
        }
        const auto kept = [](Keeper& keeper) { return keeper.kept; };
        runtime_->addInstanceVariable<Keeper>("UIImageAsset", "_containingBundle", kept);
        runtime_->addInstanceVariable<Keeper>("CUICatalog", "_bundle", kept);
        runtime_->addInstanceVariable<Glyph>("CUINamedVectorGlyph", "_catalog",
                                             [](Glyph& glyph) { return glyph.catalog; });
        addImageMethod<SBCalendarApplicationIcon, SBIconImageInfo>("SBCalendarApplicationIcon",
                                                                   "generateIconImageWithInfo:");
        addImageClassMethod<NullableString, SBIconImageInfo, bool>(
            "SBHClockApplicationIconImageView", kClock);
    }

    desktop::Runtime* runtime_ = nullptr;
    platform::ImageRef image_;
    std::atomic<int> calls_ = 0;
    std::atomic<int> arrived_ = 0;
    int meeting_ = 0;
};

}  // namespace velmoranth::tests::request_objects
