// The replacements that the platform calls on threads of its own choice, asked on eight at once
// while the theme changes on the main thread. Every answer is a whole image of one of the two
// themes, or the platform's where a miss is one. What is asked of the services stays unrecorded: a
// journal that all threads write would put their steps in an order that they do not have.
#include "core/hook_table.h"
#include "core/theme_change.h"
#include "desktop/plist/property_lists.h"
#include "desktop/services/services.h"
#include "hooks/images/icon_source_hooks.h"
#include "tests/support/test_device.h"
#include "tests/threads/platform_methods.h"
#include "tests/threads/request_objects.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace velmoranth::tests::image_requests_test {
namespace {

using namespace request_objects;  // NOLINT(google-build-using-namespace): for these tests alone
using platform::BundleRef;
using platform::Dictionary;
using platform::ImageRef;
using platform::PropertyList;

constexpr int kThreads = 8;
constexpr int kRounds = 40;

// Which images are an answer to a request.
enum class Answers {
    ofTheThemes,  // both have it, so one of theirs
    ofAnybody,    // or the platform's
    drawn,        // any image: it is put together
};

struct Request {
    std::string name;
    Answers answers;
    // Sends the message; the number differs from thread to thread and from round to round.
    std::function<BitmapImageRef(int number)> send;
};

class ImageRequests {
  public:
    explicit ImageRequests(double versionNumber)
        : services_(
              root(device),
              {.system = {versionNumber == kiOS12 ? 12 : 13, 3, 0},
               .coreFoundationVersion = versionNumber,
               .idiom = desktop::InterfaceIdiom::pad,
               .siblings = desktop::ScaledSiblings::off},
              [this](const std::string&) { logged.fetch_add(1, std::memory_order_relaxed); }) {
        services_.becomePlatform();
        methods_.addTo(services_.runtime());
        core::HookTable::install();
        for (const std::string theme : {"A", "B"}) {
            makeTheme(theme, theme == "A" ? kRed : kBlue);
        }
        changeTheme(0);
        addIcons(versionNumber == kiOS12);
        addServices();
        addNamedImages();
        addCatalogImages();
        addDrawnIcons();
    }

    // Sends none but this one from now on; all threads are in it when the platform is called first.
    void keepOnly(const std::string& name) {
        std::erase_if(requests_, [&name](const Request& request) { return request.name != name; });
        methods_.letMeet(kThreads);
    }

