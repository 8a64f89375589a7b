// The phone's own declarations; the stand-ins define what they declare.
#include "../../../../device/sysroot/usr/include/dispatch/dispatch.h"
