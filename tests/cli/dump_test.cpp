// velmoranth dump, as a user runs it.
#include "tests/cli/preview_fixture.h"
#include "tests/support/catalog/car_writer.h"
#include "tests/support/places.h"

#include <nlohmann/json.hpp>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): SIGINT is POSIX's

#include <chrono>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <thread>
#include <tuple>
#include <utility>

namespace velmoranth::cli::dump_test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using tests::CarPixels;
using tests::CarWriter;

constexpr const char* kSkeleton = "themes/Skeleton.theme";
constexpr std::uint16_t kPhoneIdiom = 1;
constexpr std::uint16_t kPadIdiom = 2;

class Dump : public PreviewTest {
  protected:
    [[nodiscard]] CommandResult dump(std::vector<std::string> words) const {
        words.insert(words.begin(), "dump");
        return runCommand(words, setting());
    }

    void expectRefused(const std::vector<std::string>& words, int code,
                       const std::string& line) const {
        const CommandResult result = dump(words);
        EXPECT_EQ(result.code, code) << line;
        EXPECT_EQ(result.errors, "velmoranth: error: " + line + "\n");
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(folder.names("tmp"), "");
    }

    // Of a report: what has each file, by the file's name.
    static std::map<std::string, json> filesOf(const CommandResult& result) {
        std::map<std::string, json> files;
        const json report = json::parse(result.output);
        for (const json& file : report.at("files")) {
            files[file.at("file")] = file;
        }
        return files;
    }

    [[nodiscard]] std::set<std::string> written(const std::string& name) const {
        std::set<std::string> files;
        const fs::path top = folder / ("work/" + name);
        for (const auto& entry : fs::recursive_directory_iterator(top)) {
            if (entry.is_regular_file()) {
                files.insert(entry.path().lexically_relative(top));
            }
        }
        return files;
    }

