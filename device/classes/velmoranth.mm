// The main class. Theme resolution, imaging and the tools are its class methods; the singleton
// answers the instance methods.
#include "core/velmoranth.h"

#include "device/classes/answer.h"
#include "device/classes/engine_object.h"
#include "device/platform/handles.h"
#include "device/platform/pool.h"
#include "device/platform/services.h"
#include "device/platform/signed_pointers.h"
#include "device/startup.h"
#include <CoreGraphics/CGGeometry.h>
#import <Foundation/Foundation.h>

#include <algorithm>
#include <limits>
#include <memory>

@class AVAudioPlayer;
@class AVAudioSession;
@class UIColor;
@class UIImage;
@class UIImageView;
@class UIView;

using velmoranth::device::answer;
using velmoranth::device::EngineObject;
using velmoranth::device::engineOf;
using velmoranth::device::handOver;
using velmoranth::device::wrap;
using velmoranth::device::wrapAny;
using velmoranth::device::wrapClass;
using Engine = velmoranth::core::VelMoranth;

@interface VelMoranth : NSObject {
  @private
    EngineObject<Engine>* engine_;
}
@end

namespace {

VelMoranth* singleton = nil;

}  // namespace

@implementation VelMoranth

static Engine& engineBehind(VelMoranth* instance) {
    return engineOf(instance->engine_, instance);
}

// The first of the library's code to run.
+ (void)load {
    velmoranth::device::withPool([] {
        velmoranth::device::usePlatform();
        Engine::load();
        if constexpr (velmoranth::device::kPointersAreSigned) {
            velmoranth::device::startUp();
        }
    });
}

+ (void)initialize {
    const velmoranth::core::VelMoranthRef before = Engine::sharedIconManager();
    Engine::initialize(wrapClass(self));
    const velmoranth::core::VelMoranthRef now = Engine::sharedIconManager();
    if (now != before) {
        VelMoranth* const previous = singleton;
        VelMoranth* const instance = [VelMoranth alloc];
        instance->engine_ = new EngineObject<Engine>(now, instance);
        singleton = [instance init];
        [previous release];
    }
}

+ (VelMoranth*)sharedIconManager {
    return [[singleton retain] autorelease];
}

- (void)dealloc {
    delete engine_;
    [super dealloc];
}

- (void)initClass:(id)object {
    engineBehind(self).initClass(wrapAny(object));
}

- (AVAudioSession*)audiosession {
    return handOver(engineBehind(self).audiosession());
}

- (void)setAudiosession:(AVAudioSession*)session {
    engineBehind(self).setAudiosession(wrap<velmoranth::platform::AudioSession>(session));
}

- (AVAudioPlayer*)soundToPlay {
    return handOver(engineBehind(self).soundToPlay());
}

- (void)setSoundToPlay:(AVAudioPlayer*)player {
    engineBehind(self).setSoundToPlay(wrap<velmoranth::platform::AudioPlayer>(player));
}

- (void)playUISound:(long long)systemSoundID {
    engineBehind(self).playUISound(systemSoundID);
}

- (void)playsystemSound:(unsigned long long)feedbackEventType {
    engineBehind(self).playsystemSound(feedbackEventType);
}

+ (NSString*)selectedTheme {
    return answer(&Engine::selectedTheme);
}

+ (NSString*)currentThemePlist {
    return answer(&Engine::currentThemePlist);
}

+ (BOOL)userChangedThemes {
    return answer(&Engine::userChangedThemes);
}

+ (NSString*)DetectUserDevice {
    return answer(&Engine::DetectUserDevice);
}

+ (UIImage*)searchforIconInIconBundlesWithLeafIdentifier:(NSString*)leafIdentifier
                                                  forImg:(UIImage*)image {
    return answer(&Engine::searchforIconInIconBundlesWithLeafIdentifierForImg, leafIdentifier,
                  image);
}

+ (UIImage*)deviceUIImageNamed:(NSString*)name
                    fromBundle:(NSString*)bundleIdentifier
               originalUIImage:(UIImage*)original {
    return answer(&Engine::deviceUIImageNamedFromBundleOriginalUIImage, name, bundleIdentifier,
                  original);
}

