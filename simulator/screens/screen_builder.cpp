#include "simulator/screens/screen_builder.h"

#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/toolkit/switch_view.h"

namespace velmoranth::simulator {

using platform::Color;
using platform::Rect;

ScreenBuilder::ScreenBuilder(const ScreenContext& context, platform::View& window,
                             AskedImages& images)
    : context_(context),
      window_(window),
      images_(images),
      ask_(context.runtime, context.toolkit),
      colors_(appColors(context.device.system)),
      size_(context.bounds().size),
      traits_(std::make_shared<TraitCollection>(context.device)) {}

std::shared_ptr<NamedView> ScreenBuilder::addView(platform::View& to, std::string_view className,
                                                  const Rect& frame, const Color& color) const {
    auto view = std::make_shared<NamedView>(className, frame);
    view->setBackgroundColor(color);
    to.addSubview(view);
    return view;
}

void ScreenBuilder::addLine(platform::View& to, double y, double left) const {
    to.addSubview(
        makeBox({{left, y}, {to.bounds().size.width - left, hairline()}}, colors_.separator));
}

void ScreenBuilder::addToolkitImage(platform::View& to, const Rect& slot, const char* kitName,
                                    const char* glyphName, const Color& tint) const {
    images_.add(to, slot, ImagePlacement::fit, [builder = *this, kitName, glyphName, tint] {
        return builder.isAtLeast13()
                   ? builder.context_.toolkit.tinted(builder.ask_.systemImageNamed(glyphName), tint)
                   : builder.ask_.kitImageNamed(kitName);
    });
}

platform::ViewRef ScreenBuilder::addNavigationBar(platform::View& to,
                                                  std::string_view title) const {
    const double width = to.bounds().size.width;
    const double top = statusBarHeight(context_.device);
    auto bar = addView(to, "UINavigationBar", {{0, 0}, {width, top + kBarHeight}}, colors_.bar);
    addText(*bar, title, centered(kRowTextSize, colors_.text, desktop::FontWeight::semibold),
            {{0, top}, {width, kBarHeight}});
    addLine(*bar, top + kBarHeight);
    return bar;
}

void ScreenBuilder::addSwitch(platform::View& row, bool isOn) const {
    row.addSubview(makeSwitch(context_.toolkit, isOn,
                              {row.bounds().size.width - kRowMargin - kSwitchWidth,
                               snapToPixels((kRowHeight - kSwitchHeight) / 2, context_.scale())}));
}

}  // namespace velmoranth::simulator