    // Every thread sends every request so many times, each in an order of its own, while the main
    // thread changes the theme. Tells which requests were answered wrongly and how often.
    std::map<std::string, int> wrongAnswers(int rounds) {
        std::vector<std::atomic<int>> wrong(requests_.size());
        std::atomic<int> ready = 0;
        std::atomic<int> atWork = kThreads;
        std::vector<std::thread> threads;
        for (int thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([&, thread] {
                ready.fetch_add(1);
                while (ready.load() < kThreads) {
                    std::this_thread::yield();
                }
                for (int round = 0; round < rounds; ++round) {
                    for (std::size_t i = 0; i < requests_.size(); ++i) {
                        const std::size_t chosen =
                            (i + static_cast<std::size_t>(thread + round)) % requests_.size();
                        const Request& request = requests_[chosen];
                        if (!isAnswer(request.send(thread + round), request.answers)) {
                            wrong[chosen].fetch_add(1);
                        }
                    }
                }
                atWork.fetch_sub(1);
            });
        }
        for (int change = 1; atWork.load() > 0; ++change) {
            changeTheme(change);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        std::map<std::string, int> all;
        for (std::size_t i = 0; i < requests_.size(); ++i) {
            if (wrong[i] > 0) {
                all[requests_[i].name] = wrong[i];
            }
        }
        return all;
    }

    // The user puts the other theme first, switches logging on or off, and the notice tells of it.
    void changeTheme(int change) {
        const bool aIsFirst = change % 2 == 0;
        const Dictionary preferences{{"ActiveThemes", aIsFirst ? PropertyList::Array{"A", "B"}
                                                               : PropertyList::Array{"B", "A"}},
                                     {"enable", true},
                                     {"enableIconMask", true},
                                     {"enableOverlay", true},
                                     {"enableLogging", change % 3 == 0},
                                     {"enableImageDump", dumps}};
        // Whole, as the panel writes them: a lookup on another thread reads the old or the new.
        ASSERT_TRUE(platform::platform().fileManager.writeToFileAtomically(
            desktop::writeXmlPropertyList(preferences),
            "/User/Library/Preferences/com.qor.velmoranthprefs.plist"));
        core::ThemePreferencesChangedCallback(services_.notifications(), nullptr,
                                              "com.qor.velmoranththemechanged.prefs", nullptr,
                                              nullptr);
    }

    TestDevice device;

    [[nodiscard]] int platformCalls() const { return methods_.calls(); }

    std::atomic<int> logged = 0;
    bool dumps = false;

  private:
    static std::shared_ptr<desktop::DeviceRoot> root(const TestDevice& device) {
        auto opened = desktop::DeviceRoot::open(device.hostFolder());
        if (!opened) {
            throw std::runtime_error(desktop::toLine(opened.error()));
        }
        return *opened;
    }

    static bool isAnswer(const BitmapImageRef& image, Answers answers) {
        const Pixels pixels = drawnPixels(image);
        if (pixels.values.empty() || answers == Answers::drawn) {
            return !pixels.values.empty();
        }
        const Pixel& middle = pixels.at(pixels.width / 2, pixels.height / 2);
        return middle == kRed || middle == kBlue ||
               (middle == kGreen && answers == Answers::ofAnybody);
    }

    // An icon, a mask that shows all, an overlay that covers nothing, and an image by every name.
    void makeTheme(const std::string& theme, Pixel color) const {
        const std::string folder = "/Library/Themes/" + theme + "/";
        const Pixels picture = solid(6, 6, color);
        for (const char* const icon : {"com.app", "com.app0", "com.app1", "com.app2", "(null)"}) {
            device.png(folder + "IconBundles/" + icon + "-large.png", picture);
        }
        device.png(folder + "Bundles/com.apple.mobileicons.framework/AppIconMask.png",
                   solid(4, 4, {0, 0, 0, 255}));
        device.png(folder + "Velmoranth/iPadOverlay.png", solid(4, 4, {0, 0, 0, 0}));
        for (const char* const image :
             {"UIImages/UISwitchKnob.png", "UIImages/loose", "UIImages/glyph",
              "Bundles/com.x.kit/kit", "Bundles/com.x.kit/catalogued",
              "Bundles/com.apple.Preferences/Wifi", "Bundles/com.apple.weather-framework/rain",
              "Bundles/com.apple.weather-framework/sun",
              "Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare"}) {
            device.png(folder + image + "@3x.png", picture);
        }
    }

    template <class... Args, class Receiver>
    BitmapImageRef sent(Receiver& receiver, const std::string& selector, Args... arguments) {
        return platform::bitmapOf(services_.runtime().send<ImageRef, Args...>(
            receiver, selector, std::move(arguments)...));
    }

    template <class... Args>
    BitmapImageRef sentToClass(const std::string& className, const std::string& selector,
                               Args... arguments) {
        return platform::bitmapOf(services_.runtime().sendToClass<ImageRef, Args...>(
            className, selector, std::move(arguments)...));
    }

    void add(std::string name, Answers answers, std::function<BitmapImageRef(int)> send) {
        requests_.push_back({std::move(name), answers, std::move(send)});
    }

    // One of three apps.
    static std::string app(int number) { return "com.app" + std::to_string(number % 3); }

    void addIcons(bool iOS12) {
        const auto cache =
            std::make_shared<Plain<platform::SBHIconImageCache>>("SBHIconImageCache");
        for (const std::string selector : {"imageForIcon:", "unmaskedImageForIcon:"}) {
            add(selector, Answers::ofTheThemes, [this, cache, selector](int number) {
                return sent<SBIconRef>(*cache, selector, iconNamed(app(number)));
            });
        }
        const auto folders =
            std::make_shared<Plain<platform::SBFolderIconImageCache>>("SBFolderIconImageCache");
        add("gridCellImageForIcon:", Answers::ofTheThemes, [this, folders](int number) {
            return sent<SBIconRef>(*folders, "gridCellImageForIcon:", iconNamed(app(number)));
        });
        add("contentsImage", Answers::ofTheThemes, [this](int number) {
            const auto view = std::make_shared<IconImageView>();
            view->shown = iconNamed(app(number));
            return sent<>(*view, "contentsImage");
        });
        add("_applicationIconImageForBundleIdentifier:format:scale:", Answers::ofTheThemes,
            [this](int number) {
                return sentToClass<NullableString, int, double>(
                    "UIImage",
                    "_applicationIconImageForBundleIdentifier:format:scale:", app(number), 2, 3.0);
            });
        if (iOS12) {
            add("getUnmaskedIconImage:", Answers::ofTheThemes, [this](int number) {
                return sent<int>(*iconNamed(app(number)), "getUnmaskedIconImage:", 2);
            });
        }
    }

    void addServices() {
        const auto anonymous = std::make_shared<Widget>(std::nullopt);
        const auto known = std::make_shared<Widget>("com.app1");
        const auto icon = [this](const std::shared_ptr<Widget>& widget) {
            return sent<platform::Size, double, NullableString, ObjectRef>(*widget, kWidget, {4, 4},
                                                                           3.0, "com.app", nullptr);
        };
        add("a widget without identifier", Answers::ofTheThemes,
            [anonymous, icon](int) { return icon(anonymous); });
        add("a widget", Answers::ofAnybody, [known, icon](int) { return icon(known); });
        const auto banner =
            std::make_shared<PlainView<platform::SBSwitcherAppSuggestionBannerView>>(
                "SBSwitcherAppSuggestionBannerView");
        add("a banner", Answers::ofTheThemes, [this, banner](int number) {
            return sent<NullableString, ObjectRef>(*banner, kBanner, app(number), nullptr);
        });
        const auto settings =
            std::make_shared<Plain<platform::PKIconImageCache>>("PKIconImageCache");
        add("imageForKey:", Answers::ofTheThemes, [this, settings](int) {
            return sent<NullableString>(*settings, "imageForKey:", "Wifi");
        });
        const auto notification = std::make_shared<NotificationIcon>();
        add("a notification", Answers::ofTheThemes, [this, notification](int number) {
            return sent<NullableString, NullableString, NullableString>(
                *notification, kNotification, app(number), "/a/path", app(number));
        });
        add("iconForBundleIdentifier:", Answers::ofTheThemes, [this](int number) {
            return sentToClass<NullableString>("APWUtil", "iconForBundleIdentifier:", app(number));
        });
        const auto element = std::make_shared<PlainView<platform::UISwitchModernVisualElement>>(
            "UISwitchModernVisualElement");
        add("a switch's knob", Answers::ofTheThemes,
            [this, element](int) { return sent<>(*element, "_effectiveThumbImage"); });
        add("the weather", Answers::ofTheThemes, [this](int number) {
            return sentToClass<NullableString, long long>(
                "WeatherImageLoader",
                "conditionImageNamed:style:", number % 2 == 0 ? "rain" : "sun",
                static_cast<long long>(number % 4 / 2));
        });
    }

    void addNamedImages() {
        for (const std::string selector : {"systemImageNamed:", "kitImageNamed:"}) {
            add(selector, Answers::ofTheThemes, [this, selector](int) {
                return sentToClass<NullableString>("UIImage", selector, "loose");
            });
        }
        for (const std::string selector : {"_imageNamed:withTrait:", "_kitImageNamed:withTrait:"}) {
            add(selector, Answers::ofTheThemes, [this, selector](int) {
                return sentToClass<NullableString, ObjectRef>("UIImage", selector, "loose",
                                                              nullptr);
            });
        }
        add("imageNamed:inBundle:", Answers::ofTheThemes, [this](int) {
            return sentToClass<NullableString, BundleRef>("UIImage", "imageNamed:inBundle:", "kit",
                                                          bundle_);
        });
        for (const std::string selector : {"imageNamed:inBundle:withConfiguration:",
                                           "imageNamed:inBundle:compatibleWithTraitCollection:"}) {
            add(selector, Answers::ofTheThemes, [this, selector](int) {
                return sentToClass<NullableString, BundleRef, ObjectRef>("UIImage", selector, "kit",
                                                                         bundle_, nullptr);
            });
        }
        add("a name that no theme has", Answers::ofAnybody, [this](int) {
            return sentToClass<NullableString>("UIImage", "kitImageNamed:", "nowhere");
        });
        add("a wallpaper", Answers::ofAnybody, [this](int) {
            return sentToClass<NullableString, int>(
                "UIImage", "imageWithContentsOfCPBitmapFile:flags:",
                "/var/mobile/Library/SpringBoard/OriginalHomeBackground.cpbitmap", 0);
        });
    }

    void addCatalogImages() {
        const auto catalog = std::make_shared<Keeper>("CUICatalog", bundle_);
        const auto asset = std::make_shared<Keeper>("UIImageAsset", bundle_);
        const auto glyph = std::make_shared<Glyph>(catalog);
        const auto content = std::make_shared<Content>(glyph);
        const auto image = std::make_shared<CatalogImage>();
        add("a content", Answers::ofTheThemes, [this, content](int) {
            return services_.runtime().send<BitmapImageRef>(*content, "CGImage");
        });
        // In the bundle there is none by that name: the platform's, unless a content has asked.
        add("a glyph", Answers::ofAnybody, [this, glyph](int) {
            return services_.runtime().send<BitmapImageRef>(*glyph, "image");
        });
        add("a glyph from its asset", Answers::ofAnybody, [this, glyph, asset](int) {
            return sent<ObjectRef, ObjectRef, bool>(*glyph, kFromAsset, asset, nullptr, false);
        });
        add("an image from its asset", Answers::ofTheThemes, [this, image, asset](int) {
            return sent<ObjectRef, ObjectRef, bool, ObjectRef>(*image, kFromAssetAndVector, asset,
                                                               nullptr, false, nullptr);
        });
    }

    void addDrawnIcons() {
        static constexpr platform::SBIconImageInfo kInfo{.size = {20, 20}};
        const auto calendar = std::make_shared<CalendarIcon>();
        add("the calendar", Answers::drawn, [this, calendar](int) {
            return sent<platform::SBIconImageInfo>(*calendar, "generateIconImageWithInfo:", kInfo);
        });
        add("the clock", Answers::ofTheThemes, [this](int) {
            return sentToClass<NullableString, platform::SBIconImageInfo, bool>(
                "SBHClockApplicationIconImageView", kClock, "ClockIconBackgroundSquare", kInfo,
                true);
        });
    }

    desktop::Services services_;
    PlatformMethods methods_{device.image(solid(12, 12, kGreen))};
    const BundleRef bundle_ = std::make_shared<Bundle>();
    std::vector<Request> requests_;
};

class OnEightThreads : public testing::TestWithParam<double> {};

std::string systemName(const testing::TestParamInfo<double>& info) {
    return info.param == kiOS12 ? "iOS12" : "iOS13";
}

INSTANTIATE_TEST_SUITE_P(Of, OnEightThreads, testing::Values(kiOS12, kiOS13), systemName);

TEST_P(OnEightThreads, EveryImageIsWholeWhileTheThemeChanges) {
    ImageRequests requests(GetParam());
    EXPECT_EQ(requests.wrongAnswers(kRounds), (std::map<std::string, int>{}));
    EXPECT_GT(requests.platformCalls(), 0);
    EXPECT_GT(requests.logged, 0);
    // Made once: nothing that was stored is lost.
    const std::vector<std::string> keys = hooks::WeatherImageKeys();
    EXPECT_EQ(std::set<std::string>(keys.begin(), keys.end()),
              (std::set<std::string>{"rain.0", "rain.1", "sun.0", "sun.1"}));
    EXPECT_NE(hooks::SwitchKnobImage(), nullptr);
}

// What is kept for the life of the process is made by the first request: here all come first.
TEST_P(OnEightThreads, TheWeathersImagesAreMadeOnce) {
    ImageRequests requests(GetParam());
    requests.keepOnly("the weather");
    EXPECT_EQ(requests.wrongAnswers(4), (std::map<std::string, int>{}));
    EXPECT_GE(hooks::WeatherImageKeys().size(), 4U);
}

TEST_P(OnEightThreads, TheSwitchsKnobIsKeptWhole) {
    ImageRequests requests(GetParam());
    requests.keepOnly("a switch's knob");
    EXPECT_EQ(requests.wrongAnswers(4), (std::map<std::string, int>{}));
    EXPECT_NE(hooks::SwitchKnobImage(), nullptr);
}

TEST_P(OnEightThreads, EveryDumpedImageIsWhole) {
    ImageRequests requests(GetParam());
    requests.dumps = true;
    EXPECT_EQ(requests.wrongAnswers(2), (std::map<std::string, int>{}));
    int found = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(
             requests.device.hostFolder() + "/var/mobile/Library/VelmoranthImageDump")) {
        if (entry.is_regular_file()) {
            const ImageRef image = requests.device.images().imageWithContentsOfFile(
                entry.path().string().substr(requests.device.hostFolder().size()));
            EXPECT_NE(image, nullptr) << entry.path();
            ++found;
        }
    }
    EXPECT_GE(found, 8);
}

}  // namespace
}  // namespace velmoranth::tests::image_requests_test
