// The screens that a simulated device can show, what a user calls them, and the process that each
// belongs to.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace velmoranth::simulator {

// folder: an open folder over the home screen. pressed: a finger is on an icon. switcher: suggests
// an app. notification: a banner over the home screen. gallery: every image that the screens ask
// for. icons: every icon of the themes. panelError and panelSuccess: the theming's panel in the
// settings, with an alert and with the image of success.
enum class ScreenKind {
    home,
    folder,
    pressed,
    today,
    switcher,
    notification,
    settings,
    panelError,
    panelSuccess,
    weather,
    controls,
    gallery,
    icons
};

// The processes that have screens; each has classes of its own. everything: none of a device's, but
// a tool for who makes a theme; it has the classes of all others.
enum class ProcessKind { homeScreen, settings, weather, app, everything };

// What a user can choose about a screen: its page, and what the home screen in it or behind it
// shows.
struct ScreenTraits {
    bool hasPages = false;
    bool hasHomeScreen = false;
};

struct ScreenDefinition {
    ScreenKind kind;
    std::string_view name;
    ProcessKind process;
    ScreenTraits traits = {};
};

// In the order in which they are listed to a user.
[[nodiscard]] std::span<const ScreenDefinition> screenDefinitions();

[[nodiscard]] const ScreenDefinition& definitionOf(ScreenKind kind);

// Nothing for a name that no screen has.
[[nodiscard]] std::optional<ScreenKind> screenKindNamed(std::string_view name);

}  // namespace velmoranth::simulator
