// velmoranth extract: what is asked for, where it goes, and the report for programs.
#include "tests/cli/extract_fixture.h"
#include "tests/support/places.h"

#include <nlohmann/json.hpp>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cstdlib>

namespace velmoranth::cli::extract_request_test {
namespace {

using nlohmann::json;

namespace fs = std::filesystem;

class ExtractRequest : public ExtractTest {
  protected:
    // Two names, each for phone and pad at two scales, one of them dark for the pad; a colour.
    void catalogOfMany() const {
        CarWriter car;
        car.appearance("UIAppearanceDark", 1);
        car.facet("Bar/Knob", 8);
        car.facet("Icon", 7);
        car.facet("Tint", 9);
        car.color({.identifier = 9, .scalePercent = 0}, 1, {1, 0, 0, 1});
        for (const std::uint16_t scale : {std::uint16_t{1}, std::uint16_t{2}}) {
            for (const std::uint16_t idiom : {std::uint16_t{1}, std::uint16_t{2}}) {
                const std::uint32_t side = 4U * scale;
                car.bitmap({.identifier = 7, .scale = scale, .idiom = idiom},
                           CarPixels::filled(side, side, kRed));
                car.bitmap({.identifier = 8,
                            .scale = scale,
                            .idiom = idiom,
                            .attributes = {{Attribute::appearance,
                                            static_cast<std::uint16_t>(idiom - 1)}}},
                           CarPixels::filled(side, side, kGreen));
            }
        }
        catalog(car);
    }

