// The requests of the scenarios that the phone's side is compared by, explained: what explain says
// of one is what the engine on the desktop's services has noted at the same request.
#include "cli/explanation.h"
#include "cli/preferences.h"
#include "desktop/plist/property_lists.h"
#include "simulator/screens/question_rows.h"
#include "tests/cli/explain_records.h"
#include "tests/cli/recorded_step.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include "device/equality/phone_files.h"
#include "device/equality/transcript.h"
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <ranges>
#include <set>
#include <span>
#include <utility>

namespace velmoranth::cli::explain_scenarios_test {
namespace {

using equality::Given;
using equality::Scenario;
using equality::Step;
using simulator::Question;

// Which part of a step is the argument of the question.
enum class Argument { none, name, nameAndBundle, number, event, pageDot };

struct AskedMessage {
    std::string_view message;
    std::string_view word;
    Argument argument;
    int firstSystem = 12;
    int lastSystem = 13;
    // Whether what explain shows is made of the message's answer, and not the answer itself.
    bool isPart = false;
};

constexpr std::array kAskedMessages{
    AskedMessage{"-[SBIconImageView contentsImage]", "icon", Argument::name},
    AskedMessage{"-[SBHIconImageCache imageForIcon:]", "icon", Argument::name, 13},
    AskedMessage{"+[UIImage _applicationIconImageForBundleIdentifier:format:scale:]", "icon",
                 Argument::name, 12, 12, true},
    AskedMessage{"+[UIImage kitImageNamed:]", "image", Argument::name},
    AskedMessage{"+[UIImage imageNamed:inBundle:compatibleWithTraitCollection:]", "image",
                 Argument::nameAndBundle},
    AskedMessage{"+[UIImage systemImageNamed:]", "symbol", Argument::name, 13},
    AskedMessage{"-[PKIconImageCache imageForKey:]", "settings", Argument::name},
    // The weather app of iOS 12 asks for an image of a bundle.
    AskedMessage{"+[WeatherImageLoader conditionImageNamed:style:]", "weather", Argument::name, 13},
    AskedMessage{"+[APWUtil iconForBundleIdentifier:]", "suggestion", Argument::name},
    AskedMessage{"-[SBIconBadgeView layoutSubviews]", "badge", Argument::none},
    AskedMessage{"+[VelMoranth iconMask]", "mask", Argument::none},
    AskedMessage{"+[VelMoranth iconOverlay]", "overlay", Argument::none},
    AskedMessage{"+[VelMoranth addShadowToIcon]", "shadow", Argument::none},
    AskedMessage{"+[VelMoranth FolderImage]", "folder", Argument::none, 12, 13, true},
    AskedMessage{"+[VelMoranth badgeImage]", "badge", Argument::none},
    AskedMessage{"+[VelMoranth pageDots:]", "dot", Argument::pageDot},
    AskedMessage{"+[VelMoranth spotlightPageDot]", "dot", Argument::pageDot},
    AskedMessage{"-[_UIFeedback play]", "sound", Argument::number},
    AskedMessage{"+[SBUISound soundWithFeedbackEventType:]", "sound", Argument::event},
};

struct OtherMessage {
    std::string_view message;
    std::string_view reason;
};

constexpr std::string_view kStep = "nothing is asked, something happens to the process";
constexpr std::string_view kInner = "the library sends it to itself, with what it was asked for";
constexpr std::string_view kOnTheWay = "a person's request comes to it by way of another method";
constexpr std::string_view kWithoutPicture = "neither a picture nor a sound is behind it";
constexpr std::string_view kPanel = "the settings' panel sends it, and no theme takes part";

constexpr std::array kOtherMessages{
    OtherMessage{"write", kStep},
    OtherMessage{"erase", kStep},
    OtherMessage{"preferences", kStep},
    OtherMessage{"post", kStep},
    OtherMessage{"wait", kStep},
    OtherMessage{"list", kStep},
    OtherMessage{"+[VelMoranth searchforIconInIconBundlesWithLeafIdentifier:forImg:]", kInner},
    OtherMessage{"+[VelMoranth deviceUIImageNamed:fromBundle:originalUIImage:]", kInner},
    OtherMessage{"+[VelMoranth deviceUIImageNamed:originalUIImage:]", kInner},
    OtherMessage{"+[VelMoranth searchFolder:forImageStr:]", kInner},
    OtherMessage{"+[VelMoranth searchFolders:forImageString:]", kInner},
    OtherMessage{"+[VelMoranth hasSearchForImageNamedOrBundle:forImg:]", kInner},
    OtherMessage{"+[VelMoranth redrawIconWithOverlay:]", kInner},
    OtherMessage{"+[VelMoranth imageWithImage:scaledToSize:]", kInner},
    OtherMessage{"-[VelMoranth playUISound:]", kInner},
    OtherMessage{"-[VelMoranth playsystemSound:]", kInner},
    OtherMessage{"-[SBApplicationIcon getUnmaskedIconImage:]", kOnTheWay},
    OtherMessage{"-[SBHIconImageCache unmaskedImageForIcon:]", kOnTheWay},
    OtherMessage{"+[UIImage imageNamed:inBundle:]", kOnTheWay},
    OtherMessage{"+[UIImage imageNamed:inBundle:withConfiguration:]", kOnTheWay},
    OtherMessage{"+[UIImage _imageNamed:withTrait:]", kOnTheWay},
    OtherMessage{"+[UIImage _kitImageNamed:withTrait:]", kOnTheWay},
    OtherMessage{"+[UIImage imageWithContentsOfCPBitmapFile:flags:]", kOnTheWay},
    OtherMessage{"-[SBIconView layoutSubviews]", kOnTheWay},
    OtherMessage{"+[VelMoranth selectedTheme]", kWithoutPicture},
    OtherMessage{"+[VelMoranth currentThemePlist]", kWithoutPicture},
    OtherMessage{"+[VelMoranth userChangedThemes]", kWithoutPicture},
    OtherMessage{"+[VelMoranth DetectUserDevice]", kWithoutPicture},
    OtherMessage{"+[VelMoranth clearIconMask]", kWithoutPicture},
    OtherMessage{"+[VelMoranth clearIconOverlay]", kWithoutPicture},
    OtherMessage{"+[VelMoranth clearShadowImg]", kWithoutPicture},
    OtherMessage{"+[VelMoranth colorWithHexString:]", kWithoutPicture},
    OtherMessage{"+[VelMoranth contentTypeForImageData:]", kWithoutPicture},
    OtherMessage{"+[VelMoranth sharedIconManager]", kWithoutPicture},
    OtherMessage{"+[VelMoranth imageFromBundlePath:extract:extractionPath:]", kWithoutPicture},
    OtherMessage{"+[VelMoranth VelmoranthImageDump:named:inBundle:]", kWithoutPicture},
    OtherMessage{"-[SBIconLegibilityLabelView isHidden]", kWithoutPicture},
    OtherMessage{"-[SBIconLegibilityLabelView alpha]", kWithoutPicture},
    OtherMessage{"-[VelMoranth initClass:]", kWithoutPicture},
    OtherMessage{"+[VelmoranthFileManager sharedFileManager]", kPanel},
    OtherMessage{"+[VelmoranthFileManager saveCurrentSettinginFolderWithName:]", kPanel},
    OtherMessage{"+[VelmoranthFileManager renameFileFrom:to:]", kPanel},
    OtherMessage{"+[VelmoranthFileManager deleteFileFromDevice:fromDir:]", kPanel},
    OtherMessage{"+[VelmoranthFileManager overwriteFontFilesInDir:fromTheme:]", kPanel},
    OtherMessage{"+[VelmoranthFileManager NoUserSettingCreateThemeNow]", kPanel},
    OtherMessage{"+[VelmoranthFileManager ShowSuccesView:]", kPanel},
    OtherMessage{"+[VelmoranthFileManager finshedSelfAlert]", kPanel},
    OtherMessage{"-[Sounds initClass:]", kPanel},
    OtherMessage{"-[Sounds PlayButtonClick:]", kPanel},
    OtherMessage{"-[Sounds PlaySlide:]", kPanel},
    OtherMessage{"-[Sounds PlaySlideWithClick:]", kPanel},
    OtherMessage{"-[Sounds PlayError:]", kPanel},
    OtherMessage{"-[Sounds PlayReboot:]", kPanel},
    OtherMessage{"-[Sounds PlaySuccess:]", kPanel},
    OtherMessage{"-[Sounds PlayOn:]", kPanel},
    OtherMessage{"-[Sounds PlayOff:]", kPanel},
};

template <class Rows>
const auto* rowOf(const Rows& rows, std::string_view message) {
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&](const auto& each) { return each.message == message; });
    return row == rows.end() ? nullptr : &*row;
}

