// A process whose changes of files are answered and not made.
#include "cli/sound_process.h"

#include "desktop/audio/recording_output.h"
#include "desktop/files/file_manager.h"
#include "platform/platform.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace velmoranth::cli::sound_process_test {
namespace {

using platform::Data;
using platform::platform;
using platform::PropertyList;

constexpr const char* kList = "<plist><dict><key>enable</key><true/></dict></plist>";

// A device with a property list "/list" and a folder "/folder" with a file in it.
class SoundProcessFiles : public testing::Test {
  protected:
    // A change of anything on the device, its modes and times included, is a failure of every case.
    void TearDown() override { EXPECT_EQ(folder_.tree("device"), before_); }

    static platform::FileManager& files() { return platform().fileManager; }

    static bool exists(const std::string& path) {
        const bool found = files().fileExistsAtPath(path);
        EXPECT_EQ(files().fileExistsAtPathIsDirectory(path).exists, found);
        return found;
    }

    // "<none>" for no file.
    static std::string read(const std::string& path) {
        const auto data = files().dataWithContentsOfFile(path);
        return data ? std::string(data->begin(), data->end()) : "<none>";
    }

    static bool isList(const std::string& path) {
        const auto list = platform().propertyLists.dictionaryWithContentsOfFile(path);
        const auto printable = platform().propertyLists.printableDictionaryWithContentsOfFile(path);
        EXPECT_EQ(list.has_value(), printable.has_value());
        return list == platform::Dictionary{{"enable", PropertyList(true)}};
    }

    static std::string problem(const platform::Failure& failure) {
        return failure ? failure->localizedDescription : "";
    }

    [[nodiscard]] std::shared_ptr<desktop::DeviceRoot> makeDevice() const {
        folder_.file("device/list", kList);
        folder_.file("device/folder/inner", "inner");
        return desktop::DeviceRoot::open(folder_ / "device").value();
    }

    tests::TemporaryFolder folder_;
    std::shared_ptr<desktop::DeviceRoot> root_ = makeDevice();
    tests::TemporaryFolder::Tree before_ = folder_.tree("device");
    desktop::Mixer mixer_;
    desktop::RecordingOutput output_{mixer_};
    desktop::DesktopAudio audio_{root_, mixer_, output_};
    SoundProcess process_{root_, audio_};
};

TEST_F(SoundProcessFiles, ACopyIsReadWhereItWouldBe) {
    EXPECT_FALSE(exists("/copy"));
    EXPECT_EQ(problem(files().copyItemAtPathToPath("/list", "/copy")), "");
    for (const char* const path : {"/copy", "/list"}) {
        EXPECT_TRUE(exists(path)) << path;
        EXPECT_EQ(read(path), kList) << path;
        EXPECT_TRUE(isList(path)) << path;
    }
    EXPECT_EQ(problem(files().copyItemAtPathToPath("/copy", "/second")), "");
    EXPECT_TRUE(isList("/second"));
    EXPECT_EQ(problem(files().copyItemAtPathToPath("/folder", "/other")), "");
    EXPECT_TRUE(files().fileExistsAtPathIsDirectory("/other").isDirectory);
}

TEST_F(SoundProcessFiles, AMovedItemIsAtItsNewPlaceAlone) {
    EXPECT_EQ(problem(files().moveItemAtPathToPath("/list", "/moved")), "");
    EXPECT_TRUE(isList("/moved"));
    EXPECT_FALSE(exists("/list"));
    EXPECT_EQ(read("/list"), "<none>");
    EXPECT_FALSE(isList("/list"));
    EXPECT_EQ(problem(files().moveItemAtPathToPath("/moved", "/list")), "");
    EXPECT_TRUE(isList("/list"));
    EXPECT_FALSE(exists("/moved"));
}

TEST_F(SoundProcessFiles, ARemovedItemIsGoneAndItsPlaceFree) {
    EXPECT_EQ(problem(files().removeItemAtPath("/list")), "");
    EXPECT_FALSE(exists("/list"));
    EXPECT_EQ(problem(files().copyItemAtPathToPath("/folder/inner", "/list")), "");
    EXPECT_EQ(read("/list"), "inner");
}

TEST_F(SoundProcessFiles, WhatFailsOnADeviceFailsInTheSameWords) {
    struct Row {
        std::string source;
        std::string destination;
    };

    desktop::DesktopFileManager real(root_);
    for (const Row& row : {Row{"/list", "/folder"}, Row{"/none", "/new"}, Row{"/none", "/list"},
                           Row{"/list", "/list"}}) {
        const platform::Failure copied = files().copyItemAtPathToPath(row.source, row.destination);
        EXPECT_TRUE(copied.has_value()) << row.source;
        EXPECT_EQ(copied, real.copyItemAtPathToPath(row.source, row.destination)) << row.source;
        const platform::Failure moved = files().moveItemAtPathToPath(row.source, row.destination);
        EXPECT_TRUE(moved.has_value()) << row.source;
        EXPECT_EQ(moved, real.moveItemAtPathToPath(row.source, row.destination)) << row.source;
    }
    EXPECT_FALSE(exists("/new"));
}

TEST_F(SoundProcessFiles, NewContentsFoldersAndModesAreAnsweredAsMade) {
    EXPECT_TRUE(files().createFileAtPathContents("/list", Data{'x'}));
    EXPECT_TRUE(files().createFileAtPathContents("/created", Data{'x'}));
    EXPECT_TRUE(files().writeToFileAtomically(Data{'x'}, "/list"));
    EXPECT_TRUE(files().writeToFileAtomically(Data{'x'}, "/written"));
    EXPECT_EQ(problem(files().createDirectoryAtPathWithIntermediateDirectories("/a/b")), "");
    EXPECT_EQ(problem(files().setPosixPermissionsOfItemAtPath(0700, "/list")), "");
    EXPECT_EQ(platform().libSystem.chmod("/list", 0700), 0);
    EXPECT_EQ(platform().libSystem.mkdir("/made", 0755), 0);
}

}  // namespace
}  // namespace velmoranth::cli::sound_process_test