    [[nodiscard]] std::vector<std::uint8_t> pixelsOf(const std::string& name) const {
        const std::string bytes = folder.contents(name);
        const auto image = desktop::decodeImage(
            {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
        EXPECT_TRUE(image) << name;
        return image ? desktop::toPremultipliedBgra(*image) : std::vector<std::uint8_t>();
    }

    void catalog(const std::string& name, const CarWriter& car) const {
        const tests::ByteVector bytes = car.build();
        folder.file("work/" + name, std::string(bytes.begin(), bytes.end()));
    }
};

TEST_F(Dump, aThemeOfTheSystemsOwnPicturesThatLintsWithoutAnError) {
    const CommandResult result = dump({"-o", "themes", "--json"});
    ASSERT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    const json report = json::parse(result.output);
    EXPECT_EQ(report.at("version"), 1);
    EXPECT_EQ(report.at("folder"), kSkeleton);
    EXPECT_EQ(report.at("devices"), json::parse(R"([{"device":"phone","ios":13}])"));
    std::set<std::string> told;
    for (const auto& [name, file] : filesOf(result)) {
        told.insert(name);
    }
    EXPECT_EQ(written(kSkeleton), told);
    // Name, what asks for it, its side in pixels.
    const std::vector<std::tuple<std::string, std::string, int>> some{
        {"IconBundles/com.apple.Maps-large.png", "icon com.apple.Maps", 180},
        {"IconBundles/com.apple.mobilephone-large.png", "icon com.apple.mobilephone", 180},
        {"IconBundles/com.apple.calculator-large.png", "icon com.apple.calculator", 180},
        {"IconBundles/com.apple.mobilecal-large.png", "calendar", 180},
        {"Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare@3x.png",
         "icon com.apple.mobiletimer", 180},
        {"Bundles/com.apple.mobileicons.framework/AppIconMask@3x.png", "mask", 180},
        {"Bundles/com.apple.weather-framework/clear-day@3x.png",
         "image clear-day of com.apple.weather-framework", 90},
    };
    const auto files = filesOf(result);
    for (const auto& [name, request, side] : some) {
        ASSERT_TRUE(files.contains(name)) << name;
        EXPECT_EQ(files.at(name).at("request"), request);
        EXPECT_EQ(files.at(name).at("width"), side);
        const PngPicture picture(folder.contents(std::string("work/") + kSkeleton + "/" + name));
        EXPECT_EQ(picture.width, static_cast<std::size_t>(side)) << name;
    }
    for (const char* const name :
         {"Info.plist", "Velmoranth/Folder@3x.png", "Velmoranth/SBDockBGiphone@3x.png",
          "Bundles/com.apple.springboard/SBPageDot@3x.png",
          "Bundles/com.apple.springboard/SBPageDotCurrent@3x.png",
          "Bundles/com.apple.springboard/Spotlight_Pages@3x.png",
          "UIImages/UISwitchKnob.png@3x.png", "Bundles/com.apple.Preferences/WiFi@3x.png"}) {
        EXPECT_TRUE(files.contains(name)) << name;
    }
    const CommandResult lint = runCommand({"lint", kSkeleton, "--all"}, setting());
    EXPECT_EQ(lint.code, 0) << lint.output;
    EXPECT_EQ(folder.names("tmp"), "");
    EXPECT_EQ(folder.names("work/themes"), "Skeleton.theme");
}

TEST_F(Dump, theReportSaysWhatIsLeftOutAndWhy) {
    const CommandResult result = dump({"-o", "themes"});
    EXPECT_EQ(result.code, 0) << result.errors;
    const std::string first =
        "themes/Skeleton.theme: " + std::to_string(written(kSkeleton).size()) +
        " files, of phone with iOS 13\n";
    EXPECT_TRUE(result.output.starts_with(first)) << result.output;
    EXPECT_NE(result.output.find(": the system fills it with a colour, and a theme's picture shows "
                                 "as it is\n"),
              std::string::npos)
        << result.output;
    EXPECT_NE(result.output.find("  left out  Bundles/com.apple.springboard/"
                                 "ANEMFolderBackground.png and 2 more: the system has no picture "
                                 "there\n"),
              std::string::npos)
        << result.output;
    EXPECT_FALSE(written(kSkeleton).contains("Bundles/com.apple.CoreGlyphs/gear@3x.png"));
    const std::string badge = "Bundles/com.apple.springboard/SBBadgeBG@3x.png";
    EXPECT_NE(result.output.find("  left out  " + badge +
                                 ": the system draws it as wide as the number, and a theme's "
                                 "picture is stretched\n"),
              std::string::npos);
    EXPECT_FALSE(written(kSkeleton).contains(badge));
    const CommandResult all = dump({"-o", "all", "--all"});
    EXPECT_EQ(all.output.find("fills it"), std::string::npos);
    const std::set<std::string> files = written("all/Skeleton.theme");
    EXPECT_TRUE(files.contains("Bundles/com.apple.CoreGlyphs/gear@3x.png"));
    EXPECT_TRUE(files.contains(badge));
}

TEST_F(Dump, rawIsTheTreeThatTheSystemLeaves) {
    const CommandResult result = dump({"-o", "here", "--raw", "--ios", "12", "--json"});
    ASSERT_EQ(result.code, 0) << result.errors;
    const std::set<std::string> files = written("here/VelmoranthImageDump");
    EXPECT_EQ(files.size(), filesOf(result).size());
    EXPECT_FALSE(json::parse(result.output).contains("leftOut"));
    for (const std::string& name : files) {
        EXPECT_TRUE(name.ends_with("@3x.png")) << name;
        EXPECT_TRUE(name.starts_with("Bundles/") || name.starts_with("UIImages/") ||
                    name.starts_with("IconBundles/"))
            << name;
    }
    // An app's icon lies in two places, and is the one of the home screen.
    for (const char* const name : {"IconBundles/com.apple.calculator@3x.png",
                                   "Bundles/IconBundles/com.apple.calculator@3x.png"}) {
        ASSERT_TRUE(files.contains(name)) << name;
        const PngPicture picture(
            folder.contents(std::string("work/here/VelmoranthImageDump/") + name));
        EXPECT_EQ(picture.width, 180U);
    }
    EXPECT_EQ(folder.names("work/here"), "VelmoranthImageDump");
}

// All pictures together have a file for whatever the screens have dumped, wherever it is found:
// what is found is kept under its name alone. A widget without an identifier stands for no app.
TEST_F(Dump, nothingThatIsDumpedIsForgotten) {
    ASSERT_EQ(dump({"-o", "here", "--raw"}).code, 0);
    const CommandResult result = dump({"-o", "themes", "--all", "--json"});
    ASSERT_EQ(result.code, 0) << result.errors;
    std::set<std::string> names;
    for (const auto& [file, told] : filesOf(result)) {
        names.insert(fs::path(file).filename());
    }
    const std::set<std::string> dumped = written("here/VelmoranthImageDump");
    ASSERT_TRUE(dumped.contains("IconBundles/(null)@3x.png"));
    EXPECT_FALSE(names.contains("(null)-large.png"));
    EXPECT_GT(dumped.size(), 150U);
    for (const std::string& name : dumped) {
        std::string wanted = fs::path(name).filename();
        if (name.starts_with("IconBundles/") || name.starts_with("Bundles/IconBundles/")) {
            wanted.replace(wanted.size() - 7, 7, "-large.png");
        }
        EXPECT_TRUE(wanted == "(null)-large.png" || names.contains(wanted)) << name;
    }
}

TEST_F(Dump, ofSeveralDevicesTheFirstOnesPictureStays) {
    const CommandResult both =
        dump({"-o", "themes", "--device", "phone", "--device", "pad", "--json"});
    ASSERT_EQ(both.code, 0) << both.errors;
    EXPECT_EQ(json::parse(both.output).at("devices"),
              json::parse(R"([{"device":"phone","ios":13},{"device":"pad","ios":13}])"));
    const auto files = filesOf(both);
    EXPECT_EQ(files.at("IconBundles/com.apple.Maps-large.png").at("width"), 180);
    for (const char* const name :
         {"Velmoranth/Folder@3x.png", "Velmoranth/ipadFolder@2x.png",
          "Velmoranth/SBDockBGiphone@3x.png", "Velmoranth/SBDockBGipad@2x.png",
          "Bundles/com.apple.springboard/SBPageDot@2x.png"}) {
        EXPECT_TRUE(files.contains(name)) << name;
    }
    // A pad alone has the calendar's without a day; with a phone it shows the phone's.
    EXPECT_TRUE(files.contains("IconBundles/com.apple.mobilecal-large.png"));
    EXPECT_EQ(both.output.find("without weekday"), std::string::npos);
    // Pads find the phone's, which is looked for first.
    EXPECT_FALSE(files.contains("Bundles/com.apple.Preferences/WiFi@2x.png"));
    EXPECT_EQ(runCommand({"lint", kSkeleton}, setting()).code, 0);
}

// What no picture can be is said for the devices that it is so on, in the words of the page.
TEST_F(Dump, whatShowsOtherwiseIsNamedForTheDevices) {
    std::ifstream file(std::string(tests::kSourceFolder) + "/docs/themes/dump.md");
    const std::string page((std::istreambuf_iterator<char>(file)), {});
    for (const auto& [device, system, rows] :
         std::vector<std::tuple<std::string, std::string, std::string>>{
             {"phone", "12", "abcd"}, {"phone-667", "13", "abcef"}, {"pad", "13", "abcg"}}) {
        const CommandResult result =
            dump({"-o", "themes", "--force", "--json", "--device", device, "--ios", system});
        const auto otherwise = nlohmann::json::parse(result.output)["otherwise"];
        const std::map<char, std::string> starts{{'a', "where an app's icon is smaller "},
                                                 {'b', "the plates of folders and dock "},
                                                 {'c', "an open folder's plate "},
                                                 {'d', "on iOS 12 the clock's icon "},
                                                 {'e', "on iOS 13 a long weekday "},
                                                 {'f', "on a smaller phone with iOS 13 "},
                                                 {'g', "on a pad with iOS 13 "}};
        ASSERT_EQ(otherwise.size(), rows.size()) << device;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const std::string text = otherwise[i];
            EXPECT_TRUE(text.starts_with(starts.at(rows[i]))) << text;
            EXPECT_NE(page.find("\n- " + text), std::string::npos) << text;
        }
    }
    const CommandResult text = dump({"-o", "themes", "--force"});
    EXPECT_NE(text.output.find("\n  otherwise the plates of folders and dock are blurred "),
              std::string::npos)
        << text.output;
    EXPECT_EQ(text.output.find("on a pad"), std::string::npos) << text.output;
    EXPECT_EQ(dump({"-o", "themes", "--raw"}).output.find("otherwise"), std::string::npos);
}

TEST_F(Dump, nothingIsReplacedUnlessItIsSaid) {
    folder.file("work/themes/Skeleton.theme/mine", "text");
    expectRefused({"-o", "themes"}, 3,
                  "themes/Skeleton.theme: it is there already; --force replaces it");
    EXPECT_EQ(written(kSkeleton), std::set<std::string>{"mine"});
    const CommandResult replaced = dump({"-o", "themes", "--force"});
    EXPECT_TRUE(replaced.output.find("\n  replaced  the folder that was there, with 1 file\n") !=
                std::string::npos)
        << replaced.output;
    EXPECT_FALSE(written(kSkeleton).contains("mine"));
    folder.file("work/other/Skeleton.theme", "text");
    expectRefused({"-o", "other", "--force"}, 3,
                  "other/Skeleton.theme: it is there already, and is no folder");
}

TEST_F(Dump, anInterruptedRunLeavesNothing) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        RunningCommand running({"dump", "-o", "themes"}, setting());
        // It has begun once its device lies there.
        const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
        while (folder.names("tmp").empty()) {
            ASSERT_LT(std::chrono::steady_clock::now(), end);
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        running.signal(number);
        EXPECT_EQ(running.finish().signal, number);
        EXPECT_EQ(folder.names("tmp"), "");
        EXPECT_EQ(folder.names("work"), "");
    }
}

