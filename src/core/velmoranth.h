// The main class: theme resolution, imaging and the tools are its class methods, each room a base
// of its own, as categories would split it. One instance, the singleton, serves the instance
// methods.
#pragma once

#include "imaging/chrome_images.h"
#include "imaging/icon_effects.h"
#include "platform/objc_runtime.h"
#include "sounds/theme_sounds.h"
#include "theme/app_icon_lookup.h"
#include "theme/interface_image_lookup.h"
#include "theme/theme_selection.h"
#include "tools/catalog_extraction.h"
#include "tools/image_dump.h"

#include <memory>
#include <string>

namespace velmoranth::core {

class VelMoranth;
using VelMoranthRef = std::shared_ptr<VelMoranth>;

class VelMoranth final : public platform::Object,
                         public theme::ThemeSelection,
                         public theme::AppIconLookup,
                         public theme::InterfaceImageLookup,
                         public imaging::IconEffects,
                         public imaging::ChromeImages,
                         public sounds::ThemeSounds,
                         public tools::ImageDump,
                         public tools::CatalogExtraction {
  public:
    // +load: takes root's ids, and asks for the factory preferences when a file is missing. Runs
    // twice a process.
    static void load();
    // +initialize: makes the singleton anew when the receiver is VelMoranth itself, not a subclass.
    static void initialize(const platform::ClassRef& receiver);
    // The singleton; nil before +initialize.
    [[nodiscard]] static VelMoranthRef sharedIconManager();

    // -initClass: gives the shared audio session the ambient category, unless the argument is nil.
    void initClass(const platform::ObjectRef& object);

    [[nodiscard]] std::string className() const override;
};

}  // namespace velmoranth::core
