// The home screen's private classes, and those of other processes that show icons, as far as the
// library calls them.
#pragma once

#import <UIKit/UIKit.h>

@class UIImage;

@interface SBIcon : NSObject
- (NSString*)leafIdentifier;
- (NSString*)nodeIdentifier;
- (NSString*)uniqueIdentifier;
@end

@interface SBIconImageView : UIView
- (SBIcon*)icon;
@end

@interface SBFolderIconImageView : SBIconImageView
- (BOOL)isAnimating;
@end

@interface SBIconView : UIView
- (SBIcon*)icon;
@end

@interface SBIconListView : UIView
- (NSArray*)icons;
@end

@interface SBDockView : UIView
- (CGRect)dockListViewFrame;
- (void)setBackgroundView:(UIView*)view;
@end

@interface SBFloatingDockView : UIView
- (UIView*)backgroundView;
@end

@interface SBIconListPageControl : UIView
- (UIImage*)_searchIndicatorImage:(BOOL)isCurrent;
@end

@interface SBIconController : NSObject
+ (SBIconController*)sharedInstance;
- (void)_closeFolderController:(id)controller
                      animated:(BOOL)animated
                withCompletion:(void (^)(void))completion;
@end

@interface WGWidgetInfo : NSObject
- (NSString*)widgetIdentifier;
@end
