// The methods that the library replaces, as these tests expect them: written down apart from the
// library's own table, which is what they test.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace velmoranth::standins {

// In the order of installation; "+" where the class's own methods are replaced.
inline const std::vector<std::string> kAlways = {
    "-[SBIconView layoutSubviews]",
    "-[SBIconImageView contentsImage]",
    "-[SBIconImageView darkeningOverlayImage]",
    "-[SBFloatingDockPlatterView layoutSubviews]",
    "-[SBFloatingDockView userIconListView]",
    "-[SBFloatingDockView dividerView]",
    "-[SBFolderIconImageView initWithFrame:]",
    "-[SBFolderIconImageView layoutSubviews]",
    "-[SBFloatyFolderView _showsTitle]",
    "-[SBFloatyFolderView initWithFolder:orientation:viewMap:context:]",
    "-[SBFloatyFolderView _tapToCloseGestureRecognizer:shouldReceiveTouch:]",
    "-[SBFolderControllerBackgroundView initWithFrame:]",
    "-[SBFolderBackgroundView layoutSubviews]",
    "-[SBFolderIconImageCache gridCellImageForIcon:]",
    "-[SBIconListPageControl layoutSubviews]",
    "-[SBIconListPageControl _iconListIndicatorImage:]",
    "-[SBIconListPageControl _searchIndicatorImage:]",
    "-[SBIconLabelImage _initWithCGImage:scale:orientation:parameters:maxSizeOffset:]",
    "-[SBIconBadgeView layoutSubviews]",
    "+[SBIconBadgeView _maxTextWidth]",
    "-[SBIconLegibilityLabelView setHidden:]",
    "-[SBIconLegibilityLabelView isHidden]",
    "-[SBIconLegibilityLabelView alpha]",
    "-[SBIconLegibilityLabelView setAlpha:]",
    "-[_UIFeedback play]",
    "+[SBUISound soundWithFeedbackEventType:]",
    "-[CUINamedVectorGlyph UIImageWithAsset:configuration:flippedHorizontally:]",
    "-[CUINamedVectorGlyph image]",
    "-[CUINamedImage "
    "UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage:]",
    "-[_UIImageContent CGImage]",
    "+[UIImage systemImageNamed:]",
    "+[UIImage imageNamed:inBundle:withConfiguration:]",
    "+[UIImage imageNamed:inBundle:compatibleWithTraitCollection:]",
    "+[UIImage imageNamed:inBundle:]",
    "+[UIImage _imageNamed:withTrait:]",
    "+[UIImage imageWithContentsOfCPBitmapFile:flags:]",
    "+[UIImage kitImageNamed:]",
    "+[UIImage _kitImageNamed:withTrait:]",
    "-[WGWidgetInfo _queue_iconWithSize:scale:forWidgetWithIdentifier:extension:]",
    "-[SBSwitcherAppSuggestionBannerView "
    "_iconImageFromAppWithBundleIdentifier:withIconImageCache:]",
    "-[SBCalendarApplicationIcon generateIconImageWithInfo:]",
    "+[SBHClockApplicationIconImageView "
    "generateProcessedMappedIconImageWithName:imageInfo:includingMask:]",
    "-[PKIconImageCache imageForKey:]",
    "-[SBHIconImageCache imageForIcon:]",
    "-[SBHIconImageCache unmaskedImageForIcon:]",
    "-[UNNotificationIcon _initWithName:path:applicationIdentifier:]",
    "+[APWUtil iconForBundleIdentifier:]",
    "-[UISwitchModernVisualElement _effectiveThumbImage]",
    "+[WeatherImageLoader conditionImageNamed:style:]",
};

inline const std::vector<std::string> kOniOS12 = {
    "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:]",
    "-[SBApplicationIcon getUnmaskedIconImage:]",
    "-[SBDockView layoutSubviews]",
};

inline const std::vector<std::string> kOniOS13 = {
    "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:]",
    "-[SBDockView layoutSubviews]",
};

// How many of the first are the home screen's; the others are those of images and icons.
inline constexpr std::size_t kHomeScreenMethods = 26;

}  // namespace velmoranth::standins