TEST_F(Dump, wrongWordsAreRefused) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> rows{
        {{}, "-o FOLDER is missing; velmoranth dump --help"},
        {{"-o", ""}, "FOLDER and INPUT take a name, and this one is empty"},
        {{"-o", "a", "--from", ""}, "FOLDER and INPUT take a name, and this one is empty"},
        {{"-o", "a", "--raw", "--all"},
         "--raw is what the system leaves, without --from and --all"},
        {{"-o", "a", "--raw", "--from", "x"},
         "--raw is what the system leaves, without --from and --all"},
        {{"-o", "a", "--ios", "14"}, "--ios takes 12 or 13, not \"14\""},
        {{"-o", "a", "b"}, "velmoranth dump does not know what to do with \"b\""}};
    for (const auto& [words, line] : rows) {
        expectRefused(words, 2, line);
    }
    EXPECT_EQ(dump({"-o", "a", "--device", "watch"}).code, 2);
    expectRefused({"-o", "a", "--from", "none.car"}, 3, "none.car: no such file or directory");
    folder.file("work/b.car", "text");
    EXPECT_EQ(dump({"-o", "a", "--from", "b.car"}).code, 3);
    EXPECT_EQ(folder.names("work"), "b.car");
}

// Of an app that the device does not have, and of one that it has.
TEST_F(Dump, picturesOfABundleGoToWhereItLooksForThem) {
    CarWriter car;
    car.facet("Pin", 7);
    car.facet("Small", 8);
    car.facet("../../../out", 9);
    car.facet("Sign", 10);
    car.facet("Both", 11);
    car.facet("Pads", 12);
    car.bitmap({.identifier = 7, .scale = 3}, CarPixels::filled(9, 6, {0, 255, 0, 255}));
    car.bitmap({.identifier = 7, .scale = 3, .idiom = kPadIdiom},
               CarPixels::filled(12, 6, {0, 0, 255, 255}));
    car.bitmap({.identifier = 7, .scale = 2}, CarPixels::filled(6, 4, {255, 0, 0, 255}));
    car.bitmap({.identifier = 8, .scale = 1}, CarPixels::filled(5, 5, {255, 0, 0, 255}));
    car.bitmap({.identifier = 9, .scale = 3}, CarPixels::filled(5, 5, {255, 0, 0, 255}));
    car.bitmap({.identifier = 10, .scale = 3, .flags = 8}, CarPixels::filled(5, 5, {0, 0, 0, 255}));
    car.bitmap({.identifier = 11, .scale = 3}, CarPixels::filled(7, 7, {255, 0, 0, 255}));
    car.bitmap({.identifier = 11, .scale = 3, .idiom = kPhoneIdiom},
               CarPixels::filled(8, 8, {0, 0, 255, 255}));
    car.bitmap({.identifier = 12, .scale = 3, .idiom = kPadIdiom},
               CarPixels::filled(5, 5, {255, 0, 0, 255}));
    catalog("Pins.app/Assets.car", car);
    folder.file("work/Pins.app/Info.plist",
                "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
                "<string>com.example.pins</string></dict></plist>");
    const CommandResult result = dump({"-o", "themes", "--from", "Pins.app", "--json"});
    ASSERT_EQ(result.code, 0) << result.errors;
    const auto files = filesOf(result);
    const std::string pin = "Bundles/com.example.pins/Pin@3x.png";
    ASSERT_TRUE(files.contains(pin));
    EXPECT_EQ(files.at(pin), json::parse(R"({"file":"Bundles/com.example.pins/Pin@3x.png",
        "request":"image Pin of com.example.pins","width":9,"height":6,"from":"Pins.app"})"));
    const PngPicture picture(folder.contents(std::string("work/") + kSkeleton + "/" + pin));
    EXPECT_EQ(picture.count({0, 255, 0}), 54);
    const std::string both = "Bundles/com.example.pins/Both@3x.png";
    ASSERT_TRUE(files.contains(both));
    EXPECT_EQ(files.at(both).at("width"), 8) << "the phone's before that of all devices";
    std::map<std::string, std::string> leftOut;
    const json report = json::parse(result.output);
    for (const json& empty : report.at("leftOut")) {
        leftOut[empty.at("file")] = empty.at("why");
    }
    EXPECT_EQ(leftOut["Bundles/com.example.pins/Small@3x.png"],
              "the catalog has no picture of it for such a screen");
    EXPECT_FALSE(files.contains("Bundles/com.example.pins/Pads@3x.png"));
    EXPECT_EQ(leftOut["Bundles/com.example.pins/Pads@3x.png"],
              "the catalog has no picture of it for such a screen");
    EXPECT_EQ(leftOut["Bundles/com.example.pins/../../../out@3x.png"], "no file can have its name");
    EXPECT_EQ(leftOut["Bundles/com.example.pins/Sign@3x.png"],
              "the system fills it with a colour, and a theme's picture shows as it is");
    EXPECT_EQ(folder.names("work"), "Pins.app themes");
}

