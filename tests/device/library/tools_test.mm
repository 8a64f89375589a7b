// The tools for theme makers through the phone's whole operation: a catalog that is taken apart,
// with what each name leaves behind while it goes on, and the image dump as look-ups come to it.
#include "device/library/device_process.h"
#import "device/standins/core_ui.h"
#import "device/standins/images.h"
#include <objc/runtime.h>

#include <functional>
#include <utility>

namespace velmoranth::standins::tools_test {
namespace {

using Lines = std::vector<std::string>;

const std::string kCatalog = "/Library/Catalogs/Kit/Assets.car";
const std::string kOut = "/var/mobile/Documents/out/Kit/Assets.car";

// A rendition that is a PDF of that size in points.
CUINamedImage* pdf(NSString* name, double scale, CGSize size) {
    CUINamedImage* const image = [[[CUINamedImage alloc] initWithName:name
                                                                scale:scale] autorelease];
    [image setPDFSize:size];
    return image;
}

// A rendition with a bitmap of that side in pixels.
CUINamedImage* stored(NSString* name, double scale, std::size_t side) {
    CUINamedImage* const image = [[[CUINamedImage alloc] initWithName:name
                                                                scale:scale] autorelease];
    const CGImageRef bitmap = createImage({.width = side, .height = side, .bytesPerRow = side * 4},
                                          Bytes(side * side * 4));
    [image setImage:bitmap];
    CGImageRelease(bitmap);
    return image;
}

class Extraction : public DeviceProcess {
  protected:
    Extraction() {
        loaded();
        file(kCatalog, "");
    }

    ~Extraction() override { forgetCatalogFiles(); }

    static void extract() {
        clearJournal();
        clearLog();
        EXPECT_EQ([velMoranth() imageFromBundlePath:[NSString stringWithUTF8String:kCatalog.c_str()]
                                            extract:YES
                                     extractionPath:@"/var/mobile/Documents/out"],
                  nil);
    }

    static Lines catalogMessages() {
        Lines lines;
        for (const std::string& line : journal()) {
            if (line.find("CUI") != std::string::npos && line.find("URL") == std::string::npos) {
                lines.push_back(line);
            }
        }
        return lines;
    }

    static std::string extracting(const std::string& file) {
        return "Extracting " + kOut + "/" + file + "\n";
    }

