// What the library's classes answer, as whoever sends them messages knows it: by name, with the
// true types.
#pragma once

#include <CoreGraphics/CGGeometry.h>
#import <Foundation/Foundation.h>

@class AVAudioPlayer;
@class AVAudioSession;
@class UIColor;
@class UIImage;
@class UIImageView;
@class UIView;

@protocol VelMoranthMessages <NSObject>
+ (void)load;
+ (id)sharedIconManager;
- (void)initClass:(id)object;

- (AVAudioSession*)audiosession;
- (void)setAudiosession:(AVAudioSession*)session;
- (AVAudioPlayer*)soundToPlay;
- (void)setSoundToPlay:(AVAudioPlayer*)player;
- (void)playUISound:(long long)systemSoundID;
- (void)playsystemSound:(unsigned long long)feedbackEventType;

+ (NSString*)selectedTheme;
+ (NSString*)currentThemePlist;
+ (BOOL)userChangedThemes;
+ (NSString*)DetectUserDevice;

+ (UIImage*)searchforIconInIconBundlesWithLeafIdentifier:(NSString*)leafIdentifier
                                                  forImg:(UIImage*)image;
+ (UIImage*)deviceUIImageNamed:(NSString*)name
                    fromBundle:(NSString*)bundleIdentifier
               originalUIImage:(UIImage*)original;
+ (UIImage*)deviceUIImageNamed:(NSString*)name originalUIImage:(UIImage*)original;
+ (UIImage*)searchFolder:(NSString*)folder forImageStr:(NSString*)imageString;
+ (UIImage*)searchFolders:(id)folders forImageString:(NSString*)imageString;
+ (BOOL)hasSearchForImageNamedOrBundle:(NSString*)name forImg:(UIImage*)image;

+ (UIImage*)iconMask;
+ (void)clearIconMask;
+ (UIImage*)maskImage:(UIImage*)image withMask:(UIImage*)mask;
+ (UIImage*)iconOverlay;
+ (void)clearIconOverlay;
+ (UIImage*)redrawIconWithOverlay:(UIImage*)icon;
+ (UIImageView*)addShadowToIcon;
+ (void)clearShadowImg;
+ (UIImage*)reflectedImage:(UIView*)view withHeight:(NSUInteger)height;
+ (UIImage*)imageWithImage:(UIImage*)image scaledToSize:(CGSize)size;
+ (void)removeAllOverlaysfrom:(UIView*)view;
+ (void)removeAllShadowsfrom:(UIView*)view;
+ (void)removeFolderfrom:(UIView*)view;
+ (void)removeReflectedIconsfrom:(UIView*)view;

+ (UIImageView*)FolderImage;
+ (UIImageView*)badgeImage;
+ (UIImage*)pageDots:(BOOL)isCurrent;
+ (UIImage*)spotlightPageDot;
+ (UIImageView*)SBDockImgWithFrame:(CGRect)frame;
+ (UIColor*)colorWithHexString:(NSString*)string;

+ (void)VelmoranthImageDump:(UIImage*)image named:(NSString*)name inBundle:(NSString*)bundle;
+ (NSString*)contentTypeForImageData:(id)data;
+ (UIImage*)imageFromBundlePath:(NSString*)path
                        extract:(BOOL)extract
                 extractionPath:(NSString*)extractionPath;
@end

@protocol VelmoranthFileManagerMessages <NSObject>
+ (id)sharedFileManager;
+ (void)NoUserSettingCreateThemeNow;
+ (BOOL)overwriteFontFilesInDir:(NSString*)destination fromTheme:(NSString*)source;
+ (BOOL)saveCurrentSettinginFolderWithName:(NSString*)name;
+ (BOOL)renameFileFrom:(NSString*)oldPath to:(NSString*)newPath;
+ (BOOL)deleteFileFromDevice:(NSString*)path fromDir:(NSString*)folder;
+ (void)ShowSuccesView:(NSString*)imagePath;
+ (void)finshedSelfAlert;
@end

@protocol SoundsMessages <NSObject>
- (void)initClass:(id)object;
- (void)PlayButtonClick:(id)sender;
- (void)PlaySlide:(id)sender;
- (void)PlaySlideWithClick:(id)sender;
- (void)PlayError:(id)sender;
- (void)PlayReboot:(id)sender;
- (void)PlaySuccess:(id)sender;
- (void)PlayOn:(id)sender;
- (void)PlayOff:(id)sender;
- (AVAudioPlayer*)soundToPlay;
- (void)setSoundToPlay:(AVAudioPlayer*)player;
@end
