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
constexpr std::array<KnownApp, 36> kMoreApps{{
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
    {"com.google.ios.youtube", "You Tube"},
    {"com.google.chrome.ios", "Google Chrome"},
    {"com.apple.AppStore", "AppStore"},
    {"crash-reporter", "Crash Reporter"},
    {"imgurmobile", "Imgur"},
    {"pinterest", "Pinterest"},
    {"stumbleupon", "StumbleUpon"},
}};

// Identifiers by what `key` gives of an app in lower case; the fresh device's first.
std::map<std::string, std::string_view> identifiersBy(std::string_view simulator::App::* deviceKey,
                                                      std::string_view KnownApp::* key) {
    std::map<std::string, std::string_view> identifiers;
    for (const simulator::App* const app : simulator::allApps(simulator::stockApps())) {
        identifiers.try_emplace(lowerCase(app->*deviceKey), app->bundleIdentifier);
    }
    for (const KnownApp& app : kMoreApps) {
        identifiers.try_emplace(lowerCase(app.*key), app.identifier);
    }
    return identifiers;
}

std::optional<std::string_view> find(const std::map<std::string, std::string_view>& identifiers,
                                     std::string_view key) {
    const auto found = identifiers.find(lowerCase(key));
    return found == identifiers.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace

std::optional<std::string_view> knownIdentifier(std::string_view identifier) {
    static const auto kIdentifiers =
        identifiersBy(&simulator::App::bundleIdentifier, &KnownApp::identifier);
    return find(kIdentifiers, identifier);
}

std::optional<std::string_view> identifierOfName(std::string_view name) {
    static const auto kIdentifiers = identifiersBy(&simulator::App::name, &KnownApp::name);
    return find(kIdentifiers, name);
}

}  // namespace velmoranth::makers
