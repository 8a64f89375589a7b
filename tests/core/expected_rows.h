// The replaced methods as the platform knows them, written down apart from the table under test.
#pragma once

#include "core/hook_table.h"

#include <array>
#include <string>

namespace velmoranth::core {

struct ExpectedRow {
    int number;
    const char* targetClass;
    HookSide side;
    const char* selector;
    HookGate gate;
};

namespace detail {
inline constexpr HookSide kI = HookSide::instanceSide;
inline constexpr HookSide kC = HookSide::classSide;
inline constexpr HookGate kAll = HookGate::always;
inline constexpr HookGate k12 = HookGate::ios12;
inline constexpr HookGate k13 = HookGate::ios13;

// clang-format off: a row a line, however long.
inline constexpr std::array<ExpectedRow, 54> kExpected{{
    {1, "SBIconView", kI, "layoutSubviews", kAll},
    {2, "SBIconImageView", kI, "contentsImage", kAll},
    {3, "SBIconImageView", kI, "darkeningOverlayImage", kAll},
    {4, "SBFloatingDockPlatterView", kI, "layoutSubviews", kAll},
    {5, "SBFloatingDockView", kI, "userIconListView", kAll},
    {6, "SBFloatingDockView", kI, "dividerView", kAll},
    {7, "SBFolderIconImageView", kI, "initWithFrame:", kAll},
    {8, "SBFolderIconImageView", kI, "layoutSubviews", kAll},
    {9, "SBFloatyFolderView", kI, "_showsTitle", kAll},
    {10, "SBFloatyFolderView", kI, "initWithFolder:orientation:viewMap:context:", kAll},
    {11, "SBFloatyFolderView", kI, "_tapToCloseGestureRecognizer:shouldReceiveTouch:", kAll},
    {12, "SBFolderControllerBackgroundView", kI, "initWithFrame:", kAll},
    {13, "SBFolderBackgroundView", kI, "layoutSubviews", kAll},
    {14, "SBFolderIconImageCache", kI, "gridCellImageForIcon:", kAll},
    {15, "SBIconListPageControl", kI, "layoutSubviews", kAll},
    {16, "SBIconListPageControl", kI, "_iconListIndicatorImage:", kAll},
    {17, "SBIconListPageControl", kI, "_searchIndicatorImage:", kAll},
    {18, "SBIconLabelImage", kI, "_initWithCGImage:scale:orientation:parameters:maxSizeOffset:", kAll},
    {19, "SBIconBadgeView", kI, "layoutSubviews", kAll},
    {20, "SBIconBadgeView", kC, "_maxTextWidth", kAll},
    {21, "SBIconLegibilityLabelView", kI, "setHidden:", kAll},
    {22, "SBIconLegibilityLabelView", kI, "isHidden", kAll},
    {23, "SBIconLegibilityLabelView", kI, "alpha", kAll},
    {24, "SBIconLegibilityLabelView", kI, "setAlpha:", kAll},
    {25, "_UIFeedback", kI, "play", kAll},
    {26, "SBUISound", kC, "soundWithFeedbackEventType:", kAll},
    {27, "CUINamedVectorGlyph", kI, "UIImageWithAsset:configuration:flippedHorizontally:", kAll},
    {28, "CUINamedVectorGlyph", kI, "image", kAll},
    {29, "CUINamedImage", kI, "UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage:", kAll},
    {30, "_UIImageContent", kI, "CGImage", kAll},
    {31, "UIImage", kC, "systemImageNamed:", kAll},
    {32, "UIImage", kC, "imageNamed:inBundle:withConfiguration:", kAll},
    {33, "UIImage", kC, "imageNamed:inBundle:compatibleWithTraitCollection:", kAll},
    {34, "UIImage", kC, "imageNamed:inBundle:", kAll},
    {35, "UIImage", kC, "_imageNamed:withTrait:", kAll},
    {36, "UIImage", kC, "imageWithContentsOfCPBitmapFile:flags:", kAll},
    {37, "UIImage", kC, "kitImageNamed:", kAll},
    {38, "UIImage", kC, "_kitImageNamed:withTrait:", kAll},
    {39, "WGWidgetInfo", kI, "_queue_iconWithSize:scale:forWidgetWithIdentifier:extension:", kAll},
    {40, "SBSwitcherAppSuggestionBannerView", kI, "_iconImageFromAppWithBundleIdentifier:withIconImageCache:", kAll},
    {41, "SBCalendarApplicationIcon", kI, "generateIconImageWithInfo:", kAll},
    {42, "SBHClockApplicationIconImageView", kC, "generateProcessedMappedIconImageWithName:imageInfo:includingMask:", kAll},
    {43, "PKIconImageCache", kI, "imageForKey:", kAll},
    {44, "SBHIconImageCache", kI, "imageForIcon:", kAll},
    {45, "SBHIconImageCache", kI, "unmaskedImageForIcon:", kAll},
    {46, "UNNotificationIcon", kI, "_initWithName:path:applicationIdentifier:", kAll},
    {47, "APWUtil", kC, "iconForBundleIdentifier:", kAll},
    {48, "UISwitchModernVisualElement", kI, "_effectiveThumbImage", kAll},
    {49, "WeatherImageLoader", kC, "conditionImageNamed:style:", kAll},
    {50, "UIImage", kC, "_applicationIconImageForBundleIdentifier:format:scale:", k12},
    {51, "SBApplicationIcon", kI, "getUnmaskedIconImage:", k12},
    {52, "SBDockView", kI, "layoutSubviews", k12},
    {53, "UIImage", kC, "_applicationIconImageForBundleIdentifier:format:scale:", k13},
    {54, "SBDockView", kI, "layoutSubviews", k13},
}};
// clang-format on
}  // namespace detail

inline constexpr const std::array<ExpectedRow, 54>& kExpectedRows = detail::kExpected;

// The journal's line for hooking that row's method.
inline std::string hookLine(const ExpectedRow& row) {
    return std::string("MSHookMessageEx ") + (row.side == HookSide::classSide ? "+[" : "-[") +
           row.targetClass + " " + row.selector + "]";
}

}  // namespace velmoranth::core
