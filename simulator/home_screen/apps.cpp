#include "simulator/home_screen/apps.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace velmoranth::simulator {
namespace {

constexpr std::string_view kIcon = "SBApplicationIcon";

// About the order of iOS 13's first page, then apps of the store.
constexpr std::array<App, 27> kApps{{
    {"com.apple.facetime", "FaceTime", kIcon},
    {"com.apple.mobilecal", "Calendar", "SBCalendarApplicationIcon"},
    {"com.apple.mobileslideshow", "Photos", kIcon},
    {"com.apple.camera", "Camera", kIcon},
    {"com.apple.mobilemail", "Mail", kIcon, "27"},
    {"com.apple.mobiletimer", "Clock", "SBClockApplicationIcon"},
    {"com.apple.Maps", "Maps", kIcon},
    {"com.apple.weather", "Weather", kIcon},
    {"com.apple.reminders", "Reminders", kIcon, "5"},
    {"com.apple.mobilenotes", "Notes", kIcon},
    {"com.apple.stocks", "Stocks", kIcon},
    {"com.apple.news", "News", kIcon},
    {"com.apple.iBooks", "Books", kIcon},
    {"com.apple.AppStore", "App Store", kIcon, "4"},
    {"com.apple.podcasts", "Podcasts", kIcon},
    {"com.apple.tv", "TV", kIcon},
    {"com.apple.Health", "Health", kIcon},
    {"com.apple.Home", "Home", kIcon},
    {"com.apple.Preferences", "Settings", kIcon, "1"},
    {"com.apple.Passbook", "Wallet", kIcon},
    {"com.google.ios.youtube", "YouTube", kIcon},
    {"com.spotify.client", "Spotify", kIcon},
    {"com.netflix.Netflix", "Netflix", kIcon},
    {"com.google.Gmail", "Gmail", kIcon, "1,204"},
    {"com.google.chrome.ios", "Chrome", kIcon},
    {"com.google.Maps", "Google Maps", kIcon},
    {"com.google.Drive", "Google Drive", kIcon},
}};

// More than the nine that a page of a folder holds.
constexpr std::array<App, 10> kUtilities{{
    {"com.apple.VoiceMemos", "Voice Memos", kIcon},
    {"com.apple.compass", "Compass", kIcon},
    {"com.apple.measure", "Measure", kIcon},
    {"com.apple.calculator", "Calculator", kIcon},
    {"com.apple.MobileAddressBook", "Contacts", kIcon},
    {"com.apple.Bridge", "Watch", kIcon},
    {"com.apple.tips", "Tips", kIcon},
    {"com.apple.DocumentsApp", "Files", kIcon},
    {"com.apple.MobileStore", "iTunes Store", kIcon},
    {"com.saurik.Cydia", "Cydia", kIcon},
}};

constexpr std::array<App, 5> kSocial{{
    {"com.burbn.instagram", "Instagram", kIcon},
    {"net.whatsapp.WhatsApp", "WhatsApp", kIcon, "3"},
    {"com.facebook.Facebook", "Facebook", kIcon},
    {"com.atebits.Tweetie2", "Twitter", kIcon, "12"},
    {"com.toyopagroup.picaboo", "Snapchat", kIcon},
}};

constexpr std::array<Folder, 2> kFolders{{
    {"folder.utilities", "Utilities", kUtilities},
    {"folder.social", "Social", kSocial},
}};

// Where the folders stand among the items of the home screen, from 0.
constexpr std::array<std::size_t, kFolders.size()> kFolderPlaces{14, 22};

constexpr std::array<App, 4> kDockApps{{
    {"com.apple.mobilephone", "Phone", kIcon},
    {"com.apple.mobilesafari", "Safari", kIcon},
    {"com.apple.MobileSMS", "Messages", kIcon, "2"},
    {"com.apple.Music", "Music", kIcon},
}};

constexpr std::array<App, 3> kSuggestedApps{{
    {"com.apple.mobilenotes", "Notes", kIcon},
    {"com.apple.Maps", "Maps", kIcon},
    {"com.apple.iBooks", "Books", kIcon},
}};

constexpr auto kItems = [] {
    std::array<HomeScreenItem, kApps.size() + kFolders.size()> items{};
    std::size_t app = 0;
    std::size_t folder = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (folder < kFolders.size() && kFolderPlaces.at(folder) == i) {
            items.at(i) = {nullptr, &kFolders.at(folder++)};
        } else {
            items.at(i) = {&kApps.at(app++), nullptr};
        }
    }
    return items;
}();

constexpr auto kAllApps = [] {
    std::array<const App*, kApps.size() + kUtilities.size() + kSocial.size()> apps{};
    std::size_t count = 0;
    for (const App& app : kApps) {
        apps.at(count++) = &app;
    }
    for (const Folder& folder : kFolders) {
        for (const App& app : folder.apps) {
            apps.at(count++) = &app;
        }
    }
    return apps;
}();

// The digits of a badge's text as a number; 0 without any.
long numberOf(std::string_view badge) {
    long number = 0;
    for (const char c : badge) {
        if (c >= '0' && c <= '9') {
            number = number * 10 + (c - '0');
        }
    }
    return number;
}

}  // namespace

std::string identifierOf(const HomeScreenItem& item) {
    return std::string(item.folder == nullptr ? item.app->bundleIdentifier
                                              : item.folder->identifier);
}

std::string nameOf(const HomeScreenItem& item) {
    return std::string(item.folder == nullptr ? item.app->name : item.folder->name);
}

std::string badgeOf(const HomeScreenItem& item) {
    if (item.folder == nullptr) {
        return std::string(item.app->badge);
    }
    long sum = 0;
    for (const App& app : item.folder->apps) {
        sum += numberOf(app.badge);
    }
    return sum == 0 ? "" : std::to_string(sum);
}

HomeScreenApps stockApps() {
    return {kItems, kDockApps, kSuggestedApps};
}

std::vector<const App*> allApps(const HomeScreenApps& apps) {
    std::vector<const App*> all;
    for (const HomeScreenItem& item : apps.items) {
        if (item.folder == nullptr) {
            all.push_back(item.app);
            continue;
        }
        for (const App& app : item.folder->apps) {
            all.push_back(&app);
        }
    }
    for (const App& app : apps.dock) {
        all.push_back(&app);
    }
    return all;
}

const App* stockApp(std::string_view identifier) {
    const std::vector<const App*> apps = allApps(stockApps());
    const auto found = std::ranges::find(apps, identifier, &App::bundleIdentifier);
    return found == apps.end() ? nullptr : *found;
}

std::span<const HomeScreenItem> homeScreenItems() {
    return kItems;
}

std::span<const App* const> homeScreenApps() {
    return kAllApps;
}

std::span<const App> dockApps() {
    return kDockApps;
}

std::span<const App> suggestedApps() {
    return kSuggestedApps;
}

}  // namespace velmoranth::simulator
