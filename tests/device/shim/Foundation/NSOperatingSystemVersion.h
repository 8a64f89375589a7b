// The phone's own declarations, which GNUstep does not have; the stand-ins define them.
#include "../../../../device/sysroot/System/Library/Frameworks/Foundation.framework/Headers/NSOperatingSystemVersion.h"
