// The layer behind a view.
#pragma once

#include <CoreGraphics/CGGeometry.h>
#import <Foundation/Foundation.h>

@interface CALayer : NSObject
- (CGRect)bounds;
- (void)renderInContext:(struct CGContext*)context;
- (void)setOpacity:(float)opacity;
- (void)setMasksToBounds:(BOOL)masks;
- (void)setShadowColor:(struct CGColor*)color;
- (void)setShadowOpacity:(float)opacity;
- (void)setShadowOffset:(CGSize)offset;
- (void)setShadowRadius:(CGFloat)radius;
- (void)setShadowPath:(const struct CGPath*)path;
@end
