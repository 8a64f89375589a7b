// The services of this folder in one include.
#pragma once

#include "desktop/system/core_foundation.h"
#include "desktop/system/device_and_screen.h"
#include "desktop/system/lib_system.h"
#include "desktop/system/system_logs.h"
#include "desktop/system/system_version.h"