// What a step asks, in explain's words; nothing when it is a message that explain does not send, or
// one without the name that explain's request takes.
std::optional<Question> questionOf(const Step& step, const Scenario& scenario) {
    const AskedMessage* const row = rowOf(kAskedMessages, step.message);
    if (row == nullptr || scenario.system.major < row->firstSystem ||
        scenario.system.major > row->lastSystem) {
        return std::nullopt;
    }
    Question question{std::string(row->word), "", ""};
    const auto text = [&](std::size_t index) {
        return step.texts[index] == nullptr ? "" : std::string(step.texts[index]);
    };
    switch (row->argument) {
        case Argument::none:
            break;
        case Argument::nameAndBundle:
            question.bundle = text(1);
            if (question.bundle.empty()) {
                return std::nullopt;
            }
            [[fallthrough]];
        case Argument::name:
            question.argument = text(0);
            break;
        case Argument::number:
            question.argument = std::to_string(step.number);
            break;
        case Argument::event:
            question.argument = "event:" + std::to_string(static_cast<std::uint64_t>(step.number));
            break;
        case Argument::pageDot:
            question.argument = row->message.find(":") == std::string_view::npos ? "search"
                                : step.number != 0                               ? "current"
                                                                                 : "other";
            break;
    }
    const auto& known = *simulator::questionRowNamed(question.word);
    return simulator::takesArgument(known, question.argument) ? std::optional(question)
                                                              : std::nullopt;
}

