// What the gallery lays out: every image that the device's screens ask for, each as the platform
// has it by itself, and as the message that its screen sends answers now.
#pragma once

#include "platform/uikit.h"
#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/home_screen/icon_views.h"
#include "simulator/screen_context.h"
#include "simulator/toolkit/image_messages.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::simulator {

class FloatingDockView;

// What its pictures can be made out on.
enum class GalleryPlate { light, sky, wallpaper };

struct GalleryItem {
    std::string_view group;  // its heading
    std::string name;
    // The identifier of its app or bundle, or the file that a theme replaces it with; "" for what
    // has neither.
    std::string bundle;
    GalleryPlate plate = GalleryPlate::light;
    // Nil where there is none. `before` sends no message.
    std::function<platform::ImageRef()> before;
    std::function<platform::ImageRef()> after;
    // What a screen stretches its pictures over, however large they are, points; 0 by 0 where it
    // shows them at their own size.
    platform::Size place = {0, 0};
};

class GalleryItems {
  public:
    // The process has the classes of every screen. All of the context outlives this object.
    explicit GalleryItems(const ScreenContext& context);
    GalleryItems(const GalleryItems&) = delete;
    GalleryItems& operator=(const GalleryItems&) = delete;

    // Groups in a row, none twice. The items do not outlive this object.
    [[nodiscard]] const std::vector<GalleryItem>& all() const { return items_; }

  private:
    void addAppIcons();
    void addLiveIcons();
    void addMiniatures();
    void addPlacesOfIcons();
    void addFurniture();
    void addFurniture(const char* name, std::function<platform::ImageRef()> before,
                      std::function<platform::ImageRef()> after, platform::Size place = {0, 0});
    void addPageDots();
    void addFolderPictures();
    void addDock();
    void addSettings();
    void addWeather();
    void addCatalogs();
    void addControls();

    void addIcon(std::string_view group, const App& app);
    // Whether the home screen draws the app's icon anew each time.
    [[nodiscard]] bool isLive(const App& app) const;
    [[nodiscard]] platform::ImageRef stockIcon(const App& app, double side) const;
    [[nodiscard]] platform::ImageRef clockFace() const;
    [[nodiscard]] platform::ImageRef drawn(const platform::ViewRef& view,
                                           platform::Size size) const;

    const ScreenContext& context_;
    ImageMessages ask_;
    std::vector<GalleryItem> items_;
    // The same every time, since a replacement puts its picture in once a process; none before its
    // item is asked, because it costs more than all other items to make.
    std::shared_ptr<FloatingDockView> floatingDock_;
};

[[nodiscard]] bool samePixels(const platform::ImageRef& a, const platform::ImageRef& b);

}  // namespace velmoranth::simulator
