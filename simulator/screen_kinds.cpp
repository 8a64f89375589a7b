#include "simulator/screen_kinds.h"

#include <algorithm>
#include <array>

namespace velmoranth::simulator {

namespace {

constexpr std::array<ScreenDefinition, 12> kScreens{{
    {ScreenKind::home, "home", ProcessKind::homeScreen},
    {ScreenKind::folder, "folder", ProcessKind::homeScreen},
    {ScreenKind::pressed, "pressed", ProcessKind::homeScreen},
    {ScreenKind::today, "today", ProcessKind::homeScreen},
    {ScreenKind::switcher, "switcher", ProcessKind::homeScreen},
    {ScreenKind::notification, "notification", ProcessKind::homeScreen},
    {ScreenKind::settings, "settings", ProcessKind::settings},
    {ScreenKind::panelError, "panel-error", ProcessKind::settings},
    {ScreenKind::panelSuccess, "panel-success", ProcessKind::settings},
    {ScreenKind::weather, "weather", ProcessKind::weather},
    {ScreenKind::controls, "controls", ProcessKind::app},
    {ScreenKind::gallery, "gallery", ProcessKind::everything},
}};

}  // namespace

std::span<const ScreenDefinition> screenDefinitions() {
    return kScreens;
}

const ScreenDefinition& definitionOf(ScreenKind kind) {
    return *std::find_if(kScreens.begin(), kScreens.end(),
                         [kind](const ScreenDefinition& screen) { return screen.kind == kind; });
}

std::optional<ScreenKind> screenKindNamed(std::string_view name) {
    for (const ScreenDefinition& screen : kScreens) {
        if (screen.name == name) {
            return screen.kind;
        }
    }
    return std::nullopt;
}

}  // namespace velmoranth::simulator