// The preferences as an explained device has them: active themes by the names of their folders, and
// settings. Nothing when they name themes in another way.
struct Settings {
    std::vector<std::string> themes;
    platform::Dictionary others;
};

std::optional<Settings> settingsOf(std::string_view name) {
    const std::string& bytes = equality::preferencesNamed(name);
    const auto list = desktop::parsePropertyList(
        {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    Settings settings;
    const auto* const dictionary =
        list ? std::get_if<platform::Dictionary>(&list->value()) : nullptr;
    if (dictionary != nullptr) {
        settings.others = *dictionary;
    }
    if (const auto themes = settings.others.find("ActiveThemes"); themes != settings.others.end()) {
        const auto* const names =
            std::get_if<platform::PropertyList::Array>(&themes->second.value());
        if (names == nullptr) {
            return std::nullopt;
        }
        for (const platform::PropertyList& each : *names) {
            const auto* const text = std::get_if<std::string>(&each.value());
            if (text == nullptr) {
                return std::nullopt;
            }
            settings.themes.push_back(*text);
        }
        settings.others.erase("ActiveThemes");
    }
    for (const SettingRow& row : kPreviewSettings) {
        if (row.isOnInPreview) {
            settings.others.try_emplace(std::string(row.key), platform::PropertyList(false));
        }
    }
    return settings;
}

// A step that explain can ask for. Each is asked in a process of its own, so that what was sent
// before makes no difference, but the files do.
struct Request {
    const Scenario* scenario;
    std::size_t step;
    Question question;
    Settings settings;
};

// Of all scenarios; one that a scenario before has on the same device and files is left out.
const std::vector<Request>& requests() {
    static const std::vector<Request> kRequests = [] {
        std::vector<Request> all;
        std::set<std::string> known;
        for (const Scenario& scenario : equality::scenarios()) {
            std::string preferences =
                scenario.preferences == nullptr ? "missing keys" : scenario.preferences;
            std::string written;
            for (std::size_t i = 0; i < scenario.steps.size(); ++i) {
                const Step& step = scenario.steps[i];
                const std::string_view message = step.message;
                if (message == "preferences") {
                    preferences = step.texts[0];
                } else if (message == "erase" &&
                           step.texts[0] == std::string_view(equality::kPreferencesFile)) {
                    preferences = "missing keys";
                } else if (message == "erase" || message == "write") {
                    written += std::string(message) + " " + step.texts[0] + "\n";
                }
                const auto question = questionOf(step, scenario);
                const auto settings = settingsOf(preferences);
                if (question && settings &&
                    known
                        .insert(std::string(scenario.system.name) + scenario.device.name + " " +
                                preferences + "\n" + written + std::string(message) + " " +
                                question->argument + " " + question->bundle)
                        .second) {
                    all.push_back({&scenario, i, *question, *settings});
                }
            }
        }
        return all;
    }();
    return kRequests;
}

simulator::DeviceConfiguration configurationOf(const Scenario& scenario) {
    auto device = simulator::deviceConfiguration(scenario.device.name, scenario.system.major);
    device->exactFiles = true;
    return *device;
}

// What the step came to, in explain's words for a picture: "84 x 86" pixels, "stock" or "nothing".
std::string pictureIn(const std::string& result) {
    double width = 0;
    double height = 0;
    double scale = 0;
    const std::size_t at = result.rfind("image ");
    if (at != std::string::npos && std::sscanf(result.c_str() + at, "image %lf x %lf points @%lf",
                                               &width, &height, &scale) == 3) {
        return std::to_string(std::lround(width * scale)) + " x " +
               std::to_string(std::lround(height * scale));
    }
    return result.ends_with(equality::kTheGiven) ? "stock" : "nothing";
}

std::string pictureSaid(const nlohmann::json& said) {
    return said.at("isStock") && !said.at("size").is_null() ? "stock" : pictureSizeSaid(said);
}

// Everything that is said of one request, against the record of the step, and of the process that
// was asked. What the step's message is sent by on the phone may come to other methods besides; the
// step's own files are among theirs then, in their order.
void compare(const Explanation& explanation, const RecordedStep& step, const AskedMessage& asked) {
    const auto said = nlohmann::json::parse(jsonOf(explanation));
    const Texts methods = said.at("methods");
    const NotedFiles files = allFiled(said.at("files"));
    expectOfItsOwnRecord(said, explanation.record);

    const Texts entered = methodsIn(step.record);
    const NotedFiles own = filesIn(step.record);
    EXPECT_EQ(outOfOrder(entered, methods), std::nullopt) << testing::PrintToString(methods);
    EXPECT_EQ(outOfOrder(own, files), std::nullopt) << testing::PrintToString(files);
    if (entered == methods || entered.empty()) {
        EXPECT_EQ(own, files);
    }
    if (own != files) {
        return;
    }
    EXPECT_EQ(filedOrNot(said.at("shown")), winnerIn(own, said.at("effects")));
    // What answers with nothing leaves the platform's picture, where the step's view has none.
    const std::string picture = pictureIn(step.result);
    if (picture == "nothing") {
        EXPECT_TRUE(said.at("isStock") || said.at("size").is_null()) << step.result;
    } else if (!asked.isPart) {
        EXPECT_EQ(pictureSaid(said), picture) << step.result;
    }
}

// Sounds that can be played in place of the themes', as a device of this machine plays them.
void furnish(const std::string& root) {
    std::ifstream file(
        std::string(tests::kLayoutFolder) + "/var/mobile/Library/VelMoranth/Sounds/Error.caf",
        std::ios::binary);
    const std::string sound(std::istreambuf_iterator<char>(file), {});
    for (const char* const name : {"First/UISounds/lock.caf", "First/UISounds/key_press_click.caf",
                                   "Second/UISounds/Anticipate.caf"}) {
        equality::writeFile(root, std::string("/Library/Themes/") + name, sound);
    }
}

class ExplainScenario : public testing::TestWithParam<std::string> {
  protected:
    // That of the name.
    const Scenario& scenario_ = *equality::scenarioNamed(GetParam());

    void explainStep(const Request& request) const {
        DeviceOfRun device;
        device.root = *desktop::DeviceRoot::open(folder_.path());
        device.themes = request.settings.themes;
        const platform::Dictionary& settings = request.settings.others;
        ASSERT_TRUE(setActiveThemes(*device.root, device.themes, settings));
        const auto said = explain({device, configurationOf(scenario_), settings}, request.question);
        ASSERT_TRUE(said) << desktop::toLine(said.error());
        const auto step =
            recordStep(scenario_, request.step, said->stock ? Given::image : Given::none, furnish);
        ASSERT_TRUE(step);
        compare(*said, *step, *rowOf(kAskedMessages, scenario_.steps[request.step].message));
    }

    tests::TemporaryFolder folder_;
};

TEST_P(ExplainScenario, SaysWhatTheRecordHas) {
    equality::layPhone(scenario_, folder_.path());
    furnish(folder_.path());
    std::size_t changed = 0;  // the steps before this one have changed the files
    for (const Request& request : requests()) {
        if (request.scenario == &scenario_) {
            for (; changed < request.step; ++changed) {
                static_cast<void>(equality::changeFiles(scenario_.steps[changed], folder_.path()));
            }
            SCOPED_TRACE(testing::Message()
                         << "step " << request.step << ": " << request.question.word << " "
                         << request.question.argument << " " << request.question.bundle);
            explainStep(request);
        }
    }
}

// A message that is in neither table, or a row that no scenario has, is a mistake here.
TEST(ExplainScenarios, EveryMessageIsAskedOrHasAReason) {
    std::set<std::string_view> sent;
    for (const Scenario& scenario : equality::scenarios()) {
        for (const Step& step : scenario.steps) {
            sent.insert(step.message);
            EXPECT_NE(rowOf(kAskedMessages, step.message) == nullptr,
                      rowOf(kOtherMessages, step.message) == nullptr)
                << scenario.name << " sends " << step.message;
        }
    }
    EXPECT_EQ(sent.size(), kAskedMessages.size() + kOtherMessages.size());
    for (const OtherMessage& row : kOtherMessages) {
        EXPECT_FALSE(row.reason.empty()) << row.message;
    }
}

// Themes stand on a command line by their names: a device with a list of anything else is one that
// explain does not make.
TEST(ExplainScenarios, PreferencesNameThemesOrHaveAReason) {
    const std::set<std::string_view> kOtherLists{"wrong kinds", "odd themes", "binary",
                                                 "old style"};
    for (const char* const name : equality::preferencesOfEveryKind()) {
        EXPECT_EQ(settingsOf(name).has_value(), !kOtherLists.contains(name)) << name;
    }
}

// The names of those that have a request of their own.
std::vector<std::string> asking() {
    std::vector<std::string> names;
    for (const Request& request : requests()) {
        if (names.empty() || names.back() != request.scenario->name) {
            names.push_back(request.scenario->name);
        }
    }
    return names;
}

INSTANTIATE_TEST_SUITE_P(All, ExplainScenario, testing::ValuesIn(asking()), [](const auto& each) {
    std::string name = each.param;
    std::ranges::replace(name, '-', '_');
    return name;
});

}  // namespace
}  // namespace velmoranth::cli::explain_scenarios_test