    // "20 x 40" pixels, as the written file says.
    static std::string sizeOf(const std::string& file) {
        NSString* const path = [NSString stringWithUTF8String:(kOut + "/" + file).c_str()];
        const CGImageRef bitmap = [[UIImage imageWithContentsOfFile:path] CGImage];
        return std::to_string(CGImageGetWidth(bitmap)) + " x " +
               std::to_string(CGImageGetHeight(bitmap));
    }
};

TEST_F(Extraction, DrawsPdfsAtTheirOwnScalesAndTakesStoredBitmaps) {
    NSObject* const odd = [[[NSObject alloc] init] autorelease];
    CUINamedImage* const empty = [[[CUINamedImage alloc] initWithName:@"bell" scale:1] autorelease];
    addCatalogFile(kCatalog, {.entries = {{"bell", pdf(@"bell", 2, {10, 20}), 2},
                                          {"bell", pdf(@"bell", 3, {10, 20}), 3},
                                          {"bell", odd, 1},
                                          {"bell", empty, 1},
                                          {"photo", stored(@"photo", 1.5, 8), 1.5},
                                          {"photo", stored(@"photo", 2, 16), 2},
                                          {"car", pdf(@"car", 1, {2.5, 4}), 1, 4},
                                          {"pod", pdf(@"pod", 1, {2, 2}), 1, 5}}});
    extract();
    const std::string draw =
        "-[CUINamedImage createImageFromPDFRenditionWithScale:] CUINamedImage ";
    EXPECT_EQ(
        catalogMessages(),
        (Lines{"-[CUICatalog allImageNames] CUICatalog",
               "-[CUICatalog imageWithName:scaleFactor:] CUICatalog \"bell\" 0",
               "-[CUICatalog imagesWithName:] CUICatalog \"bell\"",
               draw + "bell 2",
               draw + "bell 3",
               draw + "bell 1",
               "-[CUINamedImage image] CUINamedImage bell",
               "-[CUICatalog imageWithName:scaleFactor:] CUICatalog \"photo\" 0",
               "-[CUICatalog imagesWithName:] CUICatalog \"photo\"",
               draw + "photo 1.5",
               "-[CUINamedImage image] CUINamedImage photo",
               draw + "photo 2",
               "-[CUINamedImage image] CUINamedImage photo",
               "-[CUICatalog imageWithName:scaleFactor:] CUICatalog \"car\" 0",
               "-[CUICatalog imageWithName:scaleFactor:deviceIdiom:] CUICatalog \"car\" 0 1",
               "-[CUICatalog imageWithName:scaleFactor:deviceIdiom:] CUICatalog \"car\" 0 4",
               draw + "car 1",
               "-[CUICatalog imageWithName:scaleFactor:] CUICatalog \"pod\" 0",
               "-[CUICatalog imageWithName:scaleFactor:deviceIdiom:] CUICatalog \"pod\" 0 1",
               "-[CUICatalog imageWithName:scaleFactor:deviceIdiom:] CUICatalog \"pod\" 0 4"}));
    EXPECT_EQ(logLines(),
              (Lines{extracting("bell-20-40-@2x.png"), extracting("bell-30-60-@3x.png"),
                     extracting("photo-8-8.png"), extracting("photo-16-16-@2x.png"),
                     extracting("car-3-4.png"), "Velmoranth Assets Extracted 5 files.\n"}));
    EXPECT_EQ(sizeOf("bell-20-40-@2x.png"), "20 x 40");
    EXPECT_EQ(sizeOf("bell-30-60-@3x.png"), "30 x 60");
    EXPECT_EQ(sizeOf("photo-8-8.png"), "8 x 8");
    EXPECT_EQ(sizeOf("photo-16-16-@2x.png"), "16 x 16");
    EXPECT_EQ(sizeOf("car-3-4.png"), "3 x 4");
}

// What a rendition takes goes with it: when the next name comes, there is as much as at the first,
// and the caller's pool has not grown for any of them.
TEST_F(Extraction, KeepsNothingBetweenNames) {
    CatalogFile catalog;
    for (int i = 0; i < 20; ++i) {
        const std::string name = "name" + std::to_string(i);
        NSString* const native = [NSString stringWithUTF8String:name.c_str()];
        catalog.entries.push_back({name, pdf(native, 2, {4, 4}), 2});
        catalog.entries.push_back({name, stored(native, 1, 4), 1});
    }
    addCatalogFile(kCatalog, catalog);
    const Lines before = allLiving();
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    std::vector<Lines> living;
    std::vector<unsigned> pooled;
    // Asked for outside all pools of the operation's own, which are none at that moment.
    const auto whenDrawn = [](const std::function<void()>& action) {
        for (int i = 0; i < 20; ++i) {
            whenNoted("-[CUINamedImage createImageFromPDFRenditionWithScale:] CUINamedImage name" +
                          std::to_string(i) + " 2",
                      action);
        }
    };
    whenDrawn([&] {
        living.push_back(allLiving());
        pooled.push_back([pool autoreleaseCount]);
    });
    extract();
    ASSERT_EQ(living.size(), 20U);
    EXPECT_EQ(living, std::vector<Lines>(20, living.front()));
    EXPECT_EQ(pooled, std::vector<unsigned>(20, pooled.front()));
    whenDrawn(nullptr);
    [pool drain];
    EXPECT_EQ(logLines().size(), 41U);
    EXPECT_EQ(allLiving(), before);
}

// An error prints as itself, with all that it holds.
TEST_F(Extraction, TellsTheCatalogsErrorAsItPrints) {
    NSError* const error =
        [NSError errorWithDomain:@"com.apple.CoreUI"
                            code:7
                        userInfo:@{NSLocalizedDescriptionKey : @"It is odd.", @"facet" : @"bell"}];
    addCatalogFile(kCatalog, {.entries = {}, .opens = false, .error = error});
    extract();
    const std::string line =
        "Velmoranth Assets Error Domain=com.apple.CoreUI Code=7 \"It is odd.\" "
        "UserInfo={NSLocalizedDescription=It is odd., facet=bell}";
    // The second attempt, by name in a bundle, has an error of its own.
    EXPECT_EQ(logLines(),
              Lines{"Velmoranth Assets Error Domain=NSCocoaErrorDomain Code=260 \"No such file.\" "
                    "UserInfo={NSLocalizedDescription=No such file.}"});
    // Where that one has none the first one's counts.
    addCatalogFile("", {.entries = {}, .opens = false});
    extract();
    EXPECT_EQ(logLines(), Lines{line});
}

TEST_F(Extraction, TellsTheFoldersErrorAsItPrints) {
    addCatalogFile(kCatalog, {.entries = {{"bell", pdf(@"bell", 2, {10, 20}), 2}}});
    file("/var/mobile/Documents/out", "");
    extract();
    ASSERT_EQ(logLines().size(), 1U);
    const std::string line = logLines().front();
    EXPECT_TRUE(line.starts_with("Velmoranth Assets Error Domain=NSCocoaErrorDomain Code="))
        << line;
    EXPECT_NE(line.find("UserInfo={"), std::string::npos) << line;
    EXPECT_FALSE(exists(kOut));
}

IMP readsDictionary = nullptr;
std::function<void()> afterReading;

id readAndGoOn(id self, SEL selector, NSString* path) {
    const id read = reinterpret_cast<id (*)(id, SEL, NSString*)>(
        reinterpret_cast<void (*)()>(readsDictionary))(self, selector, path);
    if (const auto action = std::exchange(afterReading, nullptr)) {
        action();
    }
    return read;
}

class Dump : public DeviceProcess {
  protected:
    Dump() {
        loaded();
        switches({"enableImageDump"});
        const Method method =
            class_getClassMethod([NSDictionary class], @selector(dictionaryWithContentsOfFile:));
        readsDictionary = method_setImplementation(
            method, reinterpret_cast<IMP>(reinterpret_cast<void (*)()>(&readAndGoOn)));
    }

