// The platform of the process: one record of all services. The process sets it before the engine is
// loaded and keeps the services alive for its own life.
#pragma once

#include "platform/av_foundation.h"
#include "platform/core_foundation.h"
#include "platform/core_graphics.h"
#include "platform/core_ui.h"
#include "platform/foundation.h"
#include "platform/libsystem.h"
#include "platform/objc_runtime.h"
#include "platform/springboard.h"
#include "platform/substrate.h"
#include "platform/uikit.h"

namespace velmoranth::platform {

struct Platform {
    ObjcRuntime& objc;
    Substrate& substrate;
    CoreFoundation& coreFoundation;
    DarwinNotificationCenter& darwinNotifications;
    PropertyLists& propertyLists;
    FileManager& fileManager;
    Bundles& bundles;
    CatalogClass& catalogClass;
    Dates& dates;
    SystemLog& log;
    LibSystem& libSystem;
    CoreGraphics& coreGraphics;
    Images& images;
    ImageContexts& imageContexts;
    Fonts& fonts;
    Views& views;
    Device& device;
    Screen& screen;
    SpringBoard& springBoard;
    Audio& audio;
    Alerts& alerts;
    Application& application;
};

// The record of this process. Using it before setPlatform is a mistake of ours and ends the
// process. Exported by the process: the engine's library finds it there.
[[nodiscard, gnu::visibility("default")]] const Platform& platform();

// `record` must outlive every use of the engine. Setting it again replaces it (tests wrap services
// so).
[[gnu::visibility("default")]] void setPlatform(const Platform& record);

}  // namespace velmoranth::platform
