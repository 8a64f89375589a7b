#include "tools/image_dump.h"

#include "tests/support/replaced_services.h"
#include "tests/support/test_device.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace velmoranth::tools::image_dump_test {
namespace {

using platform::ImageRef;
using platform::NullableString;
using tests::drawnPixels;
using tests::solid;
using Lines = std::vector<std::string>;

constexpr const char* kPreferences = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
constexpr const char* kReadPreferences =
    "+[NSDictionary dictionaryWithContentsOfFile:] "
    "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
const std::string kRoot = "/var/mobile/Library/VelmoranthImageDump";
const std::string kUIImages = kRoot + "/UIImages";
const std::string kBundles = kRoot + "/Bundles";
const std::string kIconBundles = kRoot + "/IconBundles";

// An image of a filter chain, with no bitmap of its own.
struct FilteredImage final : platform::Image {
    [[nodiscard]] std::string className() const override { return "UIImage"; }

    [[nodiscard]] platform::Size size() const override { return {4, 4}; }

    [[nodiscard]] double scale() const override { return 1; }

    [[nodiscard]] platform::BitmapImageRef bitmap() const override { return nullptr; }

    [[nodiscard]] bool hasCIImage() const override { return filtered; }

    bool filtered = true;
};

const std::string kEncode = "UIImagePNGRepresentation 3×2 @3x";

class Dump : public testing::Test {
  protected:
    void dump(const ImageRef& dumped, const NullableString& name, const NullableString& bundle) {
        ImageDump::VelmoranthImageDumpNamedInBundle(dumped, name, bundle);
    }

    // What the file at the path shows.
    [[nodiscard]] tests::Pixels shown(const std::string& path) const {
        return drawnPixels(device.images().imageWithContentsOfFile(path));
    }

