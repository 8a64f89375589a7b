#include "by_hand.h"

#include "implementation.h"
#include "quiet_phone.h"
#include <CydiaSubstrate/CydiaSubstrate.h>

namespace velmoranth::benchmarks {
namespace {

using Alpha = CGFloat (*)(id, SEL);
using ImageForIcon = id (*)(id, SEL, id);

BOOL enable = NO;
BOOL enableLogging = NO;
BOOL removeLabels = NO;
NSMutableArray* iconIdentifiers = nil;
NSMutableDictionary* iconImages = nil;

Alpha originalAlpha = nullptr;
ImageForIcon originalImageForIcon = nullptr;

CGFloat alpha(id self, SEL selector) {
    originalAlpha(self, selector);
    return enable && removeLabels ? 0 : originalAlpha(self, selector);
}

id imageForIcon(id self, SEL selector, id icon) {
    originalImageForIcon(self, selector, icon);
    if (!enable) {
        return originalImageForIcon(self, selector, icon);
    }
    if (originalImageForIcon(self, selector, icon) == nil) {
        return originalImageForIcon(self, selector, icon);
    }
    NSString* const identifier = [icon nodeIdentifier];
    if (enableLogging) {
        NSLog(@"MainIcons, %@  With Identifier: %@", originalImageForIcon(self, selector, icon),
              identifier);
    }
    if ([identifier isEqualToString:@"com.apple.mobilecal"]) {
        return originalImageForIcon(self, selector, icon);
    }
    if (iconIdentifiers == nil) {
        iconIdentifiers = [[NSMutableArray alloc] init];
        iconImages = [[NSMutableDictionary alloc] init];
    }
    if ([iconIdentifiers containsObject:identifier]) {
        return [[[iconImages objectForKey:identifier] retain] autorelease];
    }
    const id image = originalImageForIcon(self, selector, icon);
    [iconIdentifiers addObject:identifier];
    [iconImages setObject:image forKey:identifier];
    return image;
}

template <class Function>
void hook(Class cls, const char* selector, Function replacement, Function* original) {
    MSHookMessageEx(cls, sel_registerName(selector), implementationOf(replacement),
                    reinterpret_cast<IMP*>(original));
}

}  // namespace

void hookByHand(Class labelView, Class imageCache) {
    enable = YES;
    hook(labelView, "alpha", &alpha, &originalAlpha);
    hook(imageCache, "imageForIcon:", &imageForIcon, &originalImageForIcon);
}

}  // namespace velmoranth::benchmarks