    static void switches(std::initializer_list<const char*> on) { activeThemes({"A"}, on); }

    void ask(const char* name) const {
        clearLog();
        [velMoranth() deviceUIImageNamed:[NSString stringWithUTF8String:name]
                         originalUIImage:image];
    }

    static bool isDumped(const std::string& name) {
        return exists("/var/mobile/Library/VelmoranthImageDump/UIImages/" + name + "@3x.png");
    }

    // The log's lines of the dump and of the look-up itself.
    static bool isLogged(const std::string& beginning) {
        for (const std::string& line : logLines()) {
            if (line.starts_with(beginning)) {
                return true;
            }
        }
        return false;
    }

    UIImage* image = imageOfPixels(4, 4);
};

constexpr const char* kDumpLine = "VelmoranthImageDump imgToDump: ";

// The look-up reads both of its switches, then the dump that it comes to reads the logging alone:
// preferences that change in between turn the log on and leave the dump on.
TEST_F(Dump, ReadsTheLoggingAnewAndNotItself) {
    afterReading = [] { switches({"enableLogging"}); };
    ask("one");
    EXPECT_TRUE(isDumped("one"));
    EXPECT_TRUE(isLogged(kDumpLine));
    // Without a file the look-up keeps both as they were left: the dump's off would stop it here.
    remove("/User/Library/Preferences/com.qor.velmoranthprefs.plist");
    ask("two");
    EXPECT_TRUE(isDumped("two"));
    EXPECT_TRUE(isLogged(kDumpLine));
    switches({});
    ask("three");
    EXPECT_FALSE(isDumped("three"));
    EXPECT_EQ(logLines(), Lines{});
}

// The other way round: the logging that the look-up saw on is off when the dump has read.
TEST_F(Dump, TurnsTheLoggingOffAsWell) {
    switches({"enableImageDump", "enableLogging"});
    afterReading = [] { switches({"enableImageDump"}); };
    ask("one");
    EXPECT_TRUE(isDumped("one"));
    EXPECT_FALSE(isLogged(kDumpLine));
    remove("/User/Library/Preferences/com.qor.velmoranthprefs.plist");
    ask("two");
    EXPECT_TRUE(isDumped("two"));
    EXPECT_EQ(logLines(), Lines{});
}

}  // namespace
}  // namespace velmoranth::standins::tools_test