    // Every file and folder of the dump, below its root, sorted.
    [[nodiscard]] Lines tree() const {
        Lines found;
        const std::filesystem::path root(device.hostFolder() + kRoot);
        if (std::filesystem::exists(root)) {
            for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
                found.push_back(entry.path().lexically_relative(root).string());
            }
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    [[nodiscard]] static Lines made(const std::string& folder) {
        return {"-[NSFileManager fileExistsAtPath:isDirectory:] " + folder,
                "mkdir " + folder + " 0755"};
    }

    [[nodiscard]] static Lines written(const std::string& target) {
        return {"-[NSFileManager fileExistsAtPath:] " + target, kEncode,
                "-[NSData writeToFile:atomically:] " + target};
    }

    [[nodiscard]] static Lines joined(const std::vector<Lines>& parts) {
        Lines all;
        for (const Lines& part : parts) {
            all.insert(all.end(), part.begin(), part.end());
        }
        return all;
    }

    tests::TestDevice device;
    ImageRef image = device.image(tests::pattern(9, 6));
    ImageRef other = device.image(solid(9, 6, {255, 0, 0, 255}));
};

TEST_F(Dump, WithoutABundleWritesIntoUIImages) {
    dump(image, "icon", std::nullopt);
    EXPECT_EQ(device.journal.lines(), joined({{kReadPreferences, "setuid 0", "setgid 0"},
                                              made(kRoot),
                                              made(kUIImages),
                                              written(kUIImages + "/icon@3x.png")}));
    EXPECT_EQ(tree(), (Lines{"UIImages", "UIImages/icon@3x.png"}));
    EXPECT_EQ(shown(kUIImages + "/icon@3x.png"), tests::pattern(9, 6));
    EXPECT_EQ(device.mode(kRoot), 0755U);
    EXPECT_EQ(device.mode(kUIImages), 0755U);
    EXPECT_TRUE(device.contents(kUIImages + "/icon@3x.png").starts_with("\x89PNG"));
}

TEST_F(Dump, WithABundleWritesIntoItsFolder) {
    dump(image, "icon", "com.x.kit");
    EXPECT_EQ(device.journal.lines(), joined({{kReadPreferences, "setuid 0", "setgid 0"},
                                              made(kRoot),
                                              made(kBundles),
                                              made(kBundles + "/com.x.kit"),
                                              written(kBundles + "/com.x.kit/icon@3x.png")}));
    EXPECT_EQ(tree(), (Lines{"Bundles", "Bundles/com.x.kit", "Bundles/com.x.kit/icon@3x.png"}));
    EXPECT_EQ(shown(kBundles + "/com.x.kit/icon@3x.png"), tests::pattern(9, 6));
    EXPECT_EQ(device.mode(kBundles + "/com.x.kit"), 0755U);
}

TEST_F(Dump, AppIconsAreWrittenTwice) {
    dump(image, "com.example.app", "IconBundles");
    EXPECT_EQ(device.journal.lines(),
              joined({{kReadPreferences, "setuid 0", "setgid 0"},
                      made(kRoot),
                      made(kBundles),
                      made(kBundles + "/IconBundles"),
                      written(kBundles + "/IconBundles/com.example.app@3x.png"),
                      made(kIconBundles),
                      written(kIconBundles + "/com.example.app@3x.png")}));
    EXPECT_EQ(tree(),
              (Lines{"Bundles", "Bundles/IconBundles", "Bundles/IconBundles/com.example.app@3x.png",
                     "IconBundles", "IconBundles/com.example.app@3x.png"}));
    EXPECT_EQ(shown(kIconBundles + "/com.example.app@3x.png"), tests::pattern(9, 6));
    EXPECT_EQ(device.mode(kIconBundles), 0755U);
}

TEST_F(Dump, OtherBundlesAreNoAppIcons) {
    dump(image, "icon", "iconbundles");
    dump(image, "icon", "IconBundles2");
    dump(image, "icon", "");
    EXPECT_FALSE(device.exists(kIconBundles));
    EXPECT_TRUE(device.exists(kBundles + "/icon@3x.png"));  // "" is a bundle name
    EXPECT_FALSE(device.exists(kUIImages));
}

TEST_F(Dump, FileNameTakesTheSuffixUnlessItEndsWithAFullStop) {
    struct Case {
        NullableString name;
        const char* file;
    };

    for (const Case& wanted :
         {Case{"Foo.", "Foo."}, Case{"Foo", "Foo@3x.png"}, Case{"Foo.png", "Foo.png@3x.png"},
          Case{"Foo..", "Foo.."}, Case{".Foo", ".Foo@3x.png"}, Case{"Foo@3x", "Foo@3x@3x.png"},
          Case{"Foo. ", "Foo. @3x.png"}, Case{"", "@3x.png"}, Case{"%@ ☾", "%@ ☾@3x.png"},
          Case{std::nullopt, "(null)@3x.png"}}) {
        dump(image, wanted.name, std::nullopt);
        EXPECT_TRUE(device.exists(kUIImages + "/" + wanted.file)) << wanted.file;
        dump(image, wanted.name, "com.x.kit");
        EXPECT_TRUE(device.exists(kBundles + "/com.x.kit/" + wanted.file)) << wanted.file;
    }
}

TEST_F(Dump, FirstImageOfANameWins) {
    for (const NullableString& bundle :
         {NullableString(), NullableString("com.x.kit"), NullableString("IconBundles")}) {
        dump(image, "icon", bundle);
    }
    device.journal.clear();
    dump(other, "icon", std::nullopt);
    EXPECT_EQ(device.journal.lines(),
              (Lines{kReadPreferences, "setuid 0", "setgid 0",
                     "-[NSFileManager fileExistsAtPath:isDirectory:] " + kRoot,
                     "-[NSFileManager fileExistsAtPath:isDirectory:] " + kUIImages,
                     "-[NSFileManager fileExistsAtPath:] " + kUIImages + "/icon@3x.png"}));
    dump(other, "icon", "com.x.kit");
    dump(other, "icon", "IconBundles");
    EXPECT_EQ(device.journal.count("-[NSData writeToFile:atomically:]"), 0U);
    EXPECT_EQ(device.journal.count("mkdir"), 0U);
    for (const std::string& folder :
         {kUIImages, kBundles + "/com.x.kit", kIconBundles, kBundles + "/IconBundles"}) {
        EXPECT_EQ(shown(folder + "/icon@3x.png"), tests::pattern(9, 6));
    }
}

TEST_F(Dump, EachOfTheTwoPlacesIsTestedOnItsOwn) {
    device.file(kBundles + "/IconBundles/com.a@3x.png", "mine");
    dump(image, "com.a", "IconBundles");
    EXPECT_EQ(device.contents(kBundles + "/IconBundles/com.a@3x.png"), "mine");
    EXPECT_EQ(shown(kIconBundles + "/com.a@3x.png"), tests::pattern(9, 6));

    device.file(kIconBundles + "/com.b@3x.png", "mine");
    dump(image, "com.b", "IconBundles");
    EXPECT_EQ(device.contents(kIconBundles + "/com.b@3x.png"), "mine");
    EXPECT_EQ(shown(kBundles + "/IconBundles/com.b@3x.png"), tests::pattern(9, 6));
}

// Lets two threads meet when each has been told that a file is missing.
class MeetingFiles final : public platform::FileManager {
  public:
    MeetingFiles(platform::FileManager& real, std::string path)
        : real_(real), path_(std::move(path)) {}

