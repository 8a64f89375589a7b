// The device's side: the library loaded into the process as the hooking loader does it, the
// phone's own classes stood in for, and a window over which alerts come.
#pragma once

#import "device/equality/phone_files.h"
#import "device/equality/transcript.h"
#import "device/library/library_messages.h"
#import "device/library/load_library.h"
#import "device/standins/av_foundation.h"
#import "device/standins/controllers.h"
#import "device/standins/core_ui.h"
#import "device/standins/images.h"
#import "device/standins/records.h"
#import "device/standins/springboard.h"
#import "device/standins/system.h"
#import <Foundation/Foundation.h>
#include <objc/runtime.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::equality {

using standins::setVariable;

inline NSString* stringOf(Text text) {
    return text == nullptr ? nil : [NSString stringWithUTF8String:text];
}

inline NSString* textAt(const Step& step, std::size_t index) {
    return stringOf(step.texts[index]);
}

inline std::optional<std::string> textOf(NSString* text) {
    return text == nil ? std::nullopt : std::optional<std::string>([text UTF8String]);
}

inline std::string shownBool(BOOL flag) {
    return flag ? "YES" : "NO";
}

inline std::string shownObject(id object) {
    return object == nil ? kNothing : class_getName(object_getClass(object));
}

inline std::string shownFrame(CGRect frame) {
    return shownNumber(frame.origin.x) + " " + shownNumber(frame.origin.y) + " " +
           shownNumber(frame.size.width) + " " + shownNumber(frame.size.height);
}

inline Class<VelMoranthMessages> mainClass() {
    return static_cast<Class<VelMoranthMessages>>(objc_getClass("VelMoranth"));
}

inline Class<VelmoranthFileManagerMessages> panel() {
    return static_cast<Class<VelmoranthFileManagerMessages>>(
        objc_getClass("VelmoranthFileManager"));
}

inline id<VelMoranthMessages> manager() {
    return [mainClass() sharedIconManager];
}

inline id<SoundsMessages> sounds() {
    const Class cls = static_cast<Class>(objc_getClass("Sounds"));
    static const id kInstance = [cls new];
    return kInstance;
}

inline id someone(const Step& step) {
    return step.given == Given::none ? nil : sounds();
}

// With the identifier in every role.
inline SBApplicationIcon* iconWith(NSString* identifier) {
    SBApplicationIcon* const icon = [[[SBApplicationIcon alloc] init] autorelease];
    for (const char* const role : {"_leafIdentifier", "_nodeIdentifier", "_uniqueIdentifier"}) {
        setVariable(icon, role, identifier);
    }
    return icon;
}

inline SBIcon* iconFor(const Step& step) {
    return step.texts[0] == nullptr ? nil : iconWith(textAt(step, 0));
}

inline NSBundle* bundleFor(const Step& step, std::size_t index) {
    const standins::Unrecorded mine;
    return step.texts[index] == nullptr
               ? nil
               : [NSBundle bundleWithPath:stringOf(bundleFolder(step.texts[index]).c_str())];
}

template <class View>
View* viewOf(Class cls) {
    const standins::Unrecorded mine;
    return [[static_cast<View*>([cls alloc]) initWithFrame:CGRect{}] autorelease];
}

// The platform's methods that give images: UIImage's own, and others.
inline constexpr const char* kImageSelectors[] = {
    "systemImageNamed:",
    "kitImageNamed:",
    "_imageNamed:withTrait:",
    "_kitImageNamed:withTrait:",
    "imageNamed:inBundle:",
    "imageNamed:inBundle:withConfiguration:",
    "imageNamed:inBundle:compatibleWithTraitCollection:",
    "imageWithContentsOfCPBitmapFile:flags:",
    "_applicationIconImageForBundleIdentifier:format:scale:",
};
inline constexpr const char* kImageMethods[] = {
    "+[APWUtil iconForBundleIdentifier:]",
    "+[WeatherImageLoader conditionImageNamed:style:]",
    "-[SBApplicationIcon getUnmaskedIconImage:]",
    "-[SBHIconImageCache imageForIcon:]",
    "-[SBHIconImageCache unmaskedImageForIcon:]",
    "-[SBIconImageView contentsImage]",
    "-[PKIconImageCache imageForKey:]",
};

inline std::string makeTemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "phone-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        std::perror("no temporary folder");
        std::abort();
    }
    return name;
}