TEST_F(Dump, aCatalogAloneAnswersForTheDevicesOwnNames) {
    CarWriter car;
    car.facet("WiFi", 7);
    car.facet("Unknown", 8);
    car.bitmap({.identifier = 7, .scale = 2}, CarPixels::filled(58, 58, {0, 255, 0, 255}));
    car.bitmap({.identifier = 8, .scale = 2}, CarPixels::filled(5, 5, {255, 0, 0, 255}));
    catalog("some.car", car);
    const CommandResult result =
        dump({"-o", "themes", "--from", "some.car", "--device", "phone-667", "--json"});
    ASSERT_EQ(result.code, 0) << result.errors;
    std::vector<std::string> from;
    for (const auto& [name, file] : filesOf(result)) {
        if (file.contains("from")) {
            from.push_back(name);
        }
    }
    EXPECT_EQ(from, std::vector<std::string>{"Bundles/com.apple.Preferences/WiFi@2x.png"});
    EXPECT_EQ(filesOf(result).at(from.at(0)).at("width"), 58);
}

TEST_F(Dump, aCatalogOfWhichNothingIsTakenIsTold) {
    CarWriter unknown;
    unknown.facet("Unknown", 8);
    unknown.bitmap({.identifier = 8, .scale = 3}, CarPixels::filled(5, 5, {255, 0, 0, 255}));
    catalog("some.car", unknown);
    catalog("Small.app/Assets.car", [] {
        CarWriter car;
        car.facet("Small", 8);
        car.bitmap({.identifier = 8, .scale = 1}, CarPixels::filled(5, 5, {255, 0, 0, 255}));
        return car;
    }());
    catalog("Empty.app/Assets.car", CarWriter());
    CarWriter used;
    used.facet("Pin", 7);
    used.bitmap({.identifier = 7, .scale = 3}, CarPixels::filled(9, 6, {0, 255, 0, 255}));
    catalog("Used.app/Assets.car", used);
    for (const std::string name : {"Small", "Empty", "Used"}) {
        folder.file(
            "work/" + name + ".app/Info.plist",
            "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>com.example." +
                name + "</string></dict></plist>");
    }
    const CommandResult result = dump({"-o", "themes", "--from", "some.car", "--from", "Small.app",
                                       "--from", "Empty.app", "--from", "Used.app"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors,
              "velmoranth: some.car: nothing of it is in the theme: none of its names is asked "
              "for; give the folder of its bundle, with its Info.plist\n"
              "velmoranth: Small.app: nothing of it is in the theme: it has no picture for such a "
              "screen that a theme can show\n"
              "velmoranth: Empty.app: nothing of it is in the theme: it has no pictures\n");
    EXPECT_TRUE(written(kSkeleton).contains("Bundles/com.example.Used/Pin@3x.png"));
}

// What extracting a real app's catalog gives is what the theme has under the same names.
TEST_F(Dump, picturesOfARealCatalog) {
    const fs::path real = tests::samples("car") / "acextract/assets_ios.car";
    if (!fs::exists(real)) {
        GTEST_SKIP() << "no real catalogs at " << tests::samples("car");
    }
    fs::create_directories(folder / "work/Real.app");
    fs::copy_file(real, folder / "work/Real.app/Assets.car");
    folder.file("work/Real.app/Info.plist",
                "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
                "<string>com.example.real</string></dict></plist>");
    const CommandResult result = dump({"-o", "themes", "--from", "Real.app", "--json"});
    ASSERT_EQ(result.code, 0) << result.errors;
    const CommandResult extracted = runCommand({"extract", "Real.app", "out", "--json"}, setting());
    ASSERT_EQ(extracted.code, 0) << extracted.errors;
    // Of each name: those for phones before those for all devices, vectors after the others.
    std::map<std::string, std::map<int, std::set<std::vector<std::uint8_t>>>> picturesOf;
    const json list = json::parse(extracted.output);
    for (const json& rendition : list.at("renditions")) {
        const bool isVector = rendition.at("kind") == "vector";
        const std::string idiom = rendition.at("idiom");
        if (rendition.at("path").is_string() && (isVector || rendition.at("scale") == 3.0) &&
            (idiom == "phone" || idiom == "universal")) {
            const int rank = (idiom == "phone" ? 0 : 2) + (isVector ? 1 : 0);
            picturesOf[rendition.at("name")][rank].insert(
                pixelsOf("work/" + rendition.at("path").get<std::string>()));
        }
    }
    constexpr std::string_view kBundle = "Bundles/com.example.real/";
    constexpr std::string_view kScale = "@3x.png";
    int taken = 0;
    for (const auto& [name, file] : filesOf(result)) {
        ASSERT_EQ(file.contains("from"), name.starts_with(kBundle)) << name;
        if (file.contains("from")) {
            ASSERT_TRUE(name.ends_with(kScale)) << name;
            const std::string own =
                name.substr(kBundle.size(), name.size() - kBundle.size() - kScale.size());
            const auto pixels = pixelsOf(std::string("work/") + kSkeleton + "/" + name);
            EXPECT_FALSE(pixels.empty()) << name;
            ASSERT_FALSE(picturesOf[own].empty()) << name;
            EXPECT_TRUE(picturesOf[own].begin()->second.contains(pixels)) << name;
            ++taken;
        }
    }
    EXPECT_EQ(taken, 27);
}

// It always takes seconds: the screens of a device are drawn.
TEST_F(Dump, progressIsShownOnATerminalOnceItTakesLong) {
    std::vector<std::string> words{"dump", "-o", "themes", "--force"};
    std::optional<std::string> shown;
    int devices = 0;
    // Another device is more work, until this machine shows progress.
    do {
        words.insert(words.end(), {"--device", devices % 2 == 0 ? "phone" : "pad"});
        shown = errorsOnTerminal(words, setting());
        if (!shown) {
            GTEST_SKIP() << "no pseudo-terminal is to be had";
        }
        ++devices;
    } while (shown->find(" s left") == std::string::npos && devices < 8);
    EXPECT_NE(shown->find(" screens, "), std::string::npos) << *shown;
    EXPECT_EQ(shown->find("] 0 of "), std::string::npos) << "before half a second had passed";
    EXPECT_TRUE(shown->ends_with("\r\033[K")) << "the line stays";
}

}  // namespace
}  // namespace velmoranth::cli::dump_test
