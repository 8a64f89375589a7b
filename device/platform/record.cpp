#include "device/platform/services.h"

namespace velmoranth::device {

void usePlatform() {
    static const platform::Platform kRecord{
        .objc = objcRuntime(),
        .substrate = substrate(),
        .coreFoundation = coreFoundation(),
        .darwinNotifications = darwinNotificationCenter(),
        .propertyLists = propertyLists(),
        .fileManager = fileManager(),
        .bundles = bundles(),
        .catalogClass = catalogClass(),
        .dates = dates(),
        .log = systemLog(),
        .libSystem = libSystem(),
        .coreGraphics = coreGraphics(),
        .images = images(),
        .imageContexts = imageContexts(),
        .fonts = fonts(),
        .views = views(),
        .device = currentDevice(),
        .screen = mainScreen(),
        .springBoard = springBoard(),
        .audio = audio(),
        .alerts = alerts(),
        .application = application(),
    };
    platform::setPlatform(kRecord);
}

}  // namespace velmoranth::device
