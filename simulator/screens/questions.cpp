#include "simulator/screens/questions.h"

#include "simulator/artwork/artwork.h"
#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/home_screen/apps.h"
#include "simulator/home_screen/icons.h"
#include "simulator/home_screen/live_icons.h"
#include "simulator/home_screen/platform_classes.h"
#include "simulator/screens/gallery_items.h"
#include "simulator/screens/icon_places.h"
#include "simulator/screens/stock_pictures.h"
#include "simulator/screens/weather_screen.h"
#include "simulator/toolkit/device_bundles.h"
#include "simulator/toolkit/feedback_classes.h"
#include "simulator/toolkit/image_messages.h"
#include "simulator/toolkit/named_views.h"
#include "simulator/toolkit/stock_images.h"
#include "simulator/toolkit/tinted_images.h"
#include "simulator/toolkit/toolkit_objects.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

namespace velmoranth::simulator {
namespace {

using desktop::Result;
using platform::ImageRef;
using platform::NullableString;

constexpr auto kOnHomeScreen = ProcessKind::homeScreen;

constexpr std::array kQuestionRows{
    QuestionRow{"icon", "ID", "the icon of the app with that bundle identifier", kOnHomeScreen},
    QuestionRow{"image", "NAME", "an interface image, of a bundle with --bundle ID",
                ProcessKind::app},
    QuestionRow{"symbol", "NAME", "a symbol of the system", ProcessKind::app, 13},
    QuestionRow{"folder", "", "the plate of a folder's icon", kOnHomeScreen},
    QuestionRow{"behind", "", "what lies behind an open folder", kOnHomeScreen},
    QuestionRow{"miniature", "ID", "an app's icon in a folder's icon", kOnHomeScreen},
    QuestionRow{"dock", "", "the dock without its icons", kOnHomeScreen},
    QuestionRow{"badge", "", "the badge on an icon", kOnHomeScreen},
    QuestionRow{"dot", "current|other|search", "a dot below the home screen's pages",
                kOnHomeScreen},
    QuestionRow{"mask", "", "the mask that icons are cut out with", kOnHomeScreen},
    QuestionRow{"overlay", "", "the picture that is laid over icons", kOnHomeScreen},
    QuestionRow{"shadow", "", "the picture that lies under icons", kOnHomeScreen},
    QuestionRow{"pressed", "", "what lies over an icon under a finger", kOnHomeScreen},
    QuestionRow{"calendar", "", "the calendar's icon with its day", kOnHomeScreen},
    QuestionRow{"clock", "", "the clock's icon without its hands", kOnHomeScreen},
    QuestionRow{"knob", "", "the knob of a switch", ProcessKind::app},
    QuestionRow{"weather", "NAME", "a picture of the weather app", ProcessKind::weather},
    QuestionRow{"settings", "KEY", "an icon of the settings app", ProcessKind::settings},
    QuestionRow{"notification", "ID", "an app's icon on a notification", kOnHomeScreen},
    QuestionRow{"widget", "ID", "an app's icon on a widget", kOnHomeScreen},
    QuestionRow{"suggestion", "ID", "an app's icon among the suggested ones", kOnHomeScreen},
    QuestionRow{"sound", "ID|event:N", "the sound of that number or event", kOnHomeScreen},
};

// The stock device's app, or one that it does not have.
App appOf(const std::string& identifier) {
    const App* const known = stockApp(identifier);
    return known == nullptr ? App{identifier, identifier, "SBApplicationIcon"} : *known;
}

// What the gallery shows under a heading by that name.
ImageRef galleryImage(const ScreenContext& context, std::string_view group, std::string_view name) {
    const GalleryItems items(context);
    const auto found = std::ranges::find_if(items.all(), [&](const GalleryItem& item) {
        return item.group == group && item.name == name;
    });
    return found == items.all().end() ? nullptr : found->after();
}

ImageRef iconOf(const Question& question, const ScreenContext& context) {
    const App app = appOf(question.argument);
    return context.runtime.send<ImageRef>(
        *makeIconImageView(makeApplicationIcon(app), app, context.device.system), "contentsImage");
}

ImageRef imageOf(const Question& question, const ScreenContext& context) {
    if (question.bundle.empty()) {
        return ImageMessages(context.runtime, context.toolkit).kitImageNamed(question.argument);
    }
    platform::BundleRef bundle = context.toolkit.bundle(question.bundle);
    if (bundle == nullptr) {
        // An app's that this device does not have.
        bundle = std::make_shared<LoadedBundle>(question.bundle,
                                                "/Applications/" + question.bundle + ".app");
    }
    const platform::ObjectRef traits = std::make_shared<TraitCollection>(context.device);
    return context.runtime
        .sendToClass<ImageRef, NullableString, platform::BundleRef, platform::ObjectRef>(
            "UIImage", "imageNamed:inBundle:compatibleWithTraitCollection:", question.argument,
            bundle, traits);
}

// Of the library's own class, as its replacements ask for it.
ImageRef ownImage(const ScreenContext& context, const char* selector) {
    return context.runtime.sendToClass<ImageRef>("VelMoranth", selector);
}

ImageRef shadow(const ScreenContext& context) {
    const auto view =
        context.runtime.sendToClass<platform::ImageViewRef>("VelMoranth", "addShadowToIcon");
    return view == nullptr ? nullptr : view->image();
}

ImageRef settingsIcon(const Question& question, const ScreenContext& context) {
    const auto cache = std::make_shared<Named<"PKIconImageCache", platform::PKIconImageCache>>();
    return context.runtime.send<ImageRef, NullableString>(*cache,
                                                          "imageForKey:", question.argument);
}

// The icons that the home screen draws itself are asked for like every other: one with the class of
// the stock app's icon.
constexpr const char* kClockApp = "com.apple.mobiletimer";

ImageRef weatherPicture(const Question& question, const ScreenContext& context) {
    if (context.device.system.major >= 13) {
        return context.runtime.sendToClass<ImageRef, NullableString, long long>(
            "WeatherImageLoader", "conditionImageNamed:style:", question.argument,
            static_cast<long long>(WeatherStyle::onColor));
    }
    const platform::ObjectRef traits = std::make_shared<TraitCollection>(context.device);
    return ImageMessages(context.runtime, context.toolkit)
        .imageNamedInBundleCompatibleWithTraitCollection(question.argument, kWeatherBundle, traits);
}

constexpr std::string_view kEvent = "event:";

Result<ImageRef> soundOf(const Question& question, const ScreenContext& context) {
    const bool isEvent = question.argument.starts_with(kEvent);
    const std::string_view digits =
        std::string_view(question.argument).substr(isEvent ? kEvent.size() : 0);
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size() ||
        (!isEvent && number > std::numeric_limits<std::uint32_t>::max())) {
        return tl::unexpected(
            desktop::Problem{"a sound is a number or event:NUMBER, not " + question.argument});
    }
    if (isEvent) {
        playFeedbackEvent(context.runtime, number, nullptr);
    } else {
        context.runtime.send<void>(
            *makeFeedback(context.runtime, static_cast<std::uint32_t>(number)), "play");
    }
    return ImageRef();
}

struct GalleryName {
    std::string_view word;
    std::string_view argument;
    std::string_view group;
    std::string_view name;
};

constexpr std::string_view kFurniture = "Home Screen";
constexpr std::array kGalleryNames{
    GalleryName{"folder", "", kFurniture, "Folder Icon"},
    GalleryName{"behind", "", kFurniture, "Behind Open Folder"},
    GalleryName{"dock", "", kFurniture, "Dock"},
    GalleryName{"badge", "", kFurniture, "Badge"},
    GalleryName{"dot", "current", kFurniture, "Current Page Dot"},
    GalleryName{"dot", "other", kFurniture, "Page Dot"},
    GalleryName{"dot", "search", kFurniture, "Search Dot"},
    GalleryName{"pressed", "", kFurniture, "Pressed Icon"},
    GalleryName{"knob", "", "Controls", "UISwitchKnob.png"},
};

struct Answers {
    std::string_view word;
    ImageRef (*answer)(const Question& question, const ScreenContext& context);
};

constexpr std::array kAnswers{
    Answers{"icon", iconOf},
    Answers{"image", imageOf},
    Answers{"symbol",
            [](const Question& question, const ScreenContext& context) {
                return ImageMessages(context.runtime, context.toolkit)
                    .systemImageNamed(question.argument);
            }},
    Answers{"miniature",
            [](const Question& question, const ScreenContext& context) {
                return context.runtime.send<ImageRef, platform::SBIconRef>(
                    *context.folderIconImageCache,
                    "gridCellImageForIcon:", makeApplicationIcon(appOf(question.argument)));
            }},
    Answers{"mask", [](const Question&,
                       const ScreenContext& context) { return ownImage(context, "iconMask"); }},
    Answers{"overlay",
            [](const Question&, const ScreenContext& context) {
                return ownImage(context, "iconOverlay");
            }},
    Answers{"shadow",
            [](const Question&, const ScreenContext& context) { return shadow(context); }},
    Answers{"calendar",
            [](const Question&, const ScreenContext& context) {
                return iconOf({"icon", std::string(kCalendarIdentifier), ""}, context);
            }},
    Answers{"clock",
            [](const Question&, const ScreenContext& context) {
                return iconOf({"icon", kClockApp, ""}, context);
            }},
    Answers{"weather", weatherPicture},
    Answers{"settings", settingsIcon},
    Answers{"notification",
            [](const Question& question, const ScreenContext& context) {
                return notificationIcon(question.argument, context);
            }},
    Answers{"widget",
            [](const Question& question, const ScreenContext& context) {
                return widgetIcon(question.argument, context);
            }},
    Answers{"suggestion",
            [](const Question& question, const ScreenContext& context) {
                return suggestedIcon(question.argument, context);
            }},
};

}  // namespace