    bool fileExistsAtPath(const std::string& path) override {
        const bool exists = real_.fileExistsAtPath(path);
        if (path == path_ && !exists) {
            std::unique_lock lock(mutex_);
            ++missed;
            changed_.notify_all();
            changed_.wait_for(lock, std::chrono::seconds(20), [this] { return missed >= 2; });
        }
        return exists;
    }

    platform::FileExistence fileExistsAtPathIsDirectory(const std::string& path) override {
        return real_.fileExistsAtPathIsDirectory(path);
    }

    platform::Failure setPosixPermissionsOfItemAtPath(unsigned mode,
                                                      const std::string& path) override {
        return real_.setPosixPermissionsOfItemAtPath(mode, path);
    }

    platform::Failure copyItemAtPathToPath(const std::string& source,
                                           const std::string& destination) override {
        return real_.copyItemAtPathToPath(source, destination);
    }

    platform::Failure moveItemAtPathToPath(const std::string& source,
                                           const std::string& destination) override {
        return real_.moveItemAtPathToPath(source, destination);
    }

    platform::Failure createDirectoryAtPathWithIntermediateDirectories(
        const std::string& path) override {
        return real_.createDirectoryAtPathWithIntermediateDirectories(path);
    }

    bool createFileAtPathContents(const std::string& path,
                                  const platform::Data& contents) override {
        return real_.createFileAtPathContents(path, contents);
    }

    bool writeToFileAtomically(const platform::Data& contents, const std::string& path) override {
        return real_.writeToFileAtomically(contents, path);
    }

    platform::Failure removeItemAtPath(const std::string& path) override {
        return real_.removeItemAtPath(path);
    }

    std::optional<platform::Data> dataWithContentsOfFile(const std::string& path) override {
        return real_.dataWithContentsOfFile(path);
    }

    int missed = 0;

