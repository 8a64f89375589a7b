// The code of a bundle that a test loads.
#import <Foundation/Foundation.h>

@interface LoadedWithItsBundle : NSObject {
}
@end

@implementation LoadedWithItsBundle
@end
