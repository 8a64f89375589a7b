// A test with a pool around it and an empty phone below it: the phone's paths lead into a folder of
// the test's own, which ends with it.
#pragma once

#include "device/standins/system.h"
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace velmoranth::device {

class PhoneTest : public testing::Test {
  protected:
    PhoneTest() : pool_([[NSAutoreleasePool alloc] init]) {
        std::string name = std::filesystem::temp_directory_path() / "phoneXXXXXX";
        root_ = ::mkdtemp(name.data());
        for (const char* const folder : {"Library/Themes", "var/mobile/Library/Preferences"}) {
            std::filesystem::create_directories(root_ / folder);
        }
        standins::setPhoneRoot(root_);
    }

    ~PhoneTest() override {
        [pool_ drain];
        standins::setPhoneRoot("");
        std::filesystem::remove_all(root_);
    }

    // Ends what only the pool keeps.
    void drain() {
        [pool_ drain];
        pool_ = [[NSAutoreleasePool alloc] init];
    }

    // On this machine, whatever the calls for the phone's paths do.
    [[nodiscard]] std::filesystem::path at(const std::string& path) const {
        return standins::placeOf(path);
    }

    void write(const std::string& path, const std::string& text) const {
        std::filesystem::create_directories(at(path).parent_path());
        std::ofstream(at(path), std::ios::binary) << text;
    }

    [[nodiscard]] std::string read(const std::string& path) const {
        std::ifstream file(at(path), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

  private:
    NSAutoreleasePool* pool_;
    std::filesystem::path root_;
};

}  // namespace velmoranth::device