    // The files of an extraction with those words, and what --list counts with them.
    void expectTaken(const std::vector<std::string>& words, const std::string& names,
                     const std::string& counts) const {
        SCOPED_TRACE(words.empty() ? "" : words.back());
        fs::remove_all(folder / "out");
        std::vector<std::string> all{"Maps.app", "out"};
        all.insert(all.end(), words.begin(), words.end());
        const CommandResult result = extract(all);
        EXPECT_EQ(result.code, 0) << result.errors;
        EXPECT_EQ(fileNames("out/Maps.app"), names);
        all[1] = "--list";
        const std::string table = extract(all).output;
        EXPECT_TRUE(table.ends_with("\n" + counts + " to extract\n")) << table;
    }
};

TEST_F(ExtractRequest, FiltersTakeWhatFitsAllOfThem) {
    catalogOfMany();
    expectTaken({},
                "Bar/Knob-4-4.png Bar/Knob-4-4~phone.png Bar/Knob-8-8-@2x.png "
                "Bar/Knob-8-8-@2x~phone.png Icon-4-4.png Icon-4-4~phone.png Icon-8-8-@2x.png "
                "Icon-8-8-@2x~phone.png",
                "9 renditions, 8 pictures");
    expectTaken({"--scale", "2"},
                "Bar/Knob-8-8-@2x.png Bar/Knob-8-8-@2x~phone.png Icon-8-8-@2x.png "
                "Icon-8-8-@2x~phone.png",
                "4 renditions, 4 pictures");
    expectTaken({"--idiom", "phone"},
                "Bar/Knob-4-4~phone.png Bar/Knob-8-8-@2x~phone.png Icon-4-4~phone.png "
                "Icon-8-8-@2x~phone.png",
                "4 renditions, 4 pictures");
    expectTaken({"--idiom", "2", "--scale=1"}, "Bar/Knob-4-4.png Icon-4-4.png",
                "2 renditions, 2 pictures");
    for (const char* const dark : {"dark", "Dark", "UIAppearanceDark"}) {
        expectTaken({"--appearance", dark}, "Bar/Knob-4-4.png Bar/Knob-8-8-@2x.png",
                    "2 renditions, 2 pictures");
    }
    expectTaken({"--appearance", "dark", "--appearance", "any", "--scale", "1", "--idiom", "pad"},
                "Bar/Knob-4-4.png Icon-4-4.png", "2 renditions, 2 pictures");
    expectTaken(
        {"--scale", "1", "--scale", "2", "--idiom", "pad", "--idiom", "phone", "--name", "I*"},
        "Icon-4-4.png Icon-4-4~phone.png Icon-8-8-@2x.png Icon-8-8-@2x~phone.png",
        "4 renditions, 4 pictures");
    expectTaken({"--name", "nothing", "--name", "*Knob", "--name", "Tint", "--idiom", "universal",
                 "--idiom", "pad", "--scale", "1", "--scale", "7"},
                "Bar/Knob-4-4.png", "1 rendition, 1 picture");
    EXPECT_EQ(extract({"Maps.app", "--list", "--name", "T*", "--name", "I*"}).code, 0);
    expectFailure({"Maps.app", "none", "--name", "x", "--name", "y"}, 1,
                  "Maps.app/Assets.car: nothing has a name that fits \"x\" or \"y\"; without "
                  "--name, --list shows the names");
    expectFailure(
        {"Maps.app", "none", "--scale", "3"}, 1,
        "Maps.app/Assets.car: nothing fits --scale as it is given; --list alone shows what "
        "there is");
    expectFailure({"Maps.app", "none", "--idiom", "watch", "--scale", "2"}, 1,
                  "Maps.app/Assets.car: nothing fits --scale and --idiom as they are given; --list "
                  "alone shows what there is");
    expectFailure({"Maps.app", "none", "--idiom", "watch", "--scale", "2", "--name", "*",
                   "--appearance", "any"},
                  1,
                  "Maps.app/Assets.car: nothing fits --name, --scale, --idiom and --appearance as "
                  "they are given; --list alone shows what there is");
    expectFailure({"Maps.app", "none", "--appearance", "drak"}, 1,
                  "Maps.app/Assets.car: --appearance takes any or dark, not \"drak\"; did you mean "
                  "dark?");
    expectFailure(
        {"Maps.app", "none", "--appearance", "any", "--appearance", "tinted", "--scale", "3"}, 1,
        "Maps.app/Assets.car: --appearance takes any or dark, not \"tinted\"");
    EXPECT_EQ(
        extract({"Maps.app", "--list", "--appearance", "drak"}).errors,
        "velmoranth: error: Maps.app/Assets.car: --appearance takes any or dark, not \"drak\"; "
        "did you mean dark?\n");
    EXPECT_FALSE(fs::exists(folder / "none"));
}

TEST_F(ExtractRequest, StandardOutputTakesOnePicture) {
    catalogOfMany();
    const std::vector<std::string> one{"--name", "Icon", "--idiom", "pad", "--scale", "2"};
    const auto with = [&](std::vector<std::string> words) {
        words.insert(words.end(), one.begin(), one.end());
        return words;
    };
    const CommandResult result = extract(with({"Maps.app", "-"}));
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    ASSERT_EQ(extract(with({"Maps.app", "out"})).code, 0);
    EXPECT_TRUE(result.output == folder.contents("out/Maps.app/Icon-8-8-@2x.png"));
    EXPECT_TRUE(extract(with({"Maps.app", "-", "--flat"})).output == result.output);
    expectFailure(
        {"Maps.app", "-", "--name", "Icon"}, 2,
        "standard output takes one picture, and 4 are asked for; --name, --scale, --idiom "
        "and --appearance say which, --list shows them");
    expectFailure({"Maps.app", "-", "--name", "x"}, 1,
                  "Maps.app/Assets.car: nothing has a name that fits \"x\"; without --name, --list "
                  "shows the names");
    EXPECT_FALSE(fs::exists(folder / "-"));
}

TEST_F(ExtractRequest, WhatIsNeitherFileNorFolderIsCalledWhatItIs) {
    const auto message = [](const std::string& what) {
        return ": this is " + what +
               ", and no file; give a .car file or the folder of a bundle, or - for standard input";
    };
    expectFailure({"/dev/null", "out"}, 3, "/dev/null" + message("a device"));
    ASSERT_EQ(::mkfifo((folder / "pipe.car").c_str(), 0600), 0);
    expectFailure({"pipe.car", "out"}, 3, "pipe.car" + message("a pipe"));
    EXPECT_FALSE(fs::exists(folder / "out"));
}

TEST_F(ExtractRequest, AnInputThatIsNotThereIsNamedNearby) {
    catalogOfMany();
    expectFailure({"Mpas.app", "out"}, 3,
                  "Mpas.app: no such file or directory; did you mean Maps.app?");
    expectFailure({"./Maps", "out"}, 3,
                  "./Maps: no such file or directory; did you mean ./Maps.app?");
    expectFailure({"Quite.other", "out"}, 3, "Quite.other: no such file or directory");
    expectFailure({"none/Maps.app", "out"}, 3, "none/Maps.app: no such file or directory");
}

TEST_F(ExtractRequest, FilesOfACatalogLieInTheFolderAndOfABundleBelowItsName) {
    catalogOfMany();
    const std::vector<std::string> filter{"--name", "*n*", "--idiom", "pad", "--scale", "1"};

    struct Case {
        std::string input;
        std::string folder;  // the working one, from the test's
        std::string option;
        std::string names;
    };

    const std::string plain = "Bar/Knob-4-4.png Icon-4-4.png";
    const std::string below = "Maps.app/Bar/Knob-4-4.png Maps.app/Icon-4-4.png";
    const std::string flat = "Bar%2FKnob-4-4.png Icon-4-4.png";
    const std::string systems = "Icon-4-4.png";  // a phone makes no folders for names
    const std::string file = "Maps.app/Assets.car";
    for (const Case& one : std::vector<Case>{
             {"Maps.app", "", "", below},
             {"./Maps.app//", "", "", below},
             {folder / "Maps.app", "", "", below},
             {".", "Maps.app", "", below},
             {"../Maps.app/.", "Maps.app", "", below},
             {file, "", "", plain},
             {folder / file, "", "", plain},
             {"Assets.car", "Maps.app", "", plain},
             {"../Maps.app/../Maps.app/Assets.car", "Maps.app", "", plain},
             {"Maps.app", "", "--flat", flat},
             {".", "Maps.app", "--flat", flat},
             {file, "", "--flat", flat},
             {"Maps.app", "", "--system-names", "Maps.app/" + systems},
             {file, "", "--system-names", file + "/" + systems},
             {"Assets.car", "Maps.app", "--system-names", file + "/" + systems},
         }) {
        fs::remove_all(folder / "out");
        std::vector<std::string> words{"extract", one.input, folder / "out"};
        words.insert(words.end(), filter.begin(), filter.end());
        if (!one.option.empty()) {
            words.push_back(one.option);
        }
        const CommandResult result = runCommand(words, {.folder = folder / one.folder});
        EXPECT_EQ(result.code, 0) << result.errors;
        EXPECT_EQ(fileNames("out"), one.names) << one.input << " " << one.option;
    }
}

TEST_F(ExtractRequest, CatalogMayComeOnStandardInput) {
    catalogOfMany();
    const auto fromShell = [&](const std::string& line) {
        return std::system(("cd '" + folder.path() + "' && " + line).c_str());
    };
    const std::string command = std::string("'") + tests::kCommand + "' extract - ";
    EXPECT_EQ(fromShell("cat Maps.app/Assets.car | " + command + "piped > said"), 0);
    EXPECT_EQ(folder.contents("said"), "Extracted 8 pictures (8 files) into piped\n");
    EXPECT_EQ(fromShell(command + "read < Maps.app/Assets.car > said"), 0);
    EXPECT_EQ(extract({"Maps.app/Assets.car", "named"}).code, 0);
    EXPECT_TRUE(files("piped") == files("named"));
    EXPECT_TRUE(files("read") == files("named"));
    EXPECT_EQ(fromShell(command + "--list --json < Maps.app/Assets.car > said"), 0);
    EXPECT_EQ(json::parse(folder.contents("said"))["catalog"], "-");
    EXPECT_NE(fromShell("printf text | " + command + "none 2> said"), 0);
    EXPECT_EQ(folder.contents("said"),
              "velmoranth: error: standard input: it is not a compiled asset catalog (at byte "
              "0)\n");
    EXPECT_NE(fromShell(command + "none < /dev/null 2> said"), 0);
    EXPECT_NE(fromShell(command + "none < . 2> said"), 0);
    EXPECT_EQ(folder.contents("said"), "velmoranth: error: standard input: is a directory\n");
    EXPECT_FALSE(fs::exists(folder / "none"));
}

TEST_F(ExtractRequest, MoreThanTheLimitOnStandardInputIsSaidSo) {
    const std::string line = "cd '" + folder.path() + "' && head -c 537919488 /dev/zero | '" +
                             tests::kCommand + "' extract - none 2> said";
    EXPECT_NE(std::system(line.c_str()), 0);
    EXPECT_EQ(folder.contents("said"),
              "velmoranth: error: standard input: there are more than 512 MiB, the limit: give the "
              "file itself\n");
}

TEST_F(ExtractRequest, ReportHasThePathOfEachPictureAsItCanBeOpened) {
    CarWriter car;
    car.facet("Bar/Icon", 7);
    car.facet("Broken", 8);
    car.facet("Tint", 9);
    car.bitmap({.identifier = 7, .idiom = 1}, CarPixels::filled(4, 4, kRed));
    car.bitmap({.identifier = 7, .idiom = 2}, CarPixels::filled(4, 4, kGreen));
    car.bitmap({.identifier = 8, .width = 4, .height = 4}, Compression::astc,
               tests::ByteVector(16, 1));
    car.color({.identifier = 9}, 1, {1, 0, 0, 1});
    catalog(car);
    for (const auto& [output, path] : std::map<std::string, std::string>{
             {"out", "out/Maps.app"}, {"new/out/", "new/out/Maps.app"}}) {
        const CommandResult result = extract({"Maps.app", output, "--json"});
        EXPECT_EQ(result.code, 1);
        EXPECT_EQ(result.errors,
                  "velmoranth: warning: \"Broken\", rendition \"picture.png\": the compression "
                  "ASTC is not supported\n");
        const json object = json::parse(result.output, nullptr, false);
        ASSERT_TRUE(object.is_object()) << result.output;
        EXPECT_EQ(object["catalog"], "Maps.app/Assets.car");
        EXPECT_EQ(object["output"], path);
        const json& renditions = object["renditions"];
        ASSERT_EQ(renditions.size(), 4U);
        EXPECT_EQ(renditions[0]["path"], path + "/Bar/Icon-4-4~phone.png");
        EXPECT_EQ(renditions[0]["file"], "Bar/Icon-4-4~phone.png");
        EXPECT_EQ(renditions[0]["givesWay"], false);
        EXPECT_EQ(renditions[1]["path"], path + "/Bar/Icon-4-4.png");
        EXPECT_EQ(renditions[2]["extracted"], true);
        EXPECT_EQ(renditions[2]["path"], nullptr);
        EXPECT_EQ(renditions[2]["file"], nullptr);
        EXPECT_EQ(renditions[2]["problem"], "the compression ASTC is not supported");
        EXPECT_EQ(renditions[3]["kind"], "color");
        EXPECT_EQ(renditions[3]["path"], nullptr);
        expectPicture(renditions[0]["path"], CarPixels::filled(4, 4, kRed));
        expectPicture(renditions[1]["path"], CarPixels::filled(4, 4, kGreen));
    }
    // A list has the same object, and no paths.
    const json listed = json::parse(extract({"Maps.app", "--list", "--json"}).output);
    EXPECT_EQ(listed["output"], nullptr);
    EXPECT_EQ(listed["renditions"][0]["path"], nullptr);
    EXPECT_EQ(listed["renditions"][0]["file"], "Bar/Icon-4-4~phone.png");
    const json flat = json::parse(extract({"Maps.app", "--list", "--json", "--flat"}).output);
    EXPECT_EQ(flat["renditions"][0]["file"], "Bar%2FIcon-4-4~phone.png");
}

TEST_F(ExtractRequest, ReportOfTheSystemsNamesHasThePicturesThatGaveWay) {
    CarWriter car;
    car.facet("Icon", 7);
    car.bitmap({.identifier = 7, .idiom = 1}, CarPixels::filled(4, 4, kRed));
    car.bitmap({.identifier = 7, .idiom = 2}, CarPixels::filled(4, 4, kGreen));
    catalog(car);
    const json renditions =
        json::parse(extract({"Maps.app", "out", "--json", "--system-names"}).output)["renditions"];
    ASSERT_EQ(renditions.size(), 2U);
    EXPECT_EQ(renditions[0]["givesWay"], true);
    EXPECT_EQ(renditions[0]["path"], nullptr);
    EXPECT_EQ(renditions[1]["givesWay"], false);
    EXPECT_EQ(renditions[1]["path"], "out/Maps.app/Icon-4-4.png");
}

TEST_F(ExtractRequest, ReportOfAStoppedExtractionHasWhatIsThere) {
    CarWriter car;
    car.facet("Large", 8);
    car.facet("Small", 9);
    car.bitmap({.identifier = 8}, CarPixels::pattern(300, 300));
    car.bitmap({.identifier = 9}, CarPixels::filled(1, 1, kRed));
    catalog(car);
    const CommandResult result =
        runCommand({"extract", "Maps.app", "out", "--json", "--jobs", "1"},
                   {.folder = folder.path(), .limits = {{RLIMIT_FSIZE, 1000}}});
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.errors,
              "velmoranth: error: out/Maps.app/Large-300-300.png: the picture cannot be written: "
              "file too large\n");
    const json renditions = json::parse(result.output)["renditions"];
    ASSERT_EQ(renditions.size(), 2U);
    for (const json& rendition : renditions) {
        EXPECT_EQ(rendition["path"], nullptr);
        EXPECT_EQ(rendition["givesWay"], false);
    }
}

// Files whose size takes decoding to be known are listed as well.
TEST_F(ExtractRequest, ListKnowsTheFilesOfImageFiles) {
    CarWriter car;
    car.facet("File", 8);
    const std::vector<std::uint8_t> bgra(2UL * 4 * 4, 255);
    const platform::Data png = desktop::encodePng(bgra, 2, 4, 8);
    car.file({.identifier = 8, .pixelFormat = fourCharacterCode("JPEG"), .orientation = 6},
             {reinterpret_cast<const char*>(png.data()), png.size()});
    catalog(car);
    EXPECT_EQ(
        json::parse(extract({"Maps.app", "--list", "--json"}).output)["renditions"][0]["file"],
        "File-4-2.png");
}

}  // namespace
}  // namespace velmoranth::cli::extract_request_test
