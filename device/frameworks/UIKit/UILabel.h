// Views that show a line of text.
#pragma once

#import <UIKit/UIView.h>

@class UIFont;

@interface UILabel : UIView
- (void)setFont:(UIFont*)font;
- (void)setTextAlignment:(NSInteger)alignment;
- (void)setText:(NSString*)text;
- (void)setTextColor:(UIColor*)color;
- (void)setShadowColor:(UIColor*)color;
- (void)setShadowOffset:(CGSize)offset;
@end
