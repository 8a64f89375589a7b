#include "core/settings.h"

#include "core/preferences.h"
#include "core/setting_rows.h"
#include "platform/platform.h"

#include <array>
#include <string_view>
#include <utility>

namespace velmoranth::core {
namespace {

using platform::Dictionary;

struct State {
    Dictionary store;
    // What the lookups last read, on whichever thread.
    SharedValue<bool> lookupLogging;
    SharedValue<bool> lookupImageDump;
};

State& state() {
    static State instance;
    return instance;
}

// What is read of a row.
struct Key {
    std::string_view name;
    SettingMember member;
};

// In the order in which they are read.
constexpr auto kKeys = [] {
    std::array<Key, kSettingRows.size() - 1> keys;
    for (const SettingRow& row : kSettingRows) {
        if (row.readAs != 0) {
            keys.at(row.readAs - 1) = {row.key, row.member};
        }
    }
    return keys;
}();

void readKey(const Key& key, const Dictionary& store, Settings& record) {
    const platform::PropertyList* value = platform::objectForKey(store, key.name);
    if (key.member.number != nullptr) {
        record.*key.member.number = platform::floatValue(value);
        return;
    }
    const bool isOn = platform::boolValue(value);
    if (key.member.flag != nullptr) {
        record.*key.member.flag = isOn;
    }
}

// What the file holds; nothing when it gave nothing.
std::optional<Dictionary> readPreferences() {
    return platform::platform().propertyLists.dictionaryWithContentsOfFile(kPreferencesPath);
}

bool isOn(const Dictionary& store, std::string_view key) {
    return platform::boolValue(platform::objectForKey(store, key));
}

void setLookupSwitches(const Dictionary& store) {
    state().lookupImageDump = isOn(store, "enableImageDump");
    state().lookupLogging = isOn(store, "enableLogging");
}

}  // namespace

constinit Settings detail::settingsRecord;

const Dictionary& SettingsStore() {
    return state().store;
}

void loadSettings() {
    std::optional<Dictionary> read = readPreferences();
    if (!read) {
        state().store.clear();
        return;
    }
    state().store = std::move(*read);
    for (const Key& key : kKeys) {
        readKey(key, state().store, detail::settingsRecord);
    }
}

bool lookupLogging() {
    return state().lookupLogging;
}

bool lookupImageDump() {
    return state().lookupImageDump;
}

void refreshLookupSwitches() {
    if (const std::optional<Dictionary> store = readPreferences()) {
        setLookupSwitches(*store);
    }
}

void refreshIconLookupSwitches() {
    if (const std::optional<Dictionary> store = readPreferences()) {
        setLookupSwitches(*store);
        static_cast<void>(isOn(*store, "enableIconMask"));
    }
}

void refreshLookupLogging() {
    if (const std::optional<Dictionary> store = readPreferences()) {
        state().lookupLogging = isOn(*store, "enableLogging");
    }
}

}  // namespace velmoranth::core
