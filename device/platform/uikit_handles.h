// Handles of UIKit's objects.
#pragma once

#include "platform/uikit.h"

#include "device/platform/handle.h"

namespace velmoranth::device {}
