// The library on the phone's services: loaded into the process as the hooking loader does it, and
// asked by message. Needs the stand-ins and Foundation alone, so that it can be built for whatever
// the library is built for.
#import "device/equality/phone_files.h"
#import "device/equality/transcript.h"
#import "device/library/library_messages.h"
#import "device/library/load_library.h"
#import "device/standins/av_foundation.h"
#import "device/standins/controllers.h"
#import "device/standins/core_ui.h"
#import "device/standins/images.h"
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

// What the desktop's objects print as, where the stand-ins and this machine's Foundation have other
// words than the phone's: an image as on iOS 13, whichever runs.
@interface UIImage (PhoneDescription)
- (NSString*)description;
@end

@implementation UIImage (PhoneDescription)

- (NSString*)description {
    const CGSize size = [self size];
    return [NSString stringWithFormat:@"<UIImage:%p anonymous {%.17g, %.17g}>",
                                      static_cast<void*>(self), size.width, size.height];
}

@end

// A bundle prints its folder on the phone, which the desktop leaves out.
@interface NSBundle (PhoneDescription)
- (NSString*)description;
@end

#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@implementation NSBundle (PhoneDescription)

- (NSString*)description {
    return [NSString stringWithFormat:@"<NSBundle: %p>", static_cast<void*>(self)];
}

@end

#pragma clang diagnostic pop

