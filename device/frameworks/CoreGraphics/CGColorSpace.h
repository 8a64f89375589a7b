// Colour spaces. Create gives a reference that Release takes back; both release functions take
// NULL.
#pragma once

#include <stddef.h>
#include <stdint.h>

typedef struct CGColorSpace* CGColorSpaceRef;

typedef int32_t CGColorSpaceModel;

enum : CGColorSpaceModel {
    kCGColorSpaceModelUnknown = -1,
    kCGColorSpaceModelMonochrome = 0,
    kCGColorSpaceModelRGB = 1,
    kCGColorSpaceModelIndexed = 5,
};

extern "C" {
CGColorSpaceRef CGColorSpaceCreateDeviceGray(void);
CGColorSpaceRef CGColorSpaceCreateDeviceRGB(void);
CGColorSpaceModel CGColorSpaceGetModel(CGColorSpaceRef space);
void CGColorSpaceRelease(CGColorSpaceRef space);
}
