#include "core/settings.h"

#include "platform/platform.h"

#include <array>
#include <atomic>
#include <string_view>
#include <utility>
#include <variant>

namespace velmoranth::core {
namespace {

using platform::Dictionary;

struct State {
    Dictionary store;
    // What the lookups last read, on whichever thread.
    std::atomic<bool> lookupLogging = false;
    std::atomic<bool> lookupImageDump = false;
};

State& state() {
    static State instance;
    return instance;
}

// A key that is read and kept nowhere: changing it has no effect through the record.
using Discarded = std::monostate;

struct Key {
    std::string_view name;
    std::variant<Discarded, bool Settings::*, float Settings::*> member;
};

// In the order in which they are read.
constexpr std::array<Key, 20> kKeys{{
    {"enableImageDump", Discarded{}},
    {"enableLogging", &Settings::enableLogging},
    {"enable", &Settings::enable},
    {"enableIconMask", &Settings::enableIconMask},
    {"enableOverlay", &Settings::enableOverlay},
    {"enableShadow", &Settings::enableShadow},
    {"dynamicShadow", &Settings::dynamicShadow},
    {"removeDock", &Settings::removeDock},
    {"removeFolderBG", &Settings::removeFolderBG},
    {"removeLabels", &Settings::removeLabels},
    {"removeIconBadges", &Settings::removeIconBadges},
    {"removePageDots", &Settings::removePageDots},
    {"shadowRadiusVal", &Settings::shadowRadiusVal},
    {"opacityVal", &Settings::opacityVal},
    {"xAxisVal", &Settings::xAxisVal},
    {"yAxisVal", &Settings::yAxisVal},
    {"shadowWidthVal", &Settings::shadowWidthVal},
    {"shadowHeightVal", &Settings::shadowHeightVal},
    {"iconReflection", Discarded{}},
    {"moreDockIcons", Discarded{}},
}};

void readKey(const Key& key, const Dictionary& store, Settings& record) {
    const platform::PropertyList* value = platform::objectForKey(store, key.name);
    if (const auto* flag = std::get_if<bool Settings::*>(&key.member)) {
        record.*(*flag) = platform::boolValue(value);
    } else if (const auto* number = std::get_if<float Settings::*>(&key.member)) {
        record.*(*number) = platform::floatValue(value);
    }
}

// The lookups' reading of the file; nothing when it gave nothing.
std::optional<Dictionary> readLookupStore() {
    return platform::platform().propertyLists.dictionaryWithContentsOfFile(kPreferencesPath);
}

bool isOn(const Dictionary& store, std::string_view key) {
    return platform::boolValue(platform::objectForKey(store, key));
}

}  // namespace

constinit Settings detail::settingsRecord;

const Dictionary& SettingsStore() {
    return state().store;
}

void loadSettings() {
    std::optional<Dictionary> read =
        platform::platform().propertyLists.dictionaryWithContentsOfFile(kPreferencesPath);
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
    if (const std::optional<Dictionary> store = readLookupStore()) {
        state().lookupImageDump = isOn(*store, "enableImageDump");
        state().lookupLogging = isOn(*store, "enableLogging");
    }
}

void refreshLookupLogging() {
    if (const std::optional<Dictionary> store = readLookupStore()) {
        state().lookupLogging = isOn(*store, "enableLogging");
    }
}

}  // namespace velmoranth::core
