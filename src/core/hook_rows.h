// The rows of the hook table with the types of their replacements, for whoever needs these at
// compile time: the table itself, and those who make of each what the platform installs.
#pragma once

#include "core/hook_table.h"
#include "hooks/images/catalog_image_hooks.h"
#include "hooks/images/drawn_icon_hooks.h"
#include "hooks/images/icon_source_hooks.h"
#include "hooks/images/named_image_hooks.h"
#include "hooks/springboard/dock_hooks.h"
#include "hooks/springboard/folder_hooks.h"
#include "hooks/springboard/icon_view_hooks.h"
#include "hooks/springboard/open_folder_hooks.h"
#include "hooks/springboard/page_control_hooks.h"
#include "sounds/sound_hooks.h"
#include "theme/app_icon_hooks.h"

#include <cstddef>
#include <string_view>
#include <tuple>

namespace velmoranth::core {

template <auto Replacement>
struct TypedRow {
    static constexpr auto kReplacement = Replacement;

    std::string_view targetClass;
    HookSide side;
    std::string_view selector;
    HookGate gate;
};

template <auto Replacement>
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

using hooks::APWUtilHooks;
using hooks::CUINamedImageHooks;
using hooks::CUINamedVectorGlyphHooks;
using hooks::PKIconImageCacheHooks;
using hooks::SBCalendarApplicationIconHooks;
using hooks::SBDockViewHooks;
using hooks::SBFloatingDockPlatterViewHooks;
using hooks::SBFloatingDockViewHooks;
using hooks::SBFloatyFolderViewHooks;
using hooks::SBFolderBackgroundViewHooks;
using hooks::SBFolderControllerBackgroundViewHooks;
using hooks::SBFolderIconImageCacheHooks;
using hooks::SBFolderIconImageViewHooks;
using hooks::SBHClockApplicationIconImageViewHooks;
using hooks::SBIconBadgeViewHooks;
using hooks::SBIconImageViewDarkeningHooks;
using hooks::SBIconLabelImageHooks;
using hooks::SBIconLegibilityLabelViewHooks;
using hooks::SBIconListPageControlHooks;
using hooks::SBIconViewHooks;
using hooks::SBSwitcherAppSuggestionBannerViewHooks;
using hooks::UIImageContentHooks;
using hooks::UIImageHooks;
using hooks::UISwitchModernVisualElementHooks;
using hooks::UNNotificationIconHooks;
using hooks::WeatherImageLoaderHooks;
using hooks::WGWidgetInfoHooks;
using sounds::SBUISoundHooks;
using sounds::UIFeedbackHooks;
using theme::SBApplicationIconHooks;
using theme::SBHIconImageCacheHooks;
using theme::SBIconImageViewHooks;
using theme::UIImageApplicationIconHooks;

}  // namespace detail

