// The settings panel of the theming, in the settings app: the switches that the preferences file
// has, and what the panel has done for it by messages to the class VelmoranthFileManager, which the
// engine brings. Its alerts and its success image come over the panel; without the engine nothing
// happens.
#pragma once

#include "simulator/screen_context.h"
#include "simulator/screens/app_screen.h"
#include "simulator/toolkit/alert_view.h"

#include <memory>

namespace velmoranth::simulator {

// The panel's two rows that do something: one deletes saved settings that are not there, which
// fails; one shows that something succeeded.
enum class PanelTask { deleteSettings, applySettings };

// Where the row is, points.
[[nodiscard]] platform::Rect panelRow(PanelTask task, const DeviceConfiguration& device);

// How long the success image grows, and when it goes, seconds.
inline constexpr double kSuccessGrows = 0.3;
inline constexpr double kSuccessStays = 0.6;

class PanelScreen final : public AppScreen {
  public:
    // `task` is what is done when the panel appears.
    PanelScreen(const ScreenContext& context, PanelTask task);

    // Does its task. A success image is let grow.
    void didAppear() override;
    // Shows the alert that is presented.
    void layoutViews() override;
    // On a button of an alert: the alert goes, and the button's handler runs. On a row: does what
    // it says, unless an alert is there.
    void tap(const platform::Point& point) override;

    // Nil when there is none.
    [[nodiscard]] const AlertView* alert() const { return alert_.get(); }

  private:
    void perform(PanelTask task);
    void deleteSettings() const;
    void applySettings() const;
    [[nodiscard]] std::shared_ptr<desktop::DesktopViewController> rootViewController() const;
    void showPresented();

    PanelTask task_;
    platform::ViewControllerRef presented_;
    std::unique_ptr<AlertView> alert_;
};

}  // namespace velmoranth::simulator
