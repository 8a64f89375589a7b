// A process of the phone for measurements: the tests' frameworks with the measured methods made
// quiet, which note nothing and answer from a variable; classes of the same methods that the
// library does not know, for what is compared with it; and the library, loaded with theming on.
#pragma once

#import <Foundation/Foundation.h>

namespace velmoranth::benchmarks {

enum class Hooked { not_, byHand, byLibrary };

// The process is set up, once; the library has replaced its methods and read its settings.
void startQuietPhone();

// An object of the class whose method is replaced so: -alpha of a label, -imageForIcon: of a cache.
[[nodiscard]] id labelView(Hooked hooked);
[[nodiscard]] id imageCache(Hooked hooked);

// An icon with that node identifier, which it holds as a string made while the process ran.
[[nodiscard]] id iconNamed(const char* nodeIdentifier);

// How often the platform's own methods, -nodeIdentifier included, were called in all.
[[nodiscard]] unsigned long platformCalls();

}  // namespace velmoranth::benchmarks

// What is sent.
@protocol MeasuredMessages
- (CGFloat)alpha;
- (id)imageForIcon:(id)icon;
- (NSString*)nodeIdentifier;
@end