std::span<const QuestionRow> questionRows() {
    return kQuestionRows;
}

const QuestionRow* questionRowNamed(std::string_view word) {
    const auto* const found = std::ranges::find(kQuestionRows, word, &QuestionRow::word);
    return found == kQuestionRows.end() ? nullptr : found;
}

bool takesArgument(const QuestionRow& row, std::string_view argument) {
    if (row.argument.empty() || argument.empty()) {
        return row.argument.empty() && argument.empty();
    }
    if (row.argument.find('|') == std::string_view::npos || row.word == "sound") {
        return true;
    }
    return ("|" + std::string(row.argument) + "|").find("|" + std::string(argument) + "|") !=
           std::string::npos;
}

std::vector<std::string> knownArguments(const QuestionRow& row, std::string_view bundle) {
    std::vector<std::string> known;
    const auto add = [&](std::string_view name) {
        if (std::ranges::find(known, name) == known.end()) {
            known.emplace_back(name);
        }
    };
    if (row.argument == "ID") {
        for (const App* const app : homeScreenApps()) {
            add(app->bundleIdentifier);
        }
        for (const auto apps : {dockApps(), suggestedApps()}) {
            std::ranges::for_each(apps, add, &App::bundleIdentifier);
        }
    } else if (row.word == "weather") {
        std::ranges::for_each(weatherConditionNames(), add);
    } else if (row.word == "settings") {
        std::ranges::for_each(settingsIconNames(), add);
    } else if (row.word == "image" || row.word == "symbol") {
        const Question question{std::string(row.word), "", std::string(bundle)};
        const std::string_view asked = catalogOf(question);
        for (const BundleCatalog& catalog : bundleCatalogs()) {
            if (catalog.identifier == asked) {
                std::ranges::for_each(catalog.names(), add);
            }
        }
    }
    return known;
}

