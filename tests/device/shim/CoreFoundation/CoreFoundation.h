// The phone's own declarations; the stand-ins define what they declare.
#include "../../../../device/sysroot/System/Library/Frameworks/CoreFoundation.framework/Headers/CoreFoundation.h"
