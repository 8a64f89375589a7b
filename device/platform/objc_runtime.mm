#include "device/platform/services.h"
