// The platform's services on the phone's own frameworks, each made on first use and kept for the
// life of the process; a source a framework defines them.
#pragma once

#include "platform/platform.h"

namespace velmoranth::device {

[[nodiscard]] platform::ObjcRuntime& objcRuntime();
[[nodiscard]] platform::Substrate& substrate();
[[nodiscard]] platform::CoreFoundation& coreFoundation();
[[nodiscard]] platform::DarwinNotificationCenter& darwinNotificationCenter();
[[nodiscard]] platform::PropertyLists& propertyLists();
[[nodiscard]] platform::FileManager& fileManager();
[[nodiscard]] platform::Bundles& bundles();
[[nodiscard]] platform::CatalogClass& catalogClass();
[[nodiscard]] platform::Dates& dates();
[[nodiscard]] platform::SystemLog& systemLog();
[[nodiscard]] platform::LibSystem& libSystem();
[[nodiscard]] platform::CoreGraphics& coreGraphics();
[[nodiscard]] platform::Images& images();
[[nodiscard]] platform::ImageContexts& imageContexts();
[[nodiscard]] platform::Fonts& fonts();
[[nodiscard]] platform::Views& views();
[[nodiscard]] platform::Device& currentDevice();
[[nodiscard]] platform::Screen& mainScreen();
[[nodiscard]] platform::SpringBoard& springBoard();
[[nodiscard]] platform::Audio& audio();
[[nodiscard]] platform::Alerts& alerts();
[[nodiscard]] platform::Application& application();

// For the sources that define them.
template <class Service>
[[nodiscard]] Service& theOne() {
    static auto& instance = *new Service;  // other threads may be at work when the process ends
    return instance;
}

// Makes them the platform of the process. The first of the library's code to run calls it; again is
// harmless.
void usePlatform();

}  // namespace velmoranth::device