namespace velmoranth::equality {
namespace {

using standins::setVariable;

NSString* stringOf(Text text) {
    return text == nullptr ? nil : [NSString stringWithUTF8String:text];
}

NSString* textAt(const Step& step, std::size_t index) {
    return stringOf(step.texts[index]);
}

std::optional<std::string> textOf(NSString* text) {
    return text == nil ? std::nullopt : std::optional<std::string>([text UTF8String]);
}

std::string shownBool(BOOL flag) {
    return flag ? "YES" : "NO";
}

std::string shownObject(id object) {
    return object == nil ? kNothing : class_getName(object_getClass(object));
}

std::string shownFrame(CGRect frame) {
    return shownNumber(frame.origin.x) + " " + shownNumber(frame.origin.y) + " " +
           shownNumber(frame.size.width) + " " + shownNumber(frame.size.height);
}

Class<VelMoranthMessages> mainClass() {
    return static_cast<Class<VelMoranthMessages>>(objc_getClass("VelMoranth"));
}

Class<VelmoranthFileManagerMessages> panel() {
    return static_cast<Class<VelmoranthFileManagerMessages>>(
        objc_getClass("VelmoranthFileManager"));
}

id<VelMoranthMessages> manager() {
    return [mainClass() sharedIconManager];
}

id<SoundsMessages> sounds() {
    const Class cls = static_cast<Class>(objc_getClass("Sounds"));
    static const id kInstance = [cls new];
    return kInstance;
}

id someone(const Step& step) {
    return step.given == Given::none ? nil : sounds();
}

// With the identifier in every role.
SBApplicationIcon* iconWith(NSString* identifier) {
    SBApplicationIcon* const icon = [[[SBApplicationIcon alloc] init] autorelease];
    for (const char* const role : {"_leafIdentifier", "_nodeIdentifier", "_uniqueIdentifier"}) {
        setVariable(icon, role, identifier);
    }
    return icon;
}

SBIcon* iconFor(const Step& step) {
    return step.texts[0] == nullptr ? nil : iconWith(textAt(step, 0));
}

NSBundle* bundleFor(const Step& step, std::size_t index) {
    return step.texts[index] == nullptr
               ? nil
               : [NSBundle bundleWithPath:stringOf(bundleFolder(step.texts[index]).c_str())];
}

template <class View>
View* viewOf(Class cls) {
    return [[static_cast<View*>([cls alloc]) initWithFrame:CGRect{}] autorelease];
}

// The platform's methods that give images: UIImage's own, and others.
constexpr const char* kImageSelectors[] = {
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
constexpr const char* kImageMethods[] = {
    "+[APWUtil iconForBundleIdentifier:]",
    "+[WeatherImageLoader conditionImageNamed:style:]",
    "-[SBApplicationIcon getUnmaskedIconImage:]",
    "-[SBHIconImageCache imageForIcon:]",
    "-[SBHIconImageCache unmaskedImageForIcon:]",
    "-[SBIconImageView contentsImage]",
    "-[PKIconImageCache imageForKey:]",
};

std::string makeTemporaryFolder() {
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

    void load() override {
        addCatalogs();
        standins::clearJournal();
        standins::clearLog();
        standins::loadLibrary();
    }

    std::string send(const Step& step) override {
        const auto found = answers_.find(step.message);
        if (found == answers_.end()) {
            return "unknown message";
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
        for (const std::string& line : standins::logLines()) {
            all.push_back("log: " + line);
        }
        standins::clearLog();
        for (const std::string& line : standins::journal()) {
            if (isSoundMessage(line)) {
                all.push_back("sound: " + withVolume(line));
            }
        }
        standins::clearJournal();
        appendAlerts(all);
        for (UIView* const view in [[controller_ view] subviews]) {
            all.push_back("over the screen: " + shownView(view));
        }
        return all;
    }

  private:
    using Answer = std::function<std::string(const Step& step)>;

    static bool isSoundMessage(std::string_view line) {
        return line.substr(1).starts_with("[AVAudio");
    }

    // The number in as many digits as tell one volume from another.
    static std::string withVolume(const std::string& line) {
        const std::string beginning = "-[AVAudioPlayer setVolume: ";
        if (!line.starts_with(beginning)) {
            return line;
        }
        const float volume = strtof(line.c_str() + beginning.size(), nullptr);
        return beginning + shownNumber(static_cast<double>(volume)) + "]";
    }

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

    // Each is taken away once it is told of.
    void appendAlerts(std::vector<std::string>& all) {
        UIViewController* const presented = controller_->_presentedViewController;
        if (presented == nil) {
            return;
        }
        if (![presented isKindOfClass:[UIAlertController class]]) {
            all.emplace_back("alert: not one");
            return;
        }
        UIAlertController* const alert = static_cast<UIAlertController*>(presented);
        std::string line = "alert: " + shownText(textOf(alert->_title)) + " " +
                           shownText(textOf(alert->_message)) + " style " +
                           std::to_string(alert->_preferredStyle);
        for (UIAlertAction* const action in alert->_actions) {
            line += " button " + shownText(textOf(action->_title)) + " style " +
                    std::to_string(action->_style);
        }
        all.push_back(line);
        setVariable(controller_, "_presentedViewController", nil);
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

    void addMainClass() {
        answers_["+[VelMoranth selectedTheme]"] = [](const Step&) {
            return shownText(textOf([mainClass() selectedTheme]));
        };
        answers_["+[VelMoranth currentThemePlist]"] = [](const Step&) {
            return shownText(textOf([mainClass() currentThemePlist]));
        };
        answers_["+[VelMoranth DetectUserDevice]"] = [](const Step&) {
            return shownText(textOf([mainClass() DetectUserDevice]));
        };
        answers_["+[VelMoranth userChangedThemes]"] = [](const Step&) {
            return shownBool([mainClass() userChangedThemes]);
        };
        answers_["+[VelMoranth sharedIconManager]"] = [](const Step&) {
            return shownObject([mainClass() sharedIconManager]);
        };
        answers_["+[VelMoranth contentTypeForImageData:]"] = [](const Step& step) {
            NSData* data = nil;
            if (const Text text = step.texts[0]) {
                data = [NSData dataWithBytes:text length:std::string_view(text).size()];
            }
            return shownText(textOf([mainClass() contentTypeForImageData:data]));
        };
        answers_["+[VelMoranth imageFromBundlePath:extract:extractionPath:]"] =
            [this](const Step& step) {
                return shownImage([mainClass() imageFromBundlePath:textAt(step, 0)
                                                           extract:YES
                                                    extractionPath:textAt(step, 1)]);
            };
        answers_["+[VelMoranth VelmoranthImageDump:named:inBundle:]"] = [this](const Step& step) {
            [mainClass() VelmoranthImageDump:current_
                                       named:textAt(step, 0)
                                    inBundle:textAt(step, 1)];
            return std::string();
        };
        addEffects();
    }

    void addEffects() {
        answers_["+[VelMoranth iconMask]"] = [this](const Step&) {
            return shownImage([mainClass() iconMask]);
        };
        answers_["+[VelMoranth iconOverlay]"] = [this](const Step&) {
            return shownImage([mainClass() iconOverlay]);
        };
        answers_["+[VelMoranth spotlightPageDot]"] = [this](const Step&) {
            return shownImage([mainClass() spotlightPageDot]);
        };
        answers_["+[VelMoranth clearIconMask]"] = [](const Step&) {
            [mainClass() clearIconMask];
            return std::string();
        };
        answers_["+[VelMoranth clearIconOverlay]"] = [](const Step&) {
            [mainClass() clearIconOverlay];
            return std::string();
        };
        answers_["+[VelMoranth clearShadowImg]"] = [](const Step&) {
            [mainClass() clearShadowImg];
            return std::string();
        };
        answers_["+[VelMoranth FolderImage]"] = [this](const Step&) {
            return shownView([mainClass() FolderImage]);
        };
        answers_["+[VelMoranth badgeImage]"] = [this](const Step&) {
            return shownView([mainClass() badgeImage]);
        };
        answers_["+[VelMoranth addShadowToIcon]"] = [this](const Step&) {
            return shownView([mainClass() addShadowToIcon]);
        };
        answers_["+[VelMoranth pageDots:]"] = [this](const Step& step) {
            return shownImage([mainClass() pageDots:step.number != 0]);
        };
        answers_["+[VelMoranth redrawIconWithOverlay:]"] = [this](const Step&) {
            return shownImage([mainClass() redrawIconWithOverlay:current_]);
        };
        answers_["+[VelMoranth imageWithImage:scaledToSize:]"] = [this](const Step& step) {
            const auto side = static_cast<CGFloat>(step.number);
            return shownImage([mainClass() imageWithImage:current_
                                             scaledToSize:CGSize{side, side / 2}]);
        };
        answers_["+[VelMoranth colorWithHexString:]"] = [](const Step& step) {
            UIColor* const color = [mainClass() colorWithHexString:textAt(step, 0)];
            const struct CGColor& parts = *[color CGColor];
            return shownNumber(parts.red) + " " + shownNumber(parts.green) + " " +
                   shownNumber(parts.blue) + " " + shownNumber(parts.alpha);
        };
    }

    void addImageMethods() {
        answers_["+[VelMoranth searchforIconInIconBundlesWithLeafIdentifier:forImg:]"] =
            [this](const Step& step) {
                return shownImage([mainClass()
                    searchforIconInIconBundlesWithLeafIdentifier:textAt(step, 0)
                                                          forImg:current_]);
            };
        answers_["+[VelMoranth deviceUIImageNamed:fromBundle:originalUIImage:]"] =
            [this](const Step& step) {
                return shownImage([mainClass() deviceUIImageNamed:textAt(step, 0)
                                                       fromBundle:textAt(step, 1)
                                                  originalUIImage:current_]);
            };
        answers_["+[VelMoranth deviceUIImageNamed:originalUIImage:]"] = [this](const Step& step) {
            return shownImage([mainClass() deviceUIImageNamed:textAt(step, 0)
                                              originalUIImage:current_]);
        };
        answers_["+[VelMoranth searchFolder:forImageStr:]"] = [this](const Step& step) {
            return shownImage([mainClass() searchFolder:textAt(step, 0)
                                            forImageStr:textAt(step, 1)]);
        };
        answers_["+[VelMoranth searchFolders:forImageString:]"] = [this](const Step& step) {
            NSMutableArray* const folders = [NSMutableArray array];
            for (std::size_t i = 1; i < step.texts.size() && step.texts[i] != nullptr; ++i) {
                [folders addObject:textAt(step, i)];
            }
            return shownImage([mainClass() searchFolders:folders forImageString:textAt(step, 0)]);
        };
        answers_["+[VelMoranth hasSearchForImageNamedOrBundle:forImg:]"] =
            [this](const Step& step) {
                return shownBool([mainClass() hasSearchForImageNamedOrBundle:textAt(step, 0)
                                                                      forImg:current_]);
            };
        answers_["+[UIImage systemImageNamed:]"] = [this](const Step& step) {
            return shownImage([UIImage systemImageNamed:textAt(step, 0)]);
        };
        answers_["+[UIImage kitImageNamed:]"] = [this](const Step& step) {
            return shownImage([UIImage kitImageNamed:textAt(step, 0)]);
        };
        answers_["+[UIImage _imageNamed:withTrait:]"] = [this](const Step& step) {
            return shownImage([UIImage _imageNamed:textAt(step, 0) withTrait:nil]);
        };
        answers_["+[UIImage _kitImageNamed:withTrait:]"] = [this](const Step& step) {
            return shownImage([UIImage _kitImageNamed:textAt(step, 0) withTrait:nil]);
        };
        answers_["+[UIImage imageNamed:inBundle:]"] = [this](const Step& step) {
            return shownImage([UIImage imageNamed:textAt(step, 0) inBundle:bundleFor(step, 1)]);
        };
        answers_["+[UIImage imageNamed:inBundle:withConfiguration:]"] = [this](const Step& step) {
            return shownImage([UIImage imageNamed:textAt(step, 0)
                                         inBundle:bundleFor(step, 1)
                                withConfiguration:nil]);
        };
        answers_["+[UIImage imageNamed:inBundle:compatibleWithTraitCollection:]"] =
            [this](const Step& step) {
                return shownImage([UIImage imageNamed:textAt(step, 0)
                                             inBundle:bundleFor(step, 1)
                        compatibleWithTraitCollection:nil]);
            };
        answers_["+[UIImage imageWithContentsOfCPBitmapFile:flags:]"] = [this](const Step& step) {
            return shownImage([UIImage imageWithContentsOfCPBitmapFile:textAt(step, 0) flags:0]);
        };
        answers_["+[WeatherImageLoader conditionImageNamed:style:]"] = [this](const Step& step) {
            return shownImage([WeatherImageLoader
                conditionImageNamed:textAt(step, 0)
                              style:static_cast<NSInteger>(step.number)]);
        };
    }

    void addIconMethods() {
        answers_["+[UIImage _applicationIconImageForBundleIdentifier:format:scale:]"] =
            [this](const Step& step) {
                return shownImage([UIImage
                    _applicationIconImageForBundleIdentifier:textAt(step, 0)
                                                      format:static_cast<int>(step.number)
                                                       scale:kGivenScale]);
            };
        answers_["+[APWUtil iconForBundleIdentifier:]"] = [this](const Step& step) {
            return shownImage([APWUtil iconForBundleIdentifier:textAt(step, 0)]);
        };
        answers_["-[PKIconImageCache imageForKey:]"] = [this](const Step& step) {
            PKIconImageCache* const cache = [[[PKIconImageCache alloc] init] autorelease];
            return shownImage([cache imageForKey:textAt(step, 0)]);
        };
        answers_["-[SBApplicationIcon getUnmaskedIconImage:]"] = [this](const Step& step) {
            return shownImage(
                [iconWith(textAt(step, 0)) getUnmaskedIconImage:static_cast<int>(step.number)]);
        };
        answers_["-[SBHIconImageCache imageForIcon:]"] = [this](const Step& step) {
            SBHIconImageCache* const cache = [[[SBHIconImageCache alloc] init] autorelease];
            return shownImage([cache imageForIcon:iconFor(step)]);
        };
        answers_["-[SBHIconImageCache unmaskedImageForIcon:]"] = [this](const Step& step) {
            SBHIconImageCache* const cache = [[[SBHIconImageCache alloc] init] autorelease];
            return shownImage([cache unmaskedImageForIcon:iconFor(step)]);
        };
        answers_["-[SBIconImageView contentsImage]"] = [this](const Step& step) {
            auto* const view = viewOf<SBIconImageView>([SBIconImageView class]);
            setVariable(view, "_icon", iconFor(step));
            return shownImage([view contentsImage]);
        };
    }

    void addFileManager() {
        answers_["+[VelmoranthFileManager NoUserSettingCreateThemeNow]"] = [](const Step&) {
            [panel() NoUserSettingCreateThemeNow];
            return std::string();
        };
        answers_["+[VelmoranthFileManager finshedSelfAlert]"] = [](const Step&) {
            [panel() finshedSelfAlert];
            return std::string();
        };
        answers_["+[VelmoranthFileManager ShowSuccesView:]"] = [](const Step& step) {
            [panel() ShowSuccesView:textAt(step, 0)];
            return std::string();
        };
        answers_["+[VelmoranthFileManager sharedFileManager]"] = [](const Step&) {
            return shownObject([panel() sharedFileManager]);
        };
        answers_["+[VelmoranthFileManager saveCurrentSettinginFolderWithName:]"] =
            [](const Step& step) {
                return shownBool([panel() saveCurrentSettinginFolderWithName:textAt(step, 0)]);
            };
        answers_["+[VelmoranthFileManager renameFileFrom:to:]"] = [](const Step& step) {
            return shownBool([panel() renameFileFrom:textAt(step, 0) to:textAt(step, 1)]);
        };
        answers_["+[VelmoranthFileManager deleteFileFromDevice:fromDir:]"] = [](const Step& step) {
            return shownBool([panel() deleteFileFromDevice:textAt(step, 0)
                                                   fromDir:textAt(step, 1)]);
        };
        answers_["+[VelmoranthFileManager overwriteFontFilesInDir:fromTheme:]"] =
            [](const Step& step) {
                return shownBool([panel() overwriteFontFilesInDir:textAt(step, 0)
                                                        fromTheme:textAt(step, 1)]);
            };
    }

    void addSounds() {
        for (const char* const name :
             {"initClass:", "PlayButtonClick:", "PlaySlide:", "PlaySlideWithClick:", "PlayError:",
              "PlayReboot:", "PlaySuccess:", "PlayOn:", "PlayOff:"}) {
            answers_[std::string("-[Sounds ") + name + "]"] = [name](const Step& step) {
                [static_cast<id>(sounds()) performSelector:sel_registerName(name)
                                                withObject:someone(step)];
                return std::string();
            };
        }
        answers_["-[VelMoranth initClass:]"] = [](const Step& step) {
            [manager() initClass:someone(step)];
            return std::string();
        };
        answers_["-[VelMoranth playUISound:]"] = [](const Step& step) {
            [manager() playUISound:step.number];
            return std::string();
        };
        answers_["-[VelMoranth playsystemSound:]"] = [](const Step& step) {
            [manager() playsystemSound:static_cast<unsigned long long>(step.number)];
            return std::string();
        };
        answers_["-[_UIFeedback play]"] = [](const Step& step) {
            _UIFeedback* const feedback = [[[_UIFeedback alloc] init] autorelease];
            standins::setAnswer("-[_UIFeedback _effectiveSystemSoundID]",
                                static_cast<double>(step.number));
            [feedback play];
            return std::string();
        };
        answers_["+[SBUISound soundWithFeedbackEventType:]"] = [](const Step& step) {
            const auto type = static_cast<unsigned long long>(step.number);
            return shownObject([SBUISound soundWithFeedbackEventType:type]);
        };
    }

    void addHomeScreen() {
        answers_["-[SBIconLegibilityLabelView isHidden]"] = [](const Step&) {
            auto* const label =
                viewOf<SBIconLegibilityLabelView>([SBIconLegibilityLabelView class]);
            return shownBool([label isHidden]);
        };
        answers_["-[SBIconLegibilityLabelView alpha]"] = [](const Step&) {
            auto* const label =
                viewOf<SBIconLegibilityLabelView>([SBIconLegibilityLabelView class]);
            return shownNumber([label alpha]);
        };
        answers_["-[SBIconBadgeView layoutSubviews]"] = [this](const Step&) {
            auto* const badge = viewOf<SBIconBadgeView>([SBIconBadgeView class]);
            auto* const background = viewOf<UIImageView>([UIImageView class]);
            setVariable(badge, "_backgroundView", background);
            [badge layoutSubviews];
            return "alpha " + shownNumber([badge alpha]) + " over " +
                   shownImage([background image]);
        };
        answers_["-[SBIconView layoutSubviews]"] = [this](const Step& step) {
            auto* const view = viewOf<SBIconView>([SBIconView class]);
            setVariable(view, "_icon", iconFor(step));
            [view layoutSubviews];
            const CALayer* const layer = [view layer];
            std::string text =
                "tag " + std::to_string([view tag]) + " shadow " +
                shownNumber(static_cast<double>(layer->_shadowOpacity)) + " " +
                shownNumber(layer->_shadowOffset.width) + " " +
                shownNumber(layer->_shadowOffset.height) + " " + shownNumber(layer->_shadowRadius) +
                " path " +
                (layer->_hasShadowPath ? shownFrame(layer->_shadowPathRect) : std::string("none"));
            for (UIView* const subview in [view subviews]) {
                text += ", " + shownView(subview);
            }
            return text;
        };
    }

    NSAutoreleasePool* pool_;
    std::string root_;
    UIImage* given_ = nil;
    UIImage* current_ = nil;
    SBUISound* sound_ = nil;
    UIViewController* controller_ = nil;
    std::map<std::string, Answer> answers_;
};

}  // namespace

std::unique_ptr<Side> makeSide(const Scenario& scenario) {
    return std::make_unique<DeviceSide>(scenario);
}

}  // namespace velmoranth::equality

int main(int argumentCount, char** arguments) {
    return velmoranth::equality::runProgram(argumentCount, arguments);
}
