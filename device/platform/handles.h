// Every framework's handles.
#pragma once

#include "device/platform/av_foundation_handles.h"
#include "device/platform/core_graphics_handles.h"
#include "device/platform/core_ui_handles.h"
#include "device/platform/foundation_handles.h"
#include "device/platform/springboard_handles.h"
#include "device/platform/uikit_handles.h"
