// The user's choices. The settings panel keeps them in one property list, the preferences file; the
// replacements read the record that loadSettings fills from it. The theme lookups keep two switches
// of their own, refreshed from the file whenever one of them runs. All of it is process-wide. The
// switches are atomic, since lookups run on several threads; store and record are unlocked, and a
// replacement on another thread may see a record that is half reloaded.
#pragma once

#include "platform/foundation.h"

#include <optional>
#include <string>

namespace velmoranth::core {

// One member a key of the preferences file, under the key's own name.
struct Settings {
    bool enableLogging = false;     // diagnostic lines in the system log
    bool enable = false;            // master switch of the theming
    bool enableIconMask = false;    // the theme's icon mask
    bool enableOverlay = false;     // the theme's icon overlay
    bool enableShadow = false;      // the shadow image behind icons
    bool dynamicShadow = false;     // the layer shadow of icons
    bool removeDock = false;        // hide the dock's background
    bool removeFolderBG = false;    // hide folder backgrounds
    bool removeLabels = false;      // hide icon labels
    bool removeIconBadges = false;  // hide icon badges
    bool removePageDots = false;    // hide the page dots
    float shadowRadiusVal = 0;      // points
    float opacityVal = 0;           // 0 to 1
    float xAxisVal = 0;             // points
    float yAxisVal = 0;             // points
    float shadowWidthVal = 0;       // points
    float shadowHeightVal = 0;      // points

    friend bool operator==(const Settings&, const Settings&) = default;
};

namespace detail {

extern Settings settingsRecord;

}  // namespace detail

// The record as it stands. All off and 0 until loadSettings has read a file. Every replacement asks
// for it at every call: no more than a variable's address.
[[nodiscard]] inline const Settings& settings() {
    return detail::settingsRecord;
}

// The dictionary that the preferences file held when loadSettings last ran; empty when it gave
// nothing.
[[nodiscard]] const platform::Dictionary& SettingsStore();

// Reads the preferences file into the store and the record. A file that is missing or unreadable
// empties the store and leaves the record as it was; a missing key gives false or 0.
void loadSettings();

// The lookups' own copies of "enableLogging" and "enableImageDump". Both start off.
[[nodiscard]] bool lookupLogging();
[[nodiscard]] bool lookupImageDump();

// Reads the preferences file again and sets both lookup switches from it. A file that is missing or
// unreadable leaves them as they were.
void refreshLookupSwitches();

// The same for lookupLogging alone, which is all that the image dump refreshes.
void refreshLookupLogging();

}  // namespace velmoranth::core
