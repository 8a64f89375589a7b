// Every screen, and what explain says of the requests behind what it shows: the same files, methods
// and pictures are in what the screen's own process has noted.
#include "cli/explanation.h"
#include "simulator/process/launcher.h"
#include "simulator/screens/question_rows.h"
#include "tests/cli/explain_records.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <iterator>
#include <ranges>
#include <tuple>
#include <utility>

namespace velmoranth::cli::explain_screens_test {
namespace {

using simulator::Question;
using simulator::ScreenKind;

struct ScreenRow {
    ScreenKind screen;
    // Some of what shows there: every word that explain has for it.
    std::vector<Question> questions;
};

const Question kIcon{"icon", "com.apple.Maps", ""};

// The icon of the switcher's suggestion has no word: it is asked for like every icon.
const std::vector<ScreenRow>& screenRows() {
    static const std::vector<ScreenRow> kRows{
        {ScreenKind::home,
         {kIcon,
          {"icon", "com.apple.mobilephone", ""},
          {"calendar", "", ""},
          {"clock", "", ""},
          {"miniature", "com.apple.calculator", ""},
          {"folder", "", ""},
          {"dock", "", ""},
          {"badge", "", ""},
          {"dot", "current", ""},
          {"dot", "other", ""},
          {"dot", "search", ""},
          {"mask", "", ""},
          {"overlay", "", ""},
          {"shadow", "", ""}}},
        {ScreenKind::folder, {{"behind", "", ""}, {"icon", "com.apple.calculator", ""}}},
        {ScreenKind::pressed, {{"pressed", "", ""}}},
        {ScreenKind::today, {{"widget", "com.apple.weather", ""}}},
        {ScreenKind::switcher, {kIcon, {"dock", "", ""}}},
        {ScreenKind::notification, {{"notification", "com.apple.MobileSMS", ""}}},
        {ScreenKind::settings, {{"settings", "WiFi", ""}, {"knob", "", ""}}},
        {ScreenKind::panelError, {{"knob", "", ""}}},
        {ScreenKind::panelSuccess, {{"knob", "", ""}}},
        {ScreenKind::weather, {{"weather", "clear-day", ""}}},
        {ScreenKind::controls, {{"knob", "", ""}, {"symbol", "gear", ""}}},
        {ScreenKind::gallery, {kIcon, {"icon", "com.apple.weather", ""}}},
        {ScreenKind::icons,
         {kIcon, {"calendar", "", ""}, {"clock", "", ""}, {"mask", "", ""}, {"overlay", "", ""}}},
    };
    return kRows;
}

// The pixels that the methods of that name have answered with; none where they answer nothing.
Texts sizesOf(const record::Record& record, std::string_view method) {
    Texts sizes;
    for (const record::Entry& entry : record) {
        double width = 0;
        double height = 0;
        double scale = 0;
        if (entry.message == method &&
            std::sscanf(entry.answer.c_str(), "%lf×%lf @%lfx", &width, &height, &scale) == 3) {
            sizes.push_back(std::to_string(std::lround(width * scale)) + " x " +
                            std::to_string(std::lround(height * scale)));
        }
    }
    return sizes;
}

bool has(const auto& all, const auto& one) {
    return std::ranges::find(all, one) != std::ranges::end(all);
}

const platform::Dictionary kSettings{{"enableShadow", platform::PropertyList(true)}};

class ExplainScreen
    : public testing::TestWithParam<std::tuple<std::string_view, int, std::string_view>> {
  protected:
    ExplainScreen() {
        const std::vector<std::string> themes{tests::kExampleTheme};
        device_ = *makeDevice(themes, kSettings);
        configuration_ = *simulator::deviceConfiguration(std::get<2>(GetParam()), system_);
    }

    // Of the whole screen, its process's start included.
    [[nodiscard]] record::Record screenRecord() const {
        simulator::ScreenRequest request;
        request.device = configuration_;
        request.deviceFiles = device_.root->files();
        request.screen = screen_;
        request.isRecorded = true;
        auto screen = simulator::renderScreen(request);
        EXPECT_TRUE(screen);
        return screen ? std::move(screen->record) : record::Record();
    }

    const ScreenKind screen_ = *simulator::screenKindNamed(std::get<0>(GetParam()));
    const int system_ = std::get<1>(GetParam());
    DeviceOfRun device_;
    simulator::DeviceConfiguration configuration_;
};

TEST_P(ExplainScreen, HasNotedWhatIsSaid) {
    const auto row = std::ranges::find(screenRows(), screen_, &ScreenRow::screen);
    ASSERT_NE(row, screenRows().end()) << "a screen that is not in the table";
    const record::Record record = screenRecord();
    const Texts methods = methodsIn(record);
    const NotedFiles files = filesIn(record);
    for (const Question& question : row->questions) {
        if (system_ < simulator::questionRowNamed(question.word)->firstSystem) {
            continue;
        }
        SCOPED_TRACE(question.word + " " + question.argument);
        const auto answer = explain({device_, configuration_, kSettings}, question);
        ASSERT_TRUE(answer) << desktop::toLine(answer.error());
        const auto said = nlohmann::json::parse(jsonOf(*answer));
        expectOfItsOwnRecord(said, answer->record);
        const Texts entered = said.at("methods");
        for (const std::string& method : entered) {
            EXPECT_TRUE(has(methods, method)) << method;
        }
        const Texts sizes = entered.empty() ? Texts() : sizesOf(record, entered.front());
        EXPECT_TRUE(sizes.empty() || has(sizes, pictureSizeSaid(said)))
            << pictureSizeSaid(said) << " of " << testing::PrintToString(sizes);
        for (const NotedFile& file : allFiled(said.at("files"))) {
            EXPECT_TRUE(has(files, file)) << file;
        }
    }
}

std::vector<std::string_view> screens() {
    std::vector<std::string_view> names;
    std::ranges::transform(simulator::screenDefinitions(), std::back_inserter(names),
                           &simulator::ScreenDefinition::name);
    return names;
}

INSTANTIATE_TEST_SUITE_P(All, ExplainScreen,
                         testing::Combine(testing::ValuesIn(screens()), testing::Values(12, 13),
                                          testing::Values("phone", "pad")),
                         [](const auto& each) {
                             std::string name(std::get<0>(each.param));
                             std::ranges::replace(name, '-', '_');
                             return name + "_ios" + std::to_string(std::get<1>(each.param)) + "_" +
                                    std::string(std::get<2>(each.param));
                         });

}  // namespace
}  // namespace velmoranth::cli::explain_screens_test