// In the order of installation.
// clang-format off: a row a line, however long.
namespace detail {
inline constexpr std::tuple kRows{
    row<&SBIconViewHooks::layoutSubviews>("SBIconView", kInstance, "layoutSubviews", kAlways),
    row<&SBIconImageViewHooks::contentsImage>("SBIconImageView", kInstance, "contentsImage", kAlways),
    row<&SBIconImageViewDarkeningHooks::darkeningOverlayImage>("SBIconImageView", kInstance, "darkeningOverlayImage", kAlways),
    row<&SBFloatingDockPlatterViewHooks::layoutSubviews>("SBFloatingDockPlatterView", kInstance, "layoutSubviews", kAlways),
    row<&SBFloatingDockViewHooks::userIconListView>("SBFloatingDockView", kInstance, "userIconListView", kAlways),
    row<&SBFloatingDockViewHooks::dividerView>("SBFloatingDockView", kInstance, "dividerView", kAlways),
    row<&SBFolderIconImageViewHooks::initWithFrame>("SBFolderIconImageView", kInstance, "initWithFrame:", kAlways),
    row<&SBFolderIconImageViewHooks::layoutSubviews>("SBFolderIconImageView", kInstance, "layoutSubviews", kAlways),
    row<&SBFloatyFolderViewHooks::_showsTitle>("SBFloatyFolderView", kInstance, "_showsTitle", kAlways),
    row<&SBFloatyFolderViewHooks::initWithFolderOrientationViewMapContext>("SBFloatyFolderView", kInstance, "initWithFolder:orientation:viewMap:context:", kAlways),
    row<&SBFloatyFolderViewHooks::_tapToCloseGestureRecognizerShouldReceiveTouch>("SBFloatyFolderView", kInstance, "_tapToCloseGestureRecognizer:shouldReceiveTouch:", kAlways),
    row<&SBFolderControllerBackgroundViewHooks::initWithFrame>("SBFolderControllerBackgroundView", kInstance, "initWithFrame:", kAlways),
    row<&SBFolderBackgroundViewHooks::layoutSubviews>("SBFolderBackgroundView", kInstance, "layoutSubviews", kAlways),
    row<&SBFolderIconImageCacheHooks::gridCellImageForIcon>("SBFolderIconImageCache", kInstance, "gridCellImageForIcon:", kAlways),
    row<&SBIconListPageControlHooks::layoutSubviews>("SBIconListPageControl", kInstance, "layoutSubviews", kAlways),
    row<&SBIconListPageControlHooks::_iconListIndicatorImage>("SBIconListPageControl", kInstance, "_iconListIndicatorImage:", kAlways),
    row<&SBIconListPageControlHooks::_searchIndicatorImage>("SBIconListPageControl", kInstance, "_searchIndicatorImage:", kAlways),
    row<&SBIconLabelImageHooks::_initWithCGImageScaleOrientationParametersMaxSizeOffset>("SBIconLabelImage", kInstance, "_initWithCGImage:scale:orientation:parameters:maxSizeOffset:", kAlways),
    row<&SBIconBadgeViewHooks::layoutSubviews>("SBIconBadgeView", kInstance, "layoutSubviews", kAlways),
    row<&SBIconBadgeViewHooks::_maxTextWidth>("SBIconBadgeView", kClass, "_maxTextWidth", kAlways),
    row<&SBIconLegibilityLabelViewHooks::setHidden>("SBIconLegibilityLabelView", kInstance, "setHidden:", kAlways),
    row<&SBIconLegibilityLabelViewHooks::isHidden>("SBIconLegibilityLabelView", kInstance, "isHidden", kAlways),
    row<&SBIconLegibilityLabelViewHooks::alpha>("SBIconLegibilityLabelView", kInstance, "alpha", kAlways),
    row<&SBIconLegibilityLabelViewHooks::setAlpha>("SBIconLegibilityLabelView", kInstance, "setAlpha:", kAlways),
    row<&UIFeedbackHooks::play>("_UIFeedback", kInstance, "play", kAlways),
    row<&SBUISoundHooks::soundWithFeedbackEventType>("SBUISound", kClass, "soundWithFeedbackEventType:", kAlways),
    row<&CUINamedVectorGlyphHooks::UIImageWithAssetConfigurationFlippedHorizontally>("CUINamedVectorGlyph", kInstance, "UIImageWithAsset:configuration:flippedHorizontally:", kAlways),
    row<&CUINamedVectorGlyphHooks::image>("CUINamedVectorGlyph", kInstance, "image", kAlways),
    row<&CUINamedImageHooks::UIImageWithAssetConfigurationFlippedHorizontallyOptionalVectorImage>("CUINamedImage", kInstance, "UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage:", kAlways),
    row<&UIImageContentHooks::CGImage>("_UIImageContent", kInstance, "CGImage", kAlways),
    row<&UIImageHooks::systemImageNamed>("UIImage", kClass, "systemImageNamed:", kAlways),
    row<&UIImageHooks::imageNamedInBundleWithConfiguration>("UIImage", kClass, "imageNamed:inBundle:withConfiguration:", kAlways),
    row<&UIImageHooks::imageNamedInBundleCompatibleWithTraitCollection>("UIImage", kClass, "imageNamed:inBundle:compatibleWithTraitCollection:", kAlways),
    row<&UIImageHooks::imageNamedInBundle>("UIImage", kClass, "imageNamed:inBundle:", kAlways),
    row<&UIImageHooks::_imageNamedWithTrait>("UIImage", kClass, "_imageNamed:withTrait:", kAlways),
    row<&UIImageHooks::imageWithContentsOfCPBitmapFileFlags>("UIImage", kClass, "imageWithContentsOfCPBitmapFile:flags:", kAlways),
    row<&UIImageHooks::kitImageNamed>("UIImage", kClass, "kitImageNamed:", kAlways),
    row<&UIImageHooks::_kitImageNamedWithTrait>("UIImage", kClass, "_kitImageNamed:withTrait:", kAlways),
    row<&WGWidgetInfoHooks::_queue_iconWithSizeScaleForWidgetWithIdentifierExtension>("WGWidgetInfo", kInstance, "_queue_iconWithSize:scale:forWidgetWithIdentifier:extension:", kAlways),
    row<&SBSwitcherAppSuggestionBannerViewHooks::_iconImageFromAppWithBundleIdentifierWithIconImageCache>("SBSwitcherAppSuggestionBannerView", kInstance, "_iconImageFromAppWithBundleIdentifier:withIconImageCache:", kAlways),
    row<&SBCalendarApplicationIconHooks::generateIconImageWithInfo>("SBCalendarApplicationIcon", kInstance, "generateIconImageWithInfo:", kAlways),
    row<&SBHClockApplicationIconImageViewHooks::generateProcessedMappedIconImageWithNameImageInfoIncludingMask>("SBHClockApplicationIconImageView", kClass, "generateProcessedMappedIconImageWithName:imageInfo:includingMask:", kAlways),
    row<&PKIconImageCacheHooks::imageForKey>("PKIconImageCache", kInstance, "imageForKey:", kAlways),
    row<&SBHIconImageCacheHooks::imageForIcon>("SBHIconImageCache", kInstance, "imageForIcon:", kAlways),
    row<&SBHIconImageCacheHooks::unmaskedImageForIcon>("SBHIconImageCache", kInstance, "unmaskedImageForIcon:", kAlways),
    row<&UNNotificationIconHooks::_initWithNamePathApplicationIdentifier>("UNNotificationIcon", kInstance, "_initWithName:path:applicationIdentifier:", kAlways),
    row<&APWUtilHooks::iconForBundleIdentifier>("APWUtil", kClass, "iconForBundleIdentifier:", kAlways),
    row<&UISwitchModernVisualElementHooks::_effectiveThumbImage>("UISwitchModernVisualElement", kInstance, "_effectiveThumbImage", kAlways),
    row<&WeatherImageLoaderHooks::conditionImageNamedStyle>("WeatherImageLoader", kClass, "conditionImageNamed:style:", kAlways),
    row<&UIImageApplicationIconHooks::_applicationIconImageForBundleIdentifierFormatScaleOniOS12>("UIImage", kClass, "_applicationIconImageForBundleIdentifier:format:scale:", kIos12),
    row<&SBApplicationIconHooks::getUnmaskedIconImage>("SBApplicationIcon", kInstance, "getUnmaskedIconImage:", kIos12),
    row<&SBDockViewHooks::layoutSubviewsOniOS12>("SBDockView", kInstance, "layoutSubviews", kIos12),
    row<&UIImageApplicationIconHooks::_applicationIconImageForBundleIdentifierFormatScaleOniOS13>("UIImage", kClass, "_applicationIconImageForBundleIdentifier:format:scale:", kIos13),
    row<&SBDockViewHooks::layoutSubviewsOniOS13>("SBDockView", kInstance, "layoutSubviews", kIos13),
};
}  // namespace detail

// clang-format on

inline constexpr auto kHookRows = detail::kRows;
inline constexpr std::size_t kHookRowCount = std::tuple_size_v<decltype(detail::kRows)>;
static_assert(kHookRowCount == 54);

}  // namespace velmoranth::core
