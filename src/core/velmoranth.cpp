#include "core/velmoranth.h"

#include "core/format.h"
#include "core/settings.h"
#include "core/start_preferences.h"
#include "platform/platform.h"

namespace velmoranth::core {

using velmoranth::platform::platform;

namespace {

constexpr const char* kClassName = "VelMoranth";

VelMoranthRef& singleton() {
    static VelMoranthRef instance;
    return instance;
}

}  // namespace

void VelMoranth::load() {
    platform().libSystem.setuid(0);
    platform().libSystem.setgid(0);
    if (lookupLogging()) {
        NSLog(
            "LOAD_VELMORANTH **********************************************LOADED VELMORANTH "
            "******************************************** LOAD_VELMORANTH");
    }
    // Not the file that loadSettings reads.
    const std::string path = velmoranth::platform::stringByAppendingPathComponent(
        platform().libSystem.homeDirectory(), kPreferencesAtStart);
    if (!platform().fileManager.fileExistsAtPath(path)) {
        // A message, so that the class's +initialize has run by then.
        platform().objc.sendMessage(platform().objc.getClass("VelmoranthFileManager"),
                                    "NoUserSettingCreateThemeNow");
    }
}

void VelMoranth::initialize(const platform::ClassRef& receiver) {
    if (receiver != nullptr && receiver == platform().objc.getClass(kClassName)) {
        singleton() = std::make_shared<VelMoranth>();
    }
}

VelMoranthRef VelMoranth::sharedIconManager() {
    return singleton();
}

void VelMoranth::initClass(const platform::ObjectRef& object) {
    if (object != nullptr) {
        platform().audio.sharedInstance()->setCategory(platform::kAudioSessionCategoryAmbient);
    }
}

std::string VelMoranth::className() const {
    return kClassName;
}

}  // namespace velmoranth::core
