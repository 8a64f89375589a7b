// Stand-ins of the home screen's private classes, and of those of other processes that show icons,
// with the methods that the library replaces, in their true types. Each notes its call and answers
// what setAnswer gave it: nil, NO or 0 until then. Variables are given with setVariable.
#pragma once

#import "device/standins/controllers.h"
#import "device/standins/images.h"

@interface SBIcon : StandIn {
    NSString* _leafIdentifier;
    NSString* _nodeIdentifier;
    NSString* _uniqueIdentifier;
}
- (NSString*)leafIdentifier;
- (NSString*)nodeIdentifier;
- (NSString*)uniqueIdentifier;
@end

@interface SBApplicationIcon : SBIcon {
}
- (UIImage*)getUnmaskedIconImage:(int)format;
@end

@interface SBCalendarApplicationIcon : SBApplicationIcon {
}
- (UIImage*)generateIconImageWithInfo:(velmoranth::standins::IconImageInfo)info;
@end

@interface SBHIconImageCache : StandIn {
}
- (UIImage*)imageForIcon:(SBIcon*)icon;
- (UIImage*)unmaskedImageForIcon:(SBIcon*)icon;
@end

@interface SBIconImageView : UIView {
    SBIcon* _icon;
}
- (SBIcon*)icon;
- (UIImage*)contentsImage;
- (UIImage*)darkeningOverlayImage;
@end

@interface SBFolderIconImageView : SBIconImageView {
    UIView* _backgroundView;
}
- (BOOL)isAnimating;
@end

@interface SBHClockApplicationIconImageView : SBIconImageView {
}
+ (UIImage*)generateProcessedMappedIconImageWithName:(NSString*)name
                                           imageInfo:(velmoranth::standins::IconImageInfo)info
                                       includingMask:(BOOL)includingMask;
@end

@interface SBFolderIconImageCache : StandIn {
}
- (UIImage*)gridCellImageForIcon:(SBIcon*)icon;
@end

@interface SBIconView : UIView {
    SBIcon* _icon;
}
- (SBIcon*)icon;
@end

@interface SBIconBadgeView : UIView {
    UIImageView* _backgroundView;
}
+ (CGFloat)_maxTextWidth;
@end

@interface SBIconLabelImage : UIImage {
}
- (id)_initWithCGImage:(CGImageRef)image
                 scale:(CGFloat)scale
           orientation:(NSInteger)orientation
            parameters:(id)parameters
         maxSizeOffset:(CGPoint)offset;
@end

// Inherits what is replaced on it.
@interface SBIconLegibilityLabelView : UIView {
}
@end

@interface SBIconListView : UIView {
    NSArray* _icons;
}
- (NSArray*)icons;
@end

@interface SBDockView : UIView {
    UIView* _backgroundView;
    UIView* _highlightView;
    SBIconListView* _iconListView;
}
- (CGRect)dockListViewFrame;
- (void)setBackgroundView:(UIView*)view;
@end

@interface SBFloatingDockView : UIView {
    UIView* _backgroundView;
    SBIconListView* _userIconListView;
    UIView* _dividerView;
}
- (UIView*)backgroundView;
- (SBIconListView*)userIconListView;
- (UIView*)dividerView;
@end

@interface SBFloatingDockPlatterView : UIView {
    UIView* _backgroundView;
    UIView* _shadowView;
}
@end

@interface SBFloatyFolderView : UIView {
}
- (id)initWithFolder:(id)folder
         orientation:(NSInteger)orientation
             viewMap:(id)viewMap
             context:(id)context;
- (BOOL)_showsTitle;
- (BOOL)_tapToCloseGestureRecognizer:(UIGestureRecognizer*)recognizer shouldReceiveTouch:(id)touch;
@end

@interface SBFolderControllerBackgroundView : UIView {
}
@end

@interface SBFolderBackgroundView : UIView {
    UIView* _blurView;
}
@end

@interface SBIconListPageControl : UIView {
}
- (UIImage*)_iconListIndicatorImage:(BOOL)isCurrent;
- (UIImage*)_searchIndicatorImage:(BOOL)isCurrent;
@end

@interface SBIconController : StandIn {
}
+ (SBIconController*)sharedInstance;
- (void)_closeFolderController:(id)controller
                      animated:(BOOL)animated
                withCompletion:(void (^)(void))completion;
@end

@interface SBSwitcherAppSuggestionBannerView : UIView {
}
- (UIImage*)_iconImageFromAppWithBundleIdentifier:(NSString*)bundleIdentifier
                               withIconImageCache:(id)cache;
@end

@interface SBUISound : StandIn {
}
+ (SBUISound*)soundWithFeedbackEventType:(unsigned long long)type;
@end

@interface WGWidgetInfo : StandIn {
    NSString* _widgetIdentifier;
}
- (NSString*)widgetIdentifier;
- (UIImage*)_queue_iconWithSize:(CGSize)size
                          scale:(CGFloat)scale
        forWidgetWithIdentifier:(NSString*)identifier
                      extension:(id)extension;
@end

@interface UNNotificationIcon : StandIn {
}
- (id)_initWithName:(NSString*)name
                     path:(NSString*)path
    applicationIdentifier:(NSString*)identifier;
@end

@interface PKIconImageCache : StandIn {
}
- (UIImage*)imageForKey:(NSString*)key;
@end

@interface APWUtil : StandIn {
}
+ (UIImage*)iconForBundleIdentifier:(NSString*)identifier;
@end

@interface WeatherImageLoader : StandIn {
}
+ (UIImage*)conditionImageNamed:(NSString*)name style:(NSInteger)style;
@end

@interface UISwitchModernVisualElement : UIView {
}
- (UIImage*)_effectiveThumbImage;
@end

@interface _UIFeedback : StandIn {
}
- (void)play;
- (unsigned int)_effectiveSystemSoundID;
@end
