#include "simulator/apps.h"

#include <array>

namespace velmoranth::simulator {
namespace {

constexpr std::string_view kIcon = "SBApplicationIcon";

// The order of iOS 13's first page, then the platform's other apps, then apps of the store.
constexpr std::array<App, 42> kHomeScreenApps{{
    {"com.apple.facetime", "FaceTime", kIcon},
    {"com.apple.mobilecal", "Calendar", "SBCalendarApplicationIcon"},
    {"com.apple.mobileslideshow", "Photos", kIcon},
    {"com.apple.camera", "Camera", kIcon},
    {"com.apple.mobilemail", "Mail", kIcon},
    {"com.apple.mobiletimer", "Clock", "SBClockApplicationIcon"},
    {"com.apple.Maps", "Maps", kIcon},
    {"com.apple.weather", "Weather", kIcon},
    {"com.apple.reminders", "Reminders", kIcon},
    {"com.apple.mobilenotes", "Notes", kIcon},
    {"com.apple.stocks", "Stocks", kIcon},
    {"com.apple.news", "News", kIcon},
    {"com.apple.iBooks", "Books", kIcon},
    {"com.apple.AppStore", "App Store", kIcon},
    {"com.apple.podcasts", "Podcasts", kIcon},
    {"com.apple.tv", "TV", kIcon},
    {"com.apple.Health", "Health", kIcon},
    {"com.apple.Home", "Home", kIcon},
    {"com.apple.Passbook", "Wallet", kIcon},
    {"com.apple.Preferences", "Settings", kIcon},
    {"com.apple.DocumentsApp", "Files", kIcon},
    {"com.apple.MobileStore", "iTunes Store", kIcon},
    {"com.apple.calculator", "Calculator", kIcon},
    {"com.apple.MobileAddressBook", "Contacts", kIcon},
    {"com.apple.VoiceMemos", "Voice Memos", kIcon},
    {"com.apple.compass", "Compass", kIcon},
    {"com.apple.measure", "Measure", kIcon},
    {"com.apple.Bridge", "Watch", kIcon},
    {"com.apple.tips", "Tips", kIcon},
    {"com.burbn.instagram", "Instagram", kIcon},
    {"com.google.ios.youtube", "YouTube", kIcon},
    {"net.whatsapp.WhatsApp", "WhatsApp", kIcon},
    {"com.facebook.Facebook", "Facebook", kIcon},
    {"com.atebits.Tweetie2", "Twitter", kIcon},
    {"com.toyopagroup.picaboo", "Snapchat", kIcon},
    {"com.spotify.client", "Spotify", kIcon},
    {"com.netflix.Netflix", "Netflix", kIcon},
    {"com.google.Gmail", "Gmail", kIcon},
    {"com.google.chrome.ios", "Chrome", kIcon},
    {"com.google.Maps", "Google Maps", kIcon},
    {"com.google.Drive", "Google Drive", kIcon},
    {"com.saurik.Cydia", "Cydia", kIcon},
}};

constexpr std::array<App, 4> kDockApps{{
    {"com.apple.mobilephone", "Phone", kIcon},
    {"com.apple.mobilesafari", "Safari", kIcon},
    {"com.apple.MobileSMS", "Messages", kIcon},
    {"com.apple.Music", "Music", kIcon},
}};

}  // namespace

std::span<const App> homeScreenApps() {
    return kHomeScreenApps;
}

std::span<const App> dockApps() {
    return kDockApps;
}

}  // namespace velmoranth::simulator
