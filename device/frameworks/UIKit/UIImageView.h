// Views that show an image.
#pragma once

#import <UIKit/UIView.h>

@class UIImage;

@interface UIImageView : UIView
- (id)initWithImage:(UIImage*)image;
- (UIImage*)image;
- (void)setImage:(UIImage*)image;
@end
