#include "record/recorded_services.h"

#include "record/recorded_drawing.h"
#include "record/recorded_files.h"
#include "record/recorded_runtime.h"

#include <utility>

namespace velmoranth::record {

struct RecordedServices::Services {
    Services(const platform::Platform& real, RecordMethod given)
        : method(std::move(given)),
          objc(real.objc, method),
          substrate(real.substrate, method),
          coreFoundation(real.coreFoundation),
          darwinNotifications(real.darwinNotifications),
          propertyLists(real.propertyLists, real.fileManager),
          fileManager(real.fileManager),
          bundles(real.bundles),
          catalogClass(real.catalogClass),
          dates(real.dates),
          log(real.log),
          libSystem(real.libSystem),
          coreGraphics(real.coreGraphics),
          images(real.images, real.fileManager),
          imageContexts(real.imageContexts),
          fonts(real.fonts),
          views(real.views),
          device(real.device),
          screen(real.screen),
          springBoard(real.springBoard),
          audio(real.audio, real.fileManager),
          alerts(real.alerts),
          application(real.application),
          platform{objc,          substrate,     coreFoundation, darwinNotifications,
                   propertyLists, fileManager,   bundles,        catalogClass,
                   dates,         log,           libSystem,      coreGraphics,
                   images,        imageContexts, fonts,          views,
                   device,        screen,        springBoard,    audio,
                   alerts,        application} {}

    const RecordMethod method;
    RecordedRuntime objc;
    RecordedSubstrate substrate;
    RecordedCoreFoundation coreFoundation;
    RecordedNotificationCenter darwinNotifications;
    RecordedPropertyLists propertyLists;
    RecordedFileManager fileManager;
    RecordedBundles bundles;
    RecordedCatalogClass catalogClass;
    RecordedDates dates;
    RecordedLog log;
    RecordedLibSystem libSystem;
    RecordedCoreGraphics coreGraphics;
    RecordedImages images;
    RecordedImageContexts imageContexts;
    RecordedFonts fonts;
    RecordedViews views;
    RecordedDevice device;
    RecordedScreen screen;
    RecordedSpringBoard springBoard;
    RecordedAudio audio;
    RecordedAlerts alerts;
    RecordedApplication application;
    const platform::Platform platform;
};

RecordedServices::RecordedServices(const platform::Platform& real, RecordMethod method)
    : services_(std::make_unique<Services>(real, std::move(method))) {}

RecordedServices::~RecordedServices() = default;

const platform::Platform& RecordedServices::platform() const {
    return services_->platform;
}

}  // namespace velmoranth::record
