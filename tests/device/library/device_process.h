// A process of the phone that the library is loaded into: a folder of its own in which the phone's
// paths lead, with preferences and themes, a system version, and the stand-ins' journal and log.
// What is asked of the library is asked by message.
#pragma once

#include "device/library/library_messages.h"
#include "device/standins/standin.h"
#include "device/standins/system.h"
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace velmoranth::standins {

struct SystemVersion {
    int major;
    int minor;
    double coreFoundation;
};

inline constexpr SystemVersion kiOS12{12, 4, 1575.17};
inline constexpr SystemVersion kiOS13{13, 3, 1674.102};
// Newer than the last of the one and older than the first of the other.
inline constexpr SystemVersion kBetween{13, 0, 1600};

class DeviceProcess : public ::testing::Test {
  protected:
    DeviceProcess();
    ~DeviceProcess() override;

    // Before the library is loaded.
    static void runSystem(const SystemVersion& version);

    // Loads the library; journal and log hold what it did on that.
    static void load();
    // Loads the library and forgets that.
    static void loaded();

    // Paths are the phone's. Folders on the way are made.
    static void file(const std::string& path, const std::string& contents);
    static void folder(const std::string& path);
    static void remove(const std::string& path);
    [[nodiscard]] static bool exists(const std::string& path);
    // "<none>" when there is no such file.
    [[nodiscard]] static std::string contents(const std::string& path);
    // Its size tells one image from another.
    static void png(const std::string& path, unsigned width, unsigned height);

    static void png(const std::string& path, unsigned side) { png(path, side, side); }

    // As a property list, in place of those that there are.
    static void preferences(NSDictionary* preferences);
    // Preferences with these active themes and these switches on.
    static void activeThemes(std::initializer_list<const char*> names,
                             std::initializer_list<const char*> switches = {});

    // Nil until the library is loaded.
    [[nodiscard]] static Class<VelMoranthMessages> velMoranth();
    [[nodiscard]] static Class<VelmoranthFileManagerMessages> fileManager();

  private:
    std::string folder_;
    NSAutoreleasePool* pool_;
};

// objc_getClass knows the class no more.
void hideClass(const std::string& name);

[[nodiscard]] std::string textOf(NSString* text);

}  // namespace velmoranth::standins
