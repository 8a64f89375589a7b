// Handles of the home screen's objects.
#pragma once

#include "platform/springboard.h"

#include "device/platform/handle.h"
#include "device/platform/uikit_handles.h"

namespace velmoranth::device {}
