// The user's choices. The settings panel keeps them in one property list, the preferences file; the
// replacements read the record that loadSettings fills from it. The theme lookups keep two switches
// of their own, refreshed from the file whenever one of them runs.
//
// All of it is process-wide. Replacements and lookups run on several threads, so every value of the
// record and both switches are read and written whole; nothing is locked, since each is asked for
// alone, and a replacement on another thread may see a record that is half reloaded. The store is
// the main thread's, on which the settings are loaded.
#pragma once

#include "core/shared_value.h"
#include "platform/foundation.h"

#include <optional>
#include <string>

namespace velmoranth::core {

// One member a key of the preferences file, under the key's own name.
struct Settings {
    SharedValue<bool> enableLogging;     // diagnostic lines in the system log
    SharedValue<bool> enable;            // master switch of the theming
    SharedValue<bool> enableIconMask;    // the theme's icon mask
    SharedValue<bool> enableOverlay;     // the theme's icon overlay
    SharedValue<bool> enableShadow;      // the shadow image behind icons
    SharedValue<bool> dynamicShadow;     // the layer shadow of icons
    SharedValue<bool> removeDock;        // hide the dock's background
    SharedValue<bool> removeFolderBG;    // hide folder backgrounds
    SharedValue<bool> removeLabels;      // hide icon labels
    SharedValue<bool> removeIconBadges;  // hide icon badges
    SharedValue<bool> removePageDots;    // hide the page dots
    SharedValue<float> shadowRadiusVal;  // points
    SharedValue<float> opacityVal;       // 0 to 1
    SharedValue<float> xAxisVal;         // points
    SharedValue<float> yAxisVal;         // points
    SharedValue<float> shadowWidthVal;   // points
    SharedValue<float> shadowHeightVal;  // points

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
// empties the store and leaves the record as it was; a missing key gives false or 0. Keys that have
// no value in the record are converted and forgotten, each in its turn. For one thread at a time.
void loadSettings();

// The lookups' own copies of "enableLogging" and "enableImageDump". Both start off.
[[nodiscard]] bool lookupLogging();
[[nodiscard]] bool lookupImageDump();

// Reads the preferences file again and sets both lookup switches from it. A file that is missing or
// unreadable leaves them as they were.
void refreshLookupSwitches();

// The same for the search of app icons, which reads "enableIconMask" as well and does nothing with
// it: whether icons are masked is the record's to say.
void refreshIconLookupSwitches();

// The same for lookupLogging alone, which is all that the image dump refreshes.
void refreshLookupLogging();

}  // namespace velmoranth::core
