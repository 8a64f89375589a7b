// Handles of CoreUI's objects.
#pragma once

#include "platform/core_ui.h"

#include "device/platform/handle.h"

namespace velmoranth::device {}
