// What the library's classes answer: their selectors, on which side, with which types, and no
// others.
#include "device/library/device_process.h"
#include <objc/runtime.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace velmoranth::standins::interface_test {
namespace {

using Lines = std::vector<std::string>;

void replace(std::string& text, const std::string& written, const std::string& meant) {
    for (std::size_t place = 0; (place = text.find(written)) != std::string::npos;) {
        text.replace(place, written.size(), meant);
    }
}

// Types without the places of arguments in a frame, structures as "<Rect>", and one sign each for
// BOOL and for numbers of 64 bits, which differ between systems.
std::string typesOf(Method method) {
    std::string types = method_getTypeEncoding(method);
    std::erase_if(types, [](unsigned char sign) { return std::isdigit(sign) != 0; });
    replace(types, "{CGSize=dd}", "<Size>");
    replace(types, "{CGRect={CGPoint=dd}<Size>}", "<Rect>");
    replace(types, "C", "B");
    replace(types, "l", "q");
    replace(types, "L", "Q");
    return types;
}

// "+selector types", sorted.
void append(Lines& lines, Class cls, char side) {
    unsigned count = 0;
    Method* const methods = class_copyMethodList(cls, &count);
    for (unsigned i = 0; i < count; ++i) {
        lines.push_back(side + std::string(sel_getName(method_getName(methods[i]))) + " " +
                        typesOf(methods[i]));
    }
    std::free(methods);
}

Lines interfaceOf(const char* name) {
    Lines lines;
    const Class cls = static_cast<Class>(objc_getClass(name));
    append(lines, object_getClass(static_cast<id>(cls)), '+');
    append(lines, cls, '-');
    std::ranges::sort(lines);
    return lines;
}

Lines sorted(Lines lines) {
    std::ranges::sort(lines);
    return lines;
}

class Interface : public DeviceProcess {
  protected:
    Interface() { loaded(); }
};

TEST_F(Interface, OfTheMainClass) {
    EXPECT_EQ(interfaceOf("VelMoranth"),
              sorted({"+load v@:",
                      "+initialize v@:",
                      "+sharedIconManager @@:",
                      "-dealloc v@:",
                      "-initClass: v@:@",
                      "-audiosession @@:",
                      "-setAudiosession: v@:@",
                      "-soundToPlay @@:",
                      "-setSoundToPlay: v@:@",
                      "-playUISound: v@:q",
                      "-playsystemSound: v@:Q",
                      "+selectedTheme @@:",
                      "+currentThemePlist @@:",
                      "+userChangedThemes B@:",
                      "+DetectUserDevice @@:",
                      "+searchforIconInIconBundlesWithLeafIdentifier:forImg: @@:@@",
                      "+deviceUIImageNamed:fromBundle:originalUIImage: @@:@@@",
                      "+deviceUIImageNamed:originalUIImage: @@:@@",
                      "+searchFolder:forImageStr: @@:@@",
                      "+searchFolders:forImageString: @@:@@",
                      "+hasSearchForImageNamedOrBundle:forImg: B@:@@",
                      "+iconMask @@:",
                      "+clearIconMask v@:",
                      "+maskImage:withMask: @@:@@",
                      "+iconOverlay @@:",
                      "+clearIconOverlay v@:",
                      "+redrawIconWithOverlay: @@:@",
                      "+addShadowToIcon @@:",
                      "+clearShadowImg v@:",
                      "+reflectedImage:withHeight: @@:@Q",
                      "+imageWithImage:scaledToSize: @@:@<Size>",
                      "+removeAllOverlaysfrom: v@:@",
                      "+removeAllShadowsfrom: v@:@",
                      "+removeFolderfrom: v@:@",
                      "+removeReflectedIconsfrom: v@:@",
                      "+FolderImage @@:",
                      "+badgeImage @@:",
                      "+pageDots: @@:B",
                      "+spotlightPageDot @@:",
                      "+SBDockImgWithFrame: @@:<Rect>",
                      "+colorWithHexString: @@:@",
                      "+VelmoranthImageDump:named:inBundle: v@:@@@",
                      "+contentTypeForImageData: @@:@",
                      "+imageFromBundlePath:extract:extractionPath: @@:@B@"}));
}

TEST_F(Interface, OfTheFileManager) {
    EXPECT_EQ(
        interfaceOf("VelmoranthFileManager"),
        sorted({"+initialize v@:", "-dealloc v@:", "+sharedFileManager @@:",
                "+NoUserSettingCreateThemeNow v@:", "+overwriteFontFilesInDir:fromTheme: B@:@@",
                "+saveCurrentSettinginFolderWithName: B@:@", "+renameFileFrom:to: B@:@@",
                "+deleteFileFromDevice:fromDir: B@:@@", "+ShowSuccesView: v@:@",
                "+finshedSelfAlert v@:"}));
}

TEST_F(Interface, OfTheSounds) {
    EXPECT_EQ(interfaceOf("Sounds"),
              sorted({"-dealloc v@:", "-initClass: v@:@", "-PlayButtonClick: v@:@",
                      "-PlaySlide: v@:@", "-PlaySlideWithClick: v@:@", "-PlayError: v@:@",
                      "-PlayReboot: v@:@", "-PlaySuccess: v@:@", "-PlayOn: v@:@", "-PlayOff: v@:@",
                      "-soundToPlay @@:", "-setSoundToPlay: v@:@"}));
}

TEST_F(Interface, DerivesFromTheRoot) {
    for (const char* const name : {"VelMoranth", "VelmoranthFileManager", "Sounds"}) {
        EXPECT_EQ(class_getSuperclass(static_cast<Class>(objc_getClass(name))), [NSObject class]);
    }
}

}  // namespace
}  // namespace velmoranth::standins::interface_test
