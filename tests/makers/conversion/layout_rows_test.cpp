// Row by row: whatever layout a theme comes in, once it is converted it shows what the same
// pictures show that a person has laid where the engine looks for them, on every device and system.
#include "tests/makers/conversion/layout_rows.h"

#include "desktop/files/create_device_root.h"
#include "simulator/process/launcher.h"
#include "tests/makers/conversion/theme_fixture.h"
#include "tests/support/places.h"

#include <iterator>

namespace velmoranth::makers::layout_rows_test {
namespace {

using simulator::Picture;
using tests::PackedEntry;

std::vector<LayoutRow> allRows() {
    std::vector<LayoutRow> rows;
    for (const auto& some : {containerRows(), iconRows(), imageRows(), listRows(), mixtures()}) {
        std::ranges::copy(some, std::back_inserter(rows));
    }
    return rows;
}

std::string nameOfRow(const testing::TestParamInfo<LayoutRow>& tested) {
    std::string name(tested.param.section);
    std::erase(name, ':');
    std::ranges::replace(name, ' ', '_');
    return "Section_" + name;
}

class LayoutRows : public ThemeTest, public testing::WithParamInterface<LayoutRow> {
  protected:
    // Packed below that folder, with "./" before all names as packages have it.
    static std::vector<PackedEntry> packed(const LayoutRow& row, const std::string& below) {
        std::vector<PackedEntry> entries;
        for (const ThemeContents& file : row.input) {
            entries.push_back({"./" + below + file.name, file.contents});
        }
        return entries;
    }

    // The input of the row on this machine; the name that its theme is to get.
    [[nodiscard]] std::pair<std::string, std::string> put(const LayoutRow& row) const {
        const auto lay = [&](const std::string& below) {
            for (const ThemeContents& file : row.input) {
                folder.file(below + file.name, file.contents);
            }
        };
        const std::string installed = "Library/Themes/T.theme/";
        switch (row.container) {
            case Container::folder:
                lay("in/T.theme/");
                return {"in/T.theme", "T.theme"};
            case Container::plain:
                lay("in/Plain/");
                return {"in/Plain", "Plain"};
            case Container::deep:
                lay("in/T-master/dist/Library/Themes/T.theme/");
                folder.file("in/T-master/README.md", "text");
                return {"in/T-master", "T.theme"};
            case Container::package:
                folder.file("in/t.deb", tests::packageOf(packed(row, installed), row.packing));
                return {"in/t.deb", "T.theme"};
            case Container::rootless:
                folder.file("in/t.deb",
                            tests::packageOf(packed(row, "var/jb/" + installed), row.packing));
                return {"in/t.deb", "T.theme"};
            case Container::zip: {
                std::vector<PackedEntry> entries = packed(row, "T.theme/");
                entries.push_back({"__MACOSX/T.theme/IconBundles/._com.apple.Maps@3x.png", "x"});
                entries.push_back({"T.theme/.DS_Store", "x"});
                folder.file("in/t.zip", tests::zipOf(entries));
                return {"in/t.zip", "T.theme"};
            }
            case Container::tar:
                break;
        }
        folder.file("in/t.tar", tests::tarOf(packed(row, "T.theme/"), row.packing));
        return {"in/t.tar", "T.theme"};
    }

    // The one theme of the input, in "OUTPUT/NAME".
    [[nodiscard]] Plan planOf(const std::string& input, const std::string& output,
                              const std::string& name) const {
        Conversion conversion;
        conversion.inputs = {folder / input};
        conversion.output = folder / output;
        conversion.calendar = installedCalendar();
        const auto themes = convertThemes(conversion);
        EXPECT_TRUE(themes) << (themes ? "" : toLine(themes.error()));
        if (!themes || themes->size() != 1) {
            ADD_FAILURE() << "one theme expected";
            return {};
        }
        EXPECT_EQ(themes->front().name, name);
        return themes->front().plan;
    }

