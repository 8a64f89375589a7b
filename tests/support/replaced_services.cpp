#include "tests/support/replaced_services.h"

namespace velmoranth::tests {

namespace {

template <class Service>
Service& chosen(Service* replacement, Service& now) {
    return replacement == nullptr ? now : *replacement;
}

}  // namespace

platform::Platform withServices(const platform::Platform& now, const ReplacedServices& replaced) {
    return {.objc = now.objc,
            .substrate = now.substrate,
            .coreFoundation = chosen(replaced.coreFoundation, now.coreFoundation),
            .darwinNotifications = now.darwinNotifications,
            .propertyLists = chosen(replaced.propertyLists, now.propertyLists),
            .fileManager = chosen(replaced.fileManager, now.fileManager),
            .bundles = now.bundles,
            .catalogClass = now.catalogClass,
            .dates = now.dates,
            .log = chosen(replaced.log, now.log),
            .libSystem = chosen(replaced.libSystem, now.libSystem),
            .coreGraphics = chosen(replaced.coreGraphics, now.coreGraphics),
            .images = chosen(replaced.images, now.images),
            .imageContexts = chosen(replaced.imageContexts, now.imageContexts),
            .fonts = chosen(replaced.fonts, now.fonts),
            .views = chosen(replaced.views, now.views),
            .device = chosen(replaced.device, now.device),
            .screen = now.screen,
            .springBoard = now.springBoard,
            .audio = chosen(replaced.audio, now.audio),
            .alerts = now.alerts,
            .application = now.application};
}

void replaceServices(const ReplacedServices& replaced) {
    platform::setPlatform(withServices(platform::platform(), replaced));
}

}  // namespace velmoranth::tests