  private:
    platform::FileManager& real_;
    std::string path_;
    std::mutex mutex_;
    std::condition_variable changed_;
};

// Nothing is locked: both find the name missing, both write, and the file is one of the two, whole.
TEST_F(Dump, TwoThreadsThatDumpOneNameBothWriteIt) {
    const Lines folders{kUIImages, kBundles + "/com.x.kit"};
    for (std::size_t i = 0; i < folders.size(); ++i) {
        const std::string target = folders.at(i) + "/icon@3x.png";
        const NullableString bundle = i == 0 ? std::nullopt : NullableString("com.x.kit");
        const ImageRef first = device.image(tests::pattern(400, 300));
        const ImageRef second = device.image(tests::pattern(300, 400));
        MeetingFiles files(platform::platform().fileManager, target);
        platform::FileManager& before = platform::platform().fileManager;
        tests::replaceServices({.fileManager = &files});
        device.journal.clear();
        std::thread thread([&] { dump(first, "icon", bundle); });
        dump(second, "icon", bundle);
        thread.join();
        tests::replaceServices({.fileManager = &before});
        EXPECT_EQ(files.missed, 2) << target;
        EXPECT_EQ(device.journal.count("-[NSData writeToFile:atomically:] " + target), 2U);
        EXPECT_EQ(device.journal.count("UIImagePNGRepresentation"), 2U);
        EXPECT_EQ(device.journal.count("-[NSFileManager createFileAtPath:contents:attributes:]"),
                  0U);
        const platform::Data found =
            platform::platform().fileManager.dataWithContentsOfFile(target).value_or(
                platform::Data());
        EXPECT_TRUE(found == device.images().pngRepresentation(first) ||
                    found == device.images().pngRepresentation(second))
            << target;
        const Lines all = tree();
        EXPECT_EQ(std::ranges::count_if(all,
                                        [](const std::string& path) {
                                            return path.find("icon") != std::string::npos;
                                        }),
                  static_cast<std::ptrdiff_t>(i + 1))
            << "no other file is left";
    }
}

TEST_F(Dump, ImageWithoutDataOnlyLogs) {
    device.preferences({{"enableLogging", true}});
    const auto empty = std::make_shared<FilteredImage>();
    empty->filtered = false;
    dump(empty, "icon", "com.x.kit");
    dump(nullptr, "icon", std::nullopt);
    dump(nullptr, std::nullopt, "IconBundles");
    EXPECT_EQ(device.journal.lines(),
              (Lines{"log VelmoranthImageDump imgToDump: " + empty->description() +
                         " HASNODATA:    Imgnamed: icon   inBundle: com.x.kit",
                     "log VelmoranthImageDump imgToDump: (null) HASNODATA:    Imgnamed: icon   "
                     "inBundle: (null)",
                     "log VelmoranthImageDump imgToDump: (null) HASNODATA:    Imgnamed: (null)   "
                     "inBundle: IconBundles"}));
    EXPECT_FALSE(device.exists(kRoot));
}

// No PNG comes of it; the second try creates its file all the same, where it can.
TEST_F(Dump, FilteredImageLeavesAnEmptyFile) {
    const auto filtered = std::make_shared<FilteredImage>();
    dump(filtered, "icon", std::nullopt);
    EXPECT_EQ(device.contents(kUIImages + "/icon@3x.png"), "");
    dump(filtered, "icon", "com.x.kit");
    EXPECT_FALSE(device.exists(kBundles + "/com.x.kit/icon@3x.png"));
    EXPECT_TRUE(device.journal.log().empty());
}

TEST_F(Dump, LogsWhenLoggingIsOn) {
    device.preferences({{"enableLogging", true}});
    dump(image, "icon", "com.x.kit");
    dump(image, "icon", std::nullopt);
    EXPECT_EQ(device.journal.log(),
              (Lines{"VelmoranthImageDump imgToDump: " + image->description() +
                         "    Imgnamed: icon   inBundle: com.x.kit",
                     "VelmoranthImageDump imgToDump: " + image->description() +
                         "    Imgnamed: icon   inBundle: (null)"}));
    EXPECT_EQ(device.journal.lines().at(0), kReadPreferences);
    EXPECT_TRUE(device.journal.lines().at(1).starts_with("log "));
    EXPECT_EQ(device.journal.lines().at(2), "setuid 0");
}

TEST_F(Dump, LoggingKeepsItsValueWhenTheFileIsMissing) {
    device.preferences({{"enableLogging", true}});
    dump(image, "one", std::nullopt);
    device.remove(kPreferences);
    dump(image, "two", std::nullopt);
    EXPECT_EQ(device.journal.log().size(), 2U);
    device.preferences({{"enable", true}});
    dump(image, "three", std::nullopt);
    EXPECT_EQ(device.journal.log().size(), 2U);
    EXPECT_TRUE(device.exists(kUIImages + "/three@3x.png"));
}

TEST_F(Dump, FailedWriteIntoABundleIsTriedOnceMoreBelowTheTarget) {
    device.preferences({{"enableLogging", false}});
    device.fileManager().failingWrites = 1;
    dump(image, "icon", "com.x.kit");
    const std::string target = kBundles + "/com.x.kit/icon@3x.png";
    const std::string nested = target + "/icon@3x.png";
    const Lines attempts = device.journal.linesWith("-[NSData writeToFile:atomically:] ");
    EXPECT_EQ(attempts, (Lines{"-[NSData writeToFile:atomically:] " + target,
                               "-[NSData writeToFile:atomically:] " + nested}));
    EXPECT_EQ(device.journal.count("UIImagePNGRepresentation"), 2U);
    EXPECT_EQ(device.journal.linesWith("-[NSFileManager createFileAtPath:contents:attributes:] "),
              Lines{"-[NSFileManager createFileAtPath:contents:attributes:] " + nested});
    EXPECT_FALSE(device.exists(target));  // there is no folder to write the second file into
    EXPECT_TRUE(device.journal.log().empty());
}

// A folder comes to the target between the test and the write.
TEST_F(Dump, SuccessBelowTheTargetIsLoggedAsAFailure) {
    const std::string target = kBundles + "/IconBundles/com.a@3x.png";
    device.fileManager().failingWrites = 1;
    device.fileManager().whenWriteFails = [&](const std::string& path) { device.folder(path); };
    dump(image, "com.a", "IconBundles");
    EXPECT_EQ(
        device.journal.lines(),
        joined(
            {{kReadPreferences, "setuid 0", "setgid 0"},
             made(kRoot),
             made(kBundles),
             made(kBundles + "/IconBundles"),
             written(target),
             {kEncode,
              "-[NSFileManager createFileAtPath:contents:attributes:] " + target + "/com.a@3x.png",
              "-[NSData writeToFile:atomically:] " + target + "/com.a@3x.png",
              "log VelmoranthImageDump DID NOT SAVE IMAGE: com.a@3x.png  BUNDLE: IconBundles "},
             made(kIconBundles),
             written(kIconBundles + "/com.a@3x.png")}));
    EXPECT_EQ(shown(target + "/com.a@3x.png"), tests::pattern(9, 6));
}

TEST_F(Dump, FailedWriteIntoUIImagesIsTriedOnceMoreInPlace) {
    device.fileManager().failingWrites = 1;
    dump(image, "icon", std::nullopt);
    const std::string target = kUIImages + "/icon@3x.png";
    EXPECT_EQ(device.journal.lines(),
              joined({{kReadPreferences, "setuid 0", "setgid 0"},
                      made(kRoot),
                      made(kUIImages),
                      written(target),
                      {kEncode, "-[NSFileManager createFileAtPath:contents:attributes:] " + target,
                       "-[NSData writeToFile:atomically:] " + target}}));
    EXPECT_EQ(shown(target), tests::pattern(9, 6));
}

TEST_F(Dump, FailedWriteIntoIconBundlesIsTriedOnceMoreInPlace) {
    device.file(kBundles + "/IconBundles/com.a@3x.png", "mine");
    device.fileManager().failingWrites = 1;
    dump(image, "com.a", "IconBundles");
    const std::string target = kIconBundles + "/com.a@3x.png";
    EXPECT_EQ(device.journal.linesWith("-[NSFileManager createFileAtPath:contents:attributes:] "),
              Lines{"-[NSFileManager createFileAtPath:contents:attributes:] " + target});
    EXPECT_EQ(device.journal.linesWith("-[NSData writeToFile:atomically:] "),
              (Lines{"-[NSData writeToFile:atomically:] " + target,
                     "-[NSData writeToFile:atomically:] " + target}));
    EXPECT_EQ(shown(target), tests::pattern(9, 6));
    EXPECT_TRUE(device.journal.log().empty());
}

TEST_F(Dump, WritesThatKeepFailingAreNotReported) {
    device.fileManager().failingWrites = 100;
    dump(image, "icon", "IconBundles");
    dump(image, "icon", std::nullopt);
    EXPECT_TRUE(device.journal.log().empty());
    EXPECT_EQ(device.journal.count("-[NSData writeToFile:atomically:] "), 6U);
}

TEST_F(Dump, FileInTheWayOfAFolderIsNotReported) {
    device.file(kRoot, "in the way");
    dump(image, "icon", "IconBundles");
    dump(image, "icon", std::nullopt);
    EXPECT_EQ(device.contents(kRoot), "in the way");
    EXPECT_TRUE(device.journal.log().empty());
}

TEST_F(Dump, NameWithASlashNeedsItsFolder) {
    dump(image, "sets/icon", std::nullopt);
    EXPECT_EQ(tree(), Lines{"UIImages"});
    device.folder(kUIImages + "/sets");
    dump(image, "sets/icon", std::nullopt);
    EXPECT_EQ(shown(kUIImages + "/sets/icon@3x.png"), tests::pattern(9, 6));
}

TEST(ContentType, IsToldByTheFirstByte) {
    for (int byte = 0; byte < 256; ++byte) {
        NullableString expected;
        if (byte == 0xFF) {
            expected = "image/jpeg";
        } else if (byte == 0x89) {
            expected = "image/png";
        } else if (byte == 0x47) {
            expected = "image/gif";
        } else if (byte == 0x49 || byte == 0x4D) {
            expected = "image/tiff";
        }
        const auto first = static_cast<std::uint8_t>(byte);
        EXPECT_EQ(ImageDump::contentTypeForImageData({first}), expected) << byte;
        EXPECT_EQ(ImageDump::contentTypeForImageData({first, 0x89, 0xFF}), expected) << byte;
    }
}

TEST(ContentType, IsNilForNoData) {
    EXPECT_EQ(ImageDump::contentTypeForImageData({}), std::nullopt);
}

}  // namespace
}  // namespace velmoranth::tools::image_dump_test
