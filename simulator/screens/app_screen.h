// The screen of an app: a window over the whole of it, whose views a deriving screen adds.
#pragma once

#include "simulator/screen.h"
#include "simulator/screen_context.h"
#include "simulator/screens/asked_images.h"

namespace velmoranth::simulator {

class AppScreen : public Screen {
  public:
    explicit AppScreen(const ScreenContext& context);

    // Asks for the images first.
    void layoutViews() override;
    [[nodiscard]] std::shared_ptr<desktop::DesktopBitmapImage> draw() const override;
    void advance(double seconds) override;

    [[nodiscard]] const platform::ViewRef& view() const override { return window_; }

  protected:
    [[nodiscard]] const ScreenContext& context() const { return context_; }

    [[nodiscard]] platform::View& window() { return *window_; }

    [[nodiscard]] AskedImages& images() { return images_; }

  private:
    const ScreenContext& context_;
    platform::ViewRef window_;
    AskedImages images_;
};

}  // namespace velmoranth::simulator