std::string_view catalogOf(const Question& question) {
    if (question.word == "image") {
        return question.bundle.empty() ? kToolkitBundle : std::string_view(question.bundle);
    }
    return question.word == "symbol"     ? kGlyphsBundle
           : question.word == "weather"  ? kWeatherBundle
           : question.word == "settings" ? kPreferencesBundle
                                         : "";
}

bool takesTint(const Question& question) {
    return std::ranges::any_of(bundleCatalogs(), [&](const BundleCatalog& catalog) {
        return catalog.identifier == catalogOf(question) &&
               std::ranges::find(catalog.names(), question.argument) != catalog.names().end() &&
               takesTint(catalog, question.argument);
    });
}

std::vector<std::string> knownBundles() {
    std::vector<std::string> known;
    for (const BundleCatalog& catalog : bundleCatalogs()) {
        if (std::ranges::find(known, catalog.identifier) == known.end()) {
            known.emplace_back(catalog.identifier);
        }
    }
    return known;
}

Result<ImageRef> ask(const Question& question, const ScreenContext& context) {
    const QuestionRow* const row = questionRowNamed(question.word);
    if (row == nullptr || !takesArgument(*row, question.argument)) {
        return tl::unexpected(desktop::Problem{"there is no such question"});
    }
    if (context.device.system.major < row->firstSystem) {
        return tl::unexpected(
            desktop::Problem{"iOS " + std::to_string(context.device.system.major) + " has no " +
                             question.word + ": nothing asks for one"});
    }
    if (question.word == "sound") {
        return soundOf(question, context);
    }
    const auto* const place = std::ranges::find_if(kGalleryNames, [&](const GalleryName& name) {
        return name.word == question.word && name.argument == question.argument;
    });
    if (place != kGalleryNames.end()) {
        return galleryImage(context, place->group, place->name);
    }
    const auto* const answers = std::ranges::find(kAnswers, question.word, &Answers::word);
    return answers == kAnswers.end() ? ImageRef() : answers->answer(question, context);
}

}  // namespace velmoranth::simulator
