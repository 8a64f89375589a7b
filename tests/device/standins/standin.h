// What the stand-ins for the phone's classes have in common: they take down what they are told
// (journal.h), and count the objects that live.
#pragma once

#include "device/standins/journal.h"
#import <Foundation/Foundation.h>

#include <string>
#include <vector>

namespace velmoranth::standins {

// How many objects of that very class live.
[[nodiscard]] long living(const std::string& className);
// All classes that have any, "UIImage 2" each, by name.
[[nodiscard]] std::vector<std::string> allLiving();

}  // namespace velmoranth::standins

// The root of the stand-ins. Counts its objects by class.
@interface StandIn : NSObject {
}
@end
