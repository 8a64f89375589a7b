// The geometry of CoreGraphics: points, sizes, rectangles, as the phone passes them.
#pragma once

typedef double CGFloat;

struct CGPoint {
    CGFloat x;
    CGFloat y;
};

struct CGSize {
    CGFloat width;
    CGFloat height;
};

struct CGRect {
    CGPoint origin;
    CGSize size;
};
