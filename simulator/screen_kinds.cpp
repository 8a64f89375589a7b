#include "simulator/screen_kinds.h"

#include <algorithm>
#include <array>

namespace velmoranth::simulator {

namespace {

constexpr std::array<ScreenDefinition, 13> kScreens{{
    {ScreenKind::home, "home", ProcessKind::homeScreen, {true, true}},
    {ScreenKind::folder, "folder", ProcessKind::homeScreen, {true, true}},
    {ScreenKind::pressed, "pressed", ProcessKind::homeScreen, {true, true}},
    {ScreenKind::today, "today", ProcessKind::homeScreen, {false, true}},
    {ScreenKind::switcher, "switcher", ProcessKind::homeScreen, {false, true}},
    {ScreenKind::notification, "notification", ProcessKind::homeScreen, {false, true}},
    {ScreenKind::settings, "settings", ProcessKind::settings},
    {ScreenKind::panelError, "panel-error", ProcessKind::settings},
    {ScreenKind::panelSuccess, "panel-success", ProcessKind::settings},
    {ScreenKind::weather, "weather", ProcessKind::weather},
    {ScreenKind::controls, "controls", ProcessKind::app},
    {ScreenKind::gallery, "gallery", ProcessKind::everything, {true, false}},
    {ScreenKind::icons, "icons", ProcessKind::homeScreen, {true, false}},
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
