// velmoranth extract: what is lost, and what is not, when something fails on the way.
#include "desktop/vector_images/vector_images.h"
#include "tests/cli/extract_fixture.h"
#include "tests/support/sanitizers.h"

#include <sys/resource.h>

namespace velmoranth::cli::extract_failure_test {
namespace {

constexpr rlim_t kMegabyte = 1024UL * 1024;

class ExtractFailure : public ExtractTest {
  protected:
    const CarPixels green = CarPixels::filled(4, 4, kGreen);

    static CarRendition copyFor(std::uint16_t target) {
        return {.identifier = 7,
                .attributes = {{Attribute::deploymentTarget, target}},
                .name = "for " + std::to_string(target),
                .width = 4,
                .height = 4};
    }

    // The copy for newer systems, which is sound, is what comes out.
    void expectNewerCopy() const {
        const CommandResult result = extract({"Maps.app", "out"});
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(result.output, "Extracted 1 picture (1 file) into out/Maps.app\n");
        EXPECT_EQ(fileNames("out/Maps.app"), "Icon-4-4.png");
        expectPicture("out/Maps.app/Icon-4-4.png", green);
    }

    void catalogWithMany(int count) const {
        CarWriter car;
        for (int i = 1; i <= count; ++i) {
            const auto identifier = static_cast<std::uint16_t>(i);
            car.facet("Icon " + std::to_string(i), identifier);
            car.bitmap({.identifier = identifier}, CarPixels::pattern(40, 40));
        }
        catalog(car);
    }

