// The rows of the hook table with the types of their replacements, for whoever needs these at
// compile time: the table itself, and the device build, which makes a C function of the method's
// true signature for each.
#pragma once

#include "core/hook_table.h"
#include "theme/app_icon_hooks.h"

#include <functional>
#include <tuple>
#include <type_traits>

namespace velmoranth::core {

template <class Replacement>
struct ReplacementTraits;

// A replacement is handed the platform's implementation, the receiver and the arguments.
template <class R, class Receiver, class... Args>
struct ReplacementTraits<R (*)(const OriginalImplementation<R(Receiver&, Args...)>&, Receiver&,
                               Args...)> {
    // The replacement as a method's implementation. `saved` is its row's slot and outlives it.
    template <auto Replacement>
    static platform::Implementation bind(const platform::Implementation& saved) {
        return platform::makeImplementation(
            std::function<R(Receiver&, Args...)>([&saved](Receiver& self, Args... args) -> R {
                return Replacement(OriginalImplementation<R(Receiver&, Args...)>(saved), self,
                                   std::move(args)...);
            }));
    }
};

// `Replacement` is null where none is written yet.
template <auto Replacement>
struct TypedRow {
    std::string_view targetClass;
    HookSide side;
    std::string_view selector;
    HookGate gate;

    // The row as data, with its replacement bound to `row`'s own slot.
    void fill(HookRow& row) const {
        row.targetClass = targetClass;
        row.side = side;
        row.selector = selector;
        row.gate = gate;
        // The type tells: under its sanitizers g++ 12 has no constant comparison with a function.
        if constexpr (!std::is_null_pointer_v<decltype(Replacement)>) {
            row.replacement =
                ReplacementTraits<decltype(Replacement)>::template bind<Replacement>(row.saved);
        }
    }
};

template <auto Replacement = nullptr>
consteval TypedRow<Replacement> row(std::string_view targetClass, HookSide side,
                                    std::string_view selector, HookGate gate) {
    return {targetClass, side, selector, gate};
}

namespace detail {

inline constexpr auto kInstance = HookSide::instanceSide;
inline constexpr auto kClass = HookSide::classSide;
inline constexpr auto kAlways = HookGate::always;
inline constexpr auto kIos12 = HookGate::ios12;
inline constexpr auto kIos13 = HookGate::ios13;

using theme::SBApplicationIconHooks;
using theme::SBHIconImageCacheHooks;
using theme::SBIconImageViewHooks;
using theme::UIImageApplicationIconHooks;

}  // namespace detail

// In the order of installation.
// clang-format off: a row a line, however long.
namespace detail {
inline constexpr std::tuple kRows{
    row("SBIconView", kInstance, "layoutSubviews", kAlways),
    row<&SBIconImageViewHooks::contentsImage>("SBIconImageView", kInstance, "contentsImage", kAlways),
    row("SBIconImageView", kInstance, "darkeningOverlayImage", kAlways),
    row("SBFloatingDockPlatterView", kInstance, "layoutSubviews", kAlways),
    row("SBFloatingDockView", kInstance, "userIconListView", kAlways),
    row("SBFloatingDockView", kInstance, "dividerView", kAlways),
    row("SBFolderIconImageView", kInstance, "initWithFrame:", kAlways),
    row("SBFolderIconImageView", kInstance, "layoutSubviews", kAlways),
    row("SBFloatyFolderView", kInstance, "_showsTitle", kAlways),
    row("SBFloatyFolderView", kInstance, "initWithFolder:orientation:viewMap:context:", kAlways),
    row("SBFloatyFolderView", kInstance, "_tapToCloseGestureRecognizer:shouldReceiveTouch:", kAlways),
    row("SBFolderControllerBackgroundView", kInstance, "initWithFrame:", kAlways),
    row("SBFolderBackgroundView", kInstance, "layoutSubviews", kAlways),
    row("SBFolderIconImageCache", kInstance, "gridCellImageForIcon:", kAlways),
    row("SBIconListPageControl", kInstance, "layoutSubviews", kAlways),
    row("SBIconListPageControl", kInstance, "_iconListIndicatorImage:", kAlways),
    row("SBIconListPageControl", kInstance, "_searchIndicatorImage:", kAlways),
    row("SBIconLabelImage", kInstance, "_initWithCGImage:scale:orientation:parameters:maxSizeOffset:", kAlways),
    row("SBIconBadgeView", kInstance, "layoutSubviews", kAlways),
    row("SBIconBadgeView", kClass, "_maxTextWidth", kAlways),
    row("SBIconLegibilityLabelView", kInstance, "setHidden:", kAlways),
    row("SBIconLegibilityLabelView", kInstance, "isHidden", kAlways),
    row("SBIconLegibilityLabelView", kInstance, "alpha", kAlways),
    row("SBIconLegibilityLabelView", kInstance, "setAlpha:", kAlways),
    row("_UIFeedback", kInstance, "play", kAlways),
    row("SBUISound", kClass, "soundWithFeedbackEventType:", kAlways),
    row("CUINamedVectorGlyph", kInstance, "UIImageWithAsset:configuration:flippedHorizontally:", kAlways),
    row("CUINamedVectorGlyph", kInstance, "image", kAlways),
    row("CUINamedImage", kInstance, "UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage:", kAlways),
    row("_UIImageContent", kInstance, "CGImage", kAlways),
    row("UIImage", kClass, "systemImageNamed:", kAlways),
    row("UIImage", kClass, "imageNamed:inBundle:withConfiguration:", kAlways),
    row("UIImage", kClass, "imageNamed:inBundle:compatibleWithTraitCollection:", kAlways),
    row("UIImage", kClass, "imageNamed:inBundle:", kAlways),
    row("UIImage", kClass, "_imageNamed:withTrait:", kAlways),
    row("UIImage", kClass, "imageWithContentsOfCPBitmapFile:flags:", kAlways),
    row("UIImage", kClass, "kitImageNamed:", kAlways),
    row("UIImage", kClass, "_kitImageNamed:withTrait:", kAlways),
    row("WGWidgetInfo", kInstance, "_queue_iconWithSize:scale:forWidgetWithIdentifier:extension:", kAlways),
    row("SBSwitcherAppSuggestionBannerView", kInstance, "_iconImageFromAppWithBundleIdentifier:withIconImageCache:", kAlways),
    row("SBCalendarApplicationIcon", kInstance, "generateIconImageWithInfo:", kAlways),
    row("SBHClockApplicationIconImageView", kClass, "generateProcessedMappedIconImageWithName:imageInfo:includingMask:", kAlways),
    row("PKIconImageCache", kInstance, "imageForKey:", kAlways),
    row<&SBHIconImageCacheHooks::imageForIcon>("SBHIconImageCache", kInstance, "imageForIcon:", kAlways),
    row<&SBHIconImageCacheHooks::unmaskedImageForIcon>("SBHIconImageCache", kInstance, "unmaskedImageForIcon:", kAlways),
    row("UNNotificationIcon", kInstance, "_initWithName:path:applicationIdentifier:", kAlways),
    row("APWUtil", kClass, "iconForBundleIdentifier:", kAlways),
    row("UISwitchModernVisualElement", kInstance, "_effectiveThumbImage", kAlways),
    row("WeatherImageLoader", kClass, "conditionImageNamed:style:", kAlways),
    row<&UIImageApplicationIconHooks::_applicationIconImageForBundleIdentifierFormatScaleOniOS12>("UIImage", kClass, "_applicationIconImageForBundleIdentifier:format:scale:", kIos12),
    row<&SBApplicationIconHooks::getUnmaskedIconImage>("SBApplicationIcon", kInstance, "getUnmaskedIconImage:", kIos12),
    row("SBDockView", kInstance, "layoutSubviews", kIos12),
    row<&UIImageApplicationIconHooks::_applicationIconImageForBundleIdentifierFormatScaleOniOS13>("UIImage", kClass, "_applicationIconImageForBundleIdentifier:format:scale:", kIos13),
    row("SBDockView", kInstance, "layoutSubviews", kIos13),
};
}  // namespace detail

// clang-format on

inline constexpr auto kHookRows = detail::kRows;
inline constexpr std::size_t kHookRowCount = std::tuple_size_v<decltype(detail::kRows)>;
static_assert(kHookRowCount == 54);

}  // namespace velmoranth::core
