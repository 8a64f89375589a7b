#import "device/standins/springboard.h"

using namespace velmoranth::standins;

@implementation SBIconImageView

- (void)dealloc {
    [_icon release];
    [super dealloc];
}

- (SBIcon*)icon {
    received(self, _cmd);
    return _icon;
}

- (UIImage*)contentsImage {
    received(self, _cmd);
    return answer(self, _cmd);
}

- (UIImage*)darkeningOverlayImage {
    received(self, _cmd);
    return answer(self, _cmd);
}

@end

// The methods below that only call their superclass's are those that the library replaces on the
// class itself.
@implementation SBFolderIconImageView

- (id)initWithFrame:(CGRect)frame {
    return [super initWithFrame:frame];
}

- (void)dealloc {
    [_backgroundView release];
    [super dealloc];
}

- (BOOL)isAnimating {
    received(self, _cmd);
    return numberAnswer(self, _cmd) != 0;
}

- (void)layoutSubviews {
    [super layoutSubviews];
}

@end

@implementation SBHClockApplicationIconImageView

+ (UIImage*)generateProcessedMappedIconImageWithName:(NSString*)name
                                           imageInfo:(IconImageInfo)info
                                       includingMask:(BOOL)includingMask {
    received(self, _cmd, name, info, includingMask);
    return answer(self, _cmd);
}

@end

@implementation SBIconView

- (void)dealloc {
    [_icon release];
    [super dealloc];
}

- (SBIcon*)icon {
    received(self, _cmd);
    return _icon;
}

- (void)layoutSubviews {
    [super layoutSubviews];
}

@end

@implementation SBIconBadgeView

- (void)dealloc {
    [_backgroundView release];
    [super dealloc];
}

+ (CGFloat)_maxTextWidth {
    received(self, _cmd);
    return numberAnswer(self, _cmd);
}

- (void)layoutSubviews {
    [super layoutSubviews];
}

@end

@implementation SBIconLegibilityLabelView
@end

@implementation SBIconListView

- (void)dealloc {
    [_icons release];
    [super dealloc];
}

- (NSArray*)icons {
    received(self, _cmd);
    return _icons;
}

@end

@implementation SBDockView

- (void)dealloc {
    [_backgroundView release];
    [_highlightView release];
    [_iconListView release];
    [super dealloc];
}

- (CGRect)dockListViewFrame {
    received(self, _cmd);
    return rectAnswer(self, _cmd);
}

- (void)setBackgroundView:(UIView*)view {
    received(self, _cmd, view);
    leaveSuperview(_backgroundView);
    setVariable(self, "_backgroundView", view);
    insertInto(self, view, 0);
}

- (void)layoutSubviews {
    [super layoutSubviews];
}

@end

@implementation SBFloatingDockView

- (void)dealloc {
    [_backgroundView release];
    [_userIconListView release];
    [_dividerView release];
    [super dealloc];
}

- (UIView*)backgroundView {
    received(self, _cmd);
    return _backgroundView;
}

- (SBIconListView*)userIconListView {
    received(self, _cmd);
    return answerSet(self, _cmd).value_or(_userIconListView);
}

- (UIView*)dividerView {
    received(self, _cmd);
    return answerSet(self, _cmd).value_or(_dividerView);
}

@end

@implementation SBFloatingDockPlatterView

- (void)dealloc {
    [_backgroundView release];
    [_shadowView release];
    [super dealloc];
}

- (void)layoutSubviews {
    [super layoutSubviews];
}

@end

@implementation SBFloatyFolderView

- (id)initWithFolder:(id)folder
         orientation:(NSInteger)orientation
             viewMap:(id)viewMap
             context:(id)context {
    received(self, _cmd, folder, orientation, viewMap, context);
    if (const auto other = answerSet(self, _cmd)) {
        [*other retain];
        [self release];
        return *other;
    }
    return [super initWithoutANoteWithFrame:CGRect{}];
}

- (BOOL)_showsTitle {
    received(self, _cmd);
    return numberAnswer(self, _cmd) != 0;
}

- (BOOL)_tapToCloseGestureRecognizer:(UIGestureRecognizer*)recognizer shouldReceiveTouch:(id)touch {
    received(self, _cmd, recognizer, touch);
    return numberAnswer(self, _cmd) != 0;
}

@end

@implementation SBFolderControllerBackgroundView

- (id)initWithFrame:(CGRect)frame {
    return [super initWithFrame:frame];
}

@end

@implementation SBFolderBackgroundView

- (void)dealloc {
    [_blurView release];
    [super dealloc];
}

- (void)layoutSubviews {
    [super layoutSubviews];
}

@end

@implementation SBIconListPageControl

- (void)layoutSubviews {
    [super layoutSubviews];
}

- (UIImage*)_iconListIndicatorImage:(BOOL)isCurrent {
    received(self, _cmd, isCurrent);
    return answer(self, _cmd);
}

- (UIImage*)_searchIndicatorImage:(BOOL)isCurrent {
    received(self, _cmd, isCurrent);
    return answer(self, _cmd);
}

@end

@implementation SBSwitcherAppSuggestionBannerView

- (UIImage*)_iconImageFromAppWithBundleIdentifier:(NSString*)bundleIdentifier
                               withIconImageCache:(id)cache {
    received(self, _cmd, bundleIdentifier, cache);
    return answer(self, _cmd);
}

@end

@implementation UISwitchModernVisualElement

- (UIImage*)_effectiveThumbImage {
    received(self, _cmd);
    return answer(self, _cmd);
}

@end
