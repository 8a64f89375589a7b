// The library on the phone's services. Needs the stand-ins and Foundation alone, so that it can be
// built for whatever the library is built for.
#import "device/equality/device_side.h"
#import <Foundation/Foundation.h>

// What the desktop's objects print as, where the stand-ins and this machine's Foundation have other
// words than the phone's: an image as on iOS 13, whichever runs.
@interface UIImage (PhoneDescription)
- (NSString*)description;
@end

@implementation UIImage (PhoneDescription)

- (NSString*)description {
    const CGSize size = [self size];
    return [NSString stringWithFormat:@"<UIImage:%p anonymous {%.17g, %.17g}>",
                                      static_cast<void*>(self), size.width, size.height];
}

@end

// A bundle prints its folder on the phone, which the desktop leaves out.
@interface NSBundle (PhoneDescription)
- (NSString*)description;
@end

#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@implementation NSBundle (PhoneDescription)

- (NSString*)description {
    return [NSString stringWithFormat:@"<NSBundle: %p>", static_cast<void*>(self)];
}

@end

// The desktop's errors have no userInfo.
@interface NSError (TranscriptDescription)
- (NSString*)description;
@end

@implementation NSError (TranscriptDescription)

- (NSString*)description {
    return [NSString stringWithFormat:@"Error Domain=%@ Code=%ld \"%@\"", [self domain],
                                      static_cast<long>([self code]), [self localizedDescription]];
}

@end

#pragma clang diagnostic pop

namespace velmoranth::equality {

std::unique_ptr<Side> makeSide(const Scenario& scenario) {
    return std::make_unique<DeviceSide>(scenario);
}

}  // namespace velmoranth::equality

int main(int argumentCount, char** arguments) {
    return velmoranth::equality::runProgram(argumentCount, arguments);
}
