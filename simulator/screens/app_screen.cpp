#include "simulator/screens/app_screen.h"

#include "simulator/toolkit/named_views.h"

namespace velmoranth::simulator {

AppScreen::AppScreen(const ScreenContext& context)
    : context_(context), window_(std::make_shared<NamedView>("UIWindow", context.bounds())) {}

void AppScreen::layoutViews() {
    images_.ask(context_.scale());
    layoutTree(context_.runtime, window_);
}

std::shared_ptr<desktop::DesktopBitmapImage> AppScreen::draw() const {
    return drawTree(window_, context_.device.screen);
}

void AppScreen::advance(double seconds) {
    context_.views.clock().advance(seconds);
}

}  // namespace velmoranth::simulator
