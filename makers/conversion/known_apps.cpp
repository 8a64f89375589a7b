#include "makers/conversion/known_apps.h"

#include "simulator/home_screen/apps.h"

#include "makers/conversion/names.h"

#include <array>
#include <map>
#include <string>

namespace velmoranth::makers {
namespace {

struct KnownApp {
    std::string_view identifier;
    std::string_view name;
};

// Besides those of a fresh device: apps that themes have icons for, older names of the fresh
// device's, and identifiers without a dot.
constexpr std::array<KnownApp, 34> kMoreApps{{
    {"com.apple.mobileme.fmip1", "Find My iPhone"},
    {"com.apple.mobileme.fmf1", "Find My Friends"},
    {"com.apple.findmy", "Find My"},
    {"com.apple.Fitness", "Activity"},
    {"com.apple.Fitness", "Fitness"},
    {"com.apple.store.Jolly", "Apple Store"},
    {"com.apple.iMovie", "iMovie"},
    {"com.apple.Pages", "Pages"},
    {"com.apple.Numbers", "Numbers"},
    {"com.apple.Keynote", "Keynote"},
    {"com.apple.videos", "Videos"},
    {"com.apple.TVRemote", "TV Remote"},
    {"com.apple.Remote", "Remote"},
    {"com.apple.TestFlight", "TestFlight"},
    {"com.apple.shortcuts", "Shortcuts"},
    {"com.apple.gamecenter", "Game Center"},
    {"com.apple.Photo-Booth", "Photo Booth"},
    {"com.apple.iBooks", "iBooks"},
    {"com.apple.Passbook", "Passbook"},
    {"com.apple.MobileStore", "iTunes"},
    {"com.apple.Music", "iPod"},
    {"com.apple.MobileSMS", "SMS"},
    {"com.apple.MobileSMS", "Text"},
    {"com.apple.mobilenotes", "Note"},
    {"com.apple.Bridge", "Apple Watch"},
    {"com.apple.VoiceMemos", "Voice Memo"},
    {"com.apple.DocumentsApp", "iCloud Drive"},
    {"com.apple.mobileslideshow", "Camera Roll"},
    {"com.apple.Health", "Healthbook"},
    {"com.google.chrome.ios", "Google Chrome"},
    {"crash-reporter", "Crash Reporter"},
    {"imgurmobile", "Imgur"},
    {"pinterest", "Pinterest"},
    {"stumbleupon", "StumbleUpon"},
}};

// What names of apps have in common that mean the same one: in files a blank is written in several
// ways, or not at all.
std::string withoutBlanks(std::string_view name) {
    std::string text = lowerCase(name);
    std::erase_if(text, [](char c) { return c == ' ' || c == '_' || c == '-'; });
    return text;
}

using Identifiers = std::map<std::string, std::string_view>;

// By what `alike` makes of an app's key; the fresh device's first.
Identifiers identifiersBy(std::string_view simulator::App::* deviceKey,
                          std::string_view KnownApp::* key,
                          std::string (*alike)(std::string_view)) {
    Identifiers identifiers;
    for (const simulator::App* const app : simulator::allApps(simulator::stockApps())) {
        identifiers.try_emplace(alike(app->*deviceKey), app->bundleIdentifier);
    }
    for (const KnownApp& app : kMoreApps) {
        identifiers.try_emplace(alike(app.*key), app.identifier);
    }
    return identifiers;
}

std::optional<std::string_view> find(const Identifiers& identifiers, const std::string& key) {
    const auto found = identifiers.find(key);
    return found == identifiers.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace

std::optional<std::string_view> knownIdentifier(std::string_view identifier) {
    static const auto kIdentifiers =
        identifiersBy(&simulator::App::bundleIdentifier, &KnownApp::identifier, lowerCase);
    return find(kIdentifiers, lowerCase(identifier));
}

std::optional<std::string_view> identifierOfName(std::string_view name) {
    static const auto kIdentifiers =
        identifiersBy(&simulator::App::name, &KnownApp::name, withoutBlanks);
    return find(kIdentifiers, withoutBlanks(name));
}

}  // namespace velmoranth::makers