    [[nodiscard]] CommandResult extractWithin(const std::map<int, rlim_t>& limits,
                                              const std::string& jobs) const {
        return runCommand({"extract", "Maps.app", "out", "--jobs", jobs},
                          {.folder = folder.path(), .limits = limits});
    }
};

TEST_F(ExtractFailure, CopyWithoutADecoderGivesWayToANewerOne) {
    CarWriter car;
    car.facet("Icon", 7);
    car.bitmap(copyFor(0), Compression::astc, tests::ByteVector(16, 1));
    car.bitmap(copyFor(5), green);
    catalog(car);
    expectNewerCopy();
}

TEST_F(ExtractFailure, DamagedCopyGivesWayToANewerOne) {
    CarWriter car;
    car.facet("Icon", 7);
    car.bitmap(copyFor(0), Compression::lzfse, tests::ByteVector(50, 0xAB));
    car.bitmap(copyFor(3), Compression::lzfse, tests::ByteVector(50, 0xCD));
    car.bitmap(copyFor(5), green);
    catalog(car);
    expectNewerCopy();
}

TEST_F(ExtractFailure, PartOfADamagedAtlasGivesWayToANewerCopy) {
    CarWriter car;
    car.facet("Icon", 7);
    car.rendition({.element = 9,
                   .attributes = {{Attribute::dimension1, 1}},
                   .name = "ZZZZPackedAsset-1.1.0",
                   .width = 8,
                   .height = 8,
                   .layout = 1004,
                   .payload = tests::bitmapPayload(Compression::lzfse, tests::ByteVector(50, 3))});
    car.atlas(2, CarPixels::filled(8, 8, kGreen));
    car.link(copyFor(0), {0, 0, 4, 4}, 1);
    car.link(copyFor(5), {0, 0, 4, 4}, 2);
    catalog(car);
    expectNewerCopy();
}

TEST_F(ExtractFailure, PictureWithoutASoundCopyIsLostOnceForTheFirstReason) {
    CarWriter car;
    car.facet("Icon", 7);
    car.facet("Sound", 8);
    car.bitmap(copyFor(0), Compression::blurred, tests::ByteVector(16, 1));
    car.bitmap(copyFor(5), Compression::astc, tests::ByteVector(16, 1));
    car.bitmap({.identifier = 8}, green);
    catalog(car);
    const CommandResult result = extract({"Maps.app", "out"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.output,
              "Extracted 1 picture (1 file) into out/Maps.app; 1 could not be extracted\n");
    EXPECT_EQ(result.errors,
              "velmoranth: warning: \"Icon\", rendition \"for 0\": the compression blurred is not "
              "supported\n");
}

// A page of 10 x 6 points, green.
const std::string kPdf =
    "%PDF-1.4\n1 0 obj\n<</Type/Catalog/Pages 2 0 R>>\nendobj\n"
    "2 0 obj\n<</Type/Pages/Count 1/Kids[3 0 R]>>\nendobj\n"
    "3 0 obj\n<</Type/Page/Parent 2 0 R/MediaBox[0 0 10 6]/Contents 4 0 R>>\nendobj\n"
    "4 0 obj\n<</Length 22>>stream\n0 1 0 rg 0 0 10 6 re f\nendstream\nendobj\n"
    "trailer<</Size 5/Root 1 0 R>>\n%%EOF\n";

TEST_F(ExtractFailure, WithoutTheProgramForPdfOnlySuchPicturesAreLeftOut) {
    CarWriter car;
    car.facet("Sound", 7);
    car.facet("Vector", 8);
    car.bitmap({.identifier = 7}, green);
    car.file({.identifier = 8,
              .name = "clock.pdf",
              .scalePercent = 0,
              .pixelFormat = fourCharacterCode("PDF "),
              .layout = 9},
             kPdf);
    catalog(car);
    const auto extractWith = [&](const std::string& programs) {
        return runCommand({"extract", "Maps.app", "out"},
                          {.folder = folder.path(), .variables = {{"PATH", programs}}});
    };
    const CommandResult without = extractWith(folder / "none");
    EXPECT_EQ(without.code, 1);
    EXPECT_EQ(without.output,
              "Extracted 1 picture (1 file) into out/Maps.app; 1 could not be extracted\n");
    EXPECT_EQ(without.errors,
              "velmoranth: warning: \"Vector\", rendition \"clock.pdf\": PDF files cannot be "
              "drawn: there is no pdfinfo; install the package poppler-utils\n");
    EXPECT_EQ(fileNames("out/Maps.app"), "Sound-4-4.png");
    if (desktop::vectorLibraries().starts_with("no pdftocairo")) {
        return;
    }
    const CommandResult with = extractWith("/usr/local/bin:/usr/bin:/bin");
    EXPECT_EQ(with.code, 0);
    EXPECT_EQ(with.errors, "");
    expectPicture("out/Maps.app/Vector-10-6.png", CarPixels::filled(10, 6, kGreen));
}

TEST_F(ExtractFailure, WhatIsInTheWayOfOnePictureCostsThatOne) {
    CarWriter car;
    std::uint16_t identifier = 0;
    for (const char* const name : {"Bar/Icon", "Icon", "Linked/Icon", "Other", "Table/Icon"}) {
        ++identifier;
        car.facet(name, identifier);
        car.bitmap({.identifier = identifier}, green);
    }
    catalog(car);
    folder.folder("out/Maps.app/Icon-4-4.png");
    folder.folder("elsewhere");
    folder.link("out/Maps.app/Linked", folder / "elsewhere");
    folder.file("out/Maps.app/Table", "text");
    const CommandResult result = extract({"Maps.app", "out"});
    EXPECT_EQ(result.code, 1);
    const std::string warning = "velmoranth: warning: ";
    const std::string rendition = ", rendition \"picture.png\": out/Maps.app/";
    EXPECT_EQ(result.errors,
              warning + "\"Icon\"" + rendition +
                  "Icon-4-4.png: the picture cannot be written: is a directory\n" + warning +
                  "\"Linked/Icon\"" + rendition +
                  "Linked: the folder is a link, which may lead anywhere: remove it or choose "
                  "another OUTPUT-DIR\n" +
                  warning + "\"Table/Icon\"" + rendition +
                  "Table: the folder cannot be made: not a directory\n");
    EXPECT_EQ(result.output,
              "Extracted 2 pictures (2 files) into out/Maps.app; 3 could not be extracted\n");
    expectPicture("out/Maps.app/Bar/Icon-4-4.png", green);
    expectPicture("out/Maps.app/Other-4-4.png", green);
    EXPECT_EQ(folder.names("elsewhere"), "");
    EXPECT_EQ(folder.names("out/Maps.app"), "Bar Icon-4-4.png Linked Other-4-4.png Table");
}

TEST_F(ExtractFailure, FileBeyondTheLargestAllowedIsOneLineAndLeavesNothing) {
    CarWriter car;
    car.facet("Large", 8);
    car.bitmap({.identifier = 8}, CarPixels::pattern(300, 300));
    catalog(car);
    const CommandResult result = extractWithin({{RLIMIT_FSIZE, 1000}}, "1");
    EXPECT_EQ(result.signal, 0);
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.errors,
              "velmoranth: error: out/Maps.app/Large-300-300.png: the picture cannot be written: "
              "file too large\n");
    EXPECT_EQ(result.output, "Extracted 0 of 1 picture (0 files) into out/Maps.app\n");
    EXPECT_EQ(folder.names("out/Maps.app"), "");
}

TEST_F(ExtractFailure, ThreadsThatStartedDoTheWork) {
    if (tests::kAddressSanitizer) {
        GTEST_SKIP() << "built with a sanitizer";
    }
    catalogWithMany(300);
    // Room for a few threads' stacks of 64 MB.
    const CommandResult result =
        extractWithin({{RLIMIT_STACK, 64 * kMegabyte}, {RLIMIT_AS, 700 * kMegabyte}}, "256");
    EXPECT_EQ(result.signal, 0);
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(result.output, "Extracted 300 pictures (300 files) into out/Maps.app\n");
}

TEST_F(ExtractFailure, WithoutAnyThreadTheWorkIsDoneAllTheSame) {
    if (tests::kAddressSanitizer) {
        GTEST_SKIP() << "built with a sanitizer";
    }
    catalogWithMany(20);
    const CommandResult result =
        extractWithin({{RLIMIT_STACK, 2000 * kMegabyte}, {RLIMIT_AS, 1000 * kMegabyte}}, "4");
    EXPECT_EQ(result.signal, 0);
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(result.output, "Extracted 20 pictures (20 files) into out/Maps.app\n");
}

}  // namespace
}  // namespace velmoranth::cli::extract_failure_test