+ (UIImage*)deviceUIImageNamed:(NSString*)name originalUIImage:(UIImage*)original {
    return answer(&Engine::deviceUIImageNamedOriginalUIImage, name, original);
}

+ (UIImage*)searchFolder:(NSString*)folder forImageStr:(NSString*)imageString {
    return answer(&Engine::searchFolderForImageStr, folder, imageString);
}

+ (UIImage*)searchFolders:(NSArray*)folders forImageString:(NSString*)imageString {
    return answer(&Engine::searchFoldersForImageString, folders, imageString);
}

+ (BOOL)hasSearchForImageNamedOrBundle:(NSString*)name forImg:(UIImage*)image {
    return answer(&Engine::hasSearchForImageNamedOrBundleForImg, name, image);
}

+ (UIImage*)iconMask {
    return answer(&Engine::iconMask);
}

+ (void)clearIconMask {
    Engine::clearIconMask();
}

+ (UIImage*)maskImage:(UIImage*)image withMask:(UIImage*)mask {
    return answer(&Engine::maskImageWithMask, image, mask);
}

+ (UIImage*)iconOverlay {
    return answer(&Engine::iconOverlay);
}

+ (void)clearIconOverlay {
    Engine::clearIconOverlay();
}

+ (UIImage*)redrawIconWithOverlay:(UIImage*)icon {
    return answer(&Engine::redrawIconWithOverlay, icon);
}

+ (UIImageView*)addShadowToIcon {
    return answer(&Engine::addShadowToIcon);
}

+ (void)clearShadowImg {
    Engine::clearShadowImg();
}

+ (UIImage*)reflectedImage:(UIView*)view withHeight:(NSUInteger)height {
    constexpr NSUInteger kHighest = std::numeric_limits<unsigned>::max();
    return answer(&Engine::reflectedImageWithHeight, view,
                  static_cast<unsigned>(std::min(height, kHighest)));
}

+ (UIImage*)imageWithImage:(UIImage*)image scaledToSize:(CGSize)size {
    return answer(&Engine::imageWithImageScaledToSize, image, size);
}

+ (void)removeAllOverlaysfrom:(UIView*)view {
    answer(&Engine::removeAllOverlaysfrom, view);
}

+ (void)removeAllShadowsfrom:(UIView*)view {
    answer(&Engine::removeAllShadowsfrom, view);
}

+ (void)removeFolderfrom:(UIView*)view {
    answer(&Engine::removeFolderfrom, view);
}

+ (void)removeReflectedIconsfrom:(UIView*)view {
    answer(&Engine::removeReflectedIconsfrom, view);
}

+ (UIImageView*)FolderImage {
    return answer(&Engine::FolderImage);
}

+ (UIImageView*)badgeImage {
    return answer(&Engine::badgeImage);
}

+ (UIImage*)pageDots:(BOOL)isCurrent {
    return answer(&Engine::pageDots, isCurrent);
}

+ (UIImage*)spotlightPageDot {
    return answer(&Engine::spotlightPageDot);
}

+ (UIImageView*)SBDockImgWithFrame:(CGRect)frame {
    return answer(&Engine::SBDockImgWithFrame, frame);
}

+ (UIColor*)colorWithHexString:(NSString*)string {
    return answer(&Engine::colorWithHexString, string);
}

+ (void)VelmoranthImageDump:(UIImage*)image named:(NSString*)name inBundle:(NSString*)bundle {
    answer(&Engine::VelmoranthImageDumpNamedInBundle, image, name, bundle);
}

+ (NSString*)contentTypeForImageData:(NSData*)data {
    return answer(&Engine::contentTypeForImageData, data);
}

+ (UIImage*)imageFromBundlePath:(NSString*)path
                        extract:(BOOL)extract
                 extractionPath:(NSString*)extractionPath {
    return answer(&Engine::imageFromBundlePathExtractExtractionPath, path, extract, extractionPath);
}

@end
