// Handles of AVFoundation's objects.
#pragma once

#include "platform/av_foundation.h"

#include "device/platform/handle.h"

namespace velmoranth::device {}