class DeviceSide final : public Side {
  public:
    explicit DeviceSide(const Scenario& scenario)
        : pool_([[NSAutoreleasePool alloc] init]), root_(makeTemporaryFolder()) {
        standins::setPhoneRoot(root_);
        // A process of the phone begins at the root, where a path without a slash leads.
        if (::chdir(root_.c_str()) != 0) {
            std::perror(root_.c_str());
            std::abort();
        }
        standins::setSystemVersion(scenario.system.major, scenario.system.minor, 0,
                                   scenario.system.coreFoundation);
        standins::setMachine("iPhone10,3");
        standins::setDevice(scenario.device.idiom, 1);
        standins::setScreen({375, 812}, scenario.device.scale);
        standins::setContextScale(scenario.device.scale);
        given_ = [standins::imageOfPixels(kGivenSide, kGivenSide, kGivenScale) retain];
        sound_ = [[SBUISound alloc] init];
        standins::setAnswer("+[SBUISound soundWithFeedbackEventType:]", sound_);
        answer(given_);
        showWindow();
        addMainClass();
        addImageMethods();
        addIconMethods();
        addFileManager();
        addSounds();
        addHomeScreen();
    }

    ~DeviceSide() override {
        [pool_ release];
        standins::setPhoneRoot("");
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }

    [[nodiscard]] std::string root() const override { return root_; }

    void startRecording() override { standins::startRecording(); }

    [[nodiscard]] record::Record takeRecord() override { return standins::takeRecord(); }

    void load() override {
        {
            const standins::Unrecorded mine;
            addCatalogs();
        }
        standins::loadLibrary();
    }

    std::string send(const Step& step) override {
        const auto found = answers_.find(step.message);
        if (found == answers_.end()) {
            std::fprintf(stderr, "unknown message %s\n", step.message);
            std::abort();
        }
        @autoreleasepool {
            answer(step.given == Given::image ? given_ : nil);
            std::string result = found->second(step);
            answer(given_);
            return result;
        }
    }

    void post(const std::string& name) override {
        standins::postDarwinNotification(name);
        standins::runMainQueue();
    }

    void wait(long long milliseconds) override {
        standins::advanceClock(static_cast<double>(milliseconds) / 1000);
    }

    std::vector<std::string> events() override {
        std::vector<std::string> all;
        for (UIView* const view in [[controller_ view] subviews]) {
            all.push_back("over the screen: " + shownView(view));
        }
        return all;
    }

  private:
    using Answer = std::function<std::string(const Step& step)>;

    void answer(UIImage* image) {
        current_ = image;
        for (const char* const selector : kImageSelectors) {
            standins::answerWith(selector, image);
        }
        for (const char* const method : kImageMethods) {
            standins::setAnswer(method, static_cast<id>(image));
        }
    }

    [[nodiscard]] std::string shownImage(UIImage* image) const {
        if (image == nil) {
            return kNothing;
        }
        if (image == given_) {
            return kTheGiven;
        }
        return shown(ShownImage{[image size].width, [image size].height, [image scale]});
    }

    [[nodiscard]] std::string shownView(UIView* view) const {
        if (view == nil) {
            return kNothing;
        }
        std::string text = shownObject(view) + " at " + shownFrame([view frame]);
        text += [view isHidden] ? " hidden" : "";
        if ([view isKindOfClass:[UIImageView class]]) {
            text += " with " + shownImage([static_cast<UIImageView*>(view) image]);
        }
        return text;
    }

    void showWindow() {
        UIWindow* const window = [[UIWindow alloc] initWithFrame:CGRect{{0, 0}, {375, 812}}];
        controller_ = [[UIViewController alloc] init];
        UIView* const view = [[UIView alloc] initWithFrame:CGRect{{0, 0}, {375, 812}}];
        [controller_ setView:view];
        [window setRootViewController:controller_];
        standins::setKeyWindow(window);
        [view release];
        [window release];
    }

    void addCatalogs() {
        for (const std::string& path : catalogFiles()) {
            standins::CatalogFile file;
            for (const CatalogImage& image : catalogImages()) {
                if (image.catalog != path) {
                    continue;
                }
                CUINamedImage* const object =
                    [[[CUINamedImage alloc] initWithName:stringOf(image.name)
                                                   scale:image.scale] autorelease];
                [object setImage:[standins::imageOfPixels(static_cast<std::size_t>(image.width),
                                                          static_cast<std::size_t>(image.height))
                                     CGImage]];
                file.entries.push_back({.name = image.name,
                                        .object = object,
                                        .scale = static_cast<double>(image.scale),
                                        .deviceIdiom = image.idiom});
            }
            standins::addCatalogFile(path, file);
            writeFile(root_, path, "a catalog");
        }
    }

    void addMainClass();

    void addEffects();

    void addImageMethods();

    void addIconMethods();

    void addFileManager();

    void addSounds();

    void addHomeScreen();

    NSAutoreleasePool* pool_;
    std::string root_;
    UIImage* given_ = nil;
    UIImage* current_ = nil;
    SBUISound* sound_ = nil;
    UIViewController* controller_ = nil;
    std::map<std::string, Answer> answers_;
};

}  // namespace velmoranth::equality