    // A device that has the folder of this machine as its theme.
    void device(const std::string& name, const std::string& theme) const {
        ASSERT_TRUE(desktop::createDeviceRoot(folder / name));
        if (!theme.empty()) {
            std::filesystem::create_directories(folder / (name + "/Library/Themes"));
            std::filesystem::copy(folder / theme, folder / (name + "/Library/Themes/Shown.theme"),
                                  std::filesystem::copy_options::recursive);
        }
        const platform::Dictionary preferences{
            {"ActiveThemes", platform::PropertyList::Array{"Shown.theme"}},
            {"enable", true},
            {"enableIconMask", true},
            {"enableOverlay", true},
            {"enableShadow", true},
            {"removeDock", true}};
        const auto bytes = desktop::writeXmlPropertyList(platform::PropertyList(preferences));
        folder.file(name + "/User/Library/Preferences/com.qor.velmoranthprefs.plist",
                    std::string(bytes.begin(), bytes.end()));
    }

    [[nodiscard]] std::vector<std::uint8_t> pixels(const std::string& root, std::string_view model,
                                                   int system) const {
        simulator::ScreenRequest request;
        request.device = simulator::deviceConfiguration(model, system).value();
        request.device.date = platform::Date{600000000};
        request.deviceFiles = folder / root;
        request.enginePath = tests::kEngineLibrary;
        request.screen = GetParam().screen;
        for (const std::string& app : GetParam().apps) {
            request.apps.push_back({app});
        }
        const auto shown = simulator::renderScreen(request);
        EXPECT_TRUE(shown) << (shown ? "" : toLine(shown.error()));
        return shown ? shown->picture.pixels : std::vector<std::uint8_t>();
    }
};

// A failure names the device, and the row by the case's own name. Pictures are compared as a whole,
// since their bytes say nothing.
TEST_P(LayoutRows, showTheSameAsFilesThatWereLaidByHand) {
    const LayoutRow& row = GetParam();
    const auto [input, name] = put(row);
    for (const ThemeContents& file : row.byHand) {
        folder.file("hand/Hand.theme/" + file.name, file.contents);
    }
    const auto before = filesIn(folder / "in");
    const Plan plan = planOf(input, "out", name);
    EXPECT_EQ(filesIn(folder / "in"), before);
    for (const std::string& file : row.leftOut) {
        EXPECT_NE(why(plan.leftOut, file), "<none>") << file;
    }
    const auto made = filesIn(folder / ("out/" + name));
    EXPECT_TRUE(planOf("out/" + name, "again", name).changesNothing());
    EXPECT_TRUE(filesIn(folder / ("again/" + name)) == made);
    EXPECT_TRUE(planOf("hand/Hand.theme", "right", "Hand.theme").changesNothing());
    EXPECT_TRUE(filesIn(folder / "right") == filesIn(folder / "hand"));

    device("made", "out/" + name);
    device("laid", "hand/Hand.theme");
    device("stock", "");
    bool isSeen = false;
    for (const char* const model : {"phone", "phone-667", "pad"}) {
        for (const int system : {12, 13}) {
            const auto expected = pixels("laid", model, system);
            EXPECT_TRUE(pixels("made", model, system) == expected) << model << " " << system;
            isSeen = isSeen || pixels("stock", model, system) != expected;
        }
    }
    EXPECT_NE(isSeen, row.showsNothing);
    if (row.container == Container::folder) {
        device("before", input);
        EXPECT_EQ(pixels("before", "pad", 13) == pixels("laid", "pad", 13) &&
                      pixels("before", "phone", 13) == pixels("laid", "phone", 13),
                  row.showsAsItIs);
    }
}

INSTANTIATE_TEST_SUITE_P(Layouts, LayoutRows, testing::ValuesIn(allRows()), nameOfRow);

}  // namespace
}  // namespace velmoranth::makers::layout_rows_test
