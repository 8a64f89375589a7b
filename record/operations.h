// What carries each operation of src/platform on the phone: the message, or the function. Records
// name an operation so, whichever side has written them.
#pragma once

#include <array>
#include <span>
#include <string_view>

namespace velmoranth::record {

struct Operation {
    std::string_view interface;  // the abstract class of src/platform
    std::string_view function;   // its function there
    std::string_view message;    // "-[Class selector]", or the name of a C function or variable
};

namespace detail {

// clang-format off: a row a line, however long.
inline constexpr std::array kOperations{
    Operation{"Object", "className", "NSStringFromClass"},
    Operation{"Object", "description", "-[NSObject description]"},
    Operation{"Class", "name", "class_getName"},
    Operation{"Class", "isMetaclass", "class_isMetaClass"},
    Operation{"ObjcRuntime", "registerClass", "objc_registerClassPair"},
    Operation{"ObjcRuntime", "getClass", "objc_getClass"},
    Operation{"ObjcRuntime", "getMetaclass", "object_getClass"},
    Operation{"ObjcRuntime", "sendMessage", "objc_msgSend"},
    Operation{"ObjcRuntime", "addMethod", "class_addMethod"},
    Operation{"ObjcRuntime", "isKindOfClass", "-[NSObject isKindOfClass:]"},
    Operation{"ObjcRuntime", "instanceVariable", "class_getInstanceVariable"},
    Operation{"ObjcRuntime", "valueForKey", "-[NSObject valueForKey:]"},
    Operation{"Substrate", "hookMessageEx", "MSHookMessageEx"},
    Operation{"DarwinNotificationCenter", "addObserver", "CFNotificationCenterAddObserver"},
    Operation{"CoreFoundation", "versionNumber", "kCFCoreFoundationVersionNumber"},
    Operation{"CoreFoundation", "isSystemVersionAtLeast", "-[NSProcessInfo isOperatingSystemAtLeastVersion:]"},
    Operation{"Bundle", "bundleIdentifier", "-[NSBundle bundleIdentifier]"},
    Operation{"FileManager", "fileExistsAtPath", "-[NSFileManager fileExistsAtPath:]"},
    Operation{"FileManager", "fileExistsAtPathIsDirectory", "-[NSFileManager fileExistsAtPath:isDirectory:]"},
    Operation{"FileManager", "setPosixPermissionsOfItemAtPath", "-[NSFileManager setAttributes:ofItemAtPath:error:]"},
    Operation{"FileManager", "copyItemAtPathToPath", "-[NSFileManager copyItemAtPath:toPath:error:]"},
    Operation{"FileManager", "moveItemAtPathToPath", "-[NSFileManager moveItemAtPath:toPath:error:]"},
    Operation{"FileManager", "removeItemAtPath", "-[NSFileManager removeItemAtPath:error:]"},
    Operation{"FileManager", "createFileAtPathContents", "-[NSFileManager createFileAtPath:contents:attributes:]"},
    Operation{"FileManager", "createDirectoryAtPathWithIntermediateDirectories", "-[NSFileManager createDirectoryAtPath:withIntermediateDirectories:attributes:error:]"},
    Operation{"FileManager", "writeToFileAtomically", "-[NSData writeToFile:atomically:]"},
    Operation{"FileManager", "dataWithContentsOfFile", "+[NSData dataWithContentsOfFile:]"},
    Operation{"Bundles", "bundleWithPath", "+[NSBundle bundleWithPath:]"},
    Operation{"Bundles", "load", "-[NSBundle load]"},
    Operation{"PropertyLists", "dictionaryWithContentsOfFile", "+[NSDictionary dictionaryWithContentsOfFile:]"},
    Operation{"PropertyLists", "printableDictionaryWithContentsOfFile", "+[NSDictionary dictionaryWithContentsOfFile:]"},
    Operation{"Dates", "date", "+[NSDate date]"},
    Operation{"Dates", "dayFromDate", "-[NSCalendar components:fromDate:]"},
    Operation{"Dates", "stringFromDate", "-[NSDateFormatter stringFromDate:]"},
    Operation{"SystemLog", "write", "NSLog"},
    Operation{"LibSystem", "setuid", "setuid"},
    Operation{"LibSystem", "setgid", "setgid"},
    Operation{"LibSystem", "chmod", "chmod"},
    Operation{"LibSystem", "mkdir", "mkdir"},
    Operation{"LibSystem", "machine", "uname"},
    Operation{"LibSystem", "homeDirectory", "NSHomeDirectory"},
    Operation{"LibSystem", "dispatchAfterOnMainQueue", "dispatch_after"},
    Operation{"BitmapImage", "layout", "CGImageGetWidth"},
    Operation{"BitmapImage", "dataProvider", "CGImageGetDataProvider"},
    Operation{"BitmapImage", "isMask", "CGImageIsMask"},
    Operation{"GraphicsContext", "translateCTM", "CGContextTranslateCTM"},
    Operation{"GraphicsContext", "drawLinearGradient", "CGContextDrawLinearGradient"},
    Operation{"GraphicsContext", "createImage", "CGBitmapContextCreateImage"},
    Operation{"CoreGraphics", "imageMaskCreate", "CGImageMaskCreate"},
    Operation{"CoreGraphics", "imageCreateWithMask", "CGImageCreateWithMask"},
    Operation{"CoreGraphics", "bitmapContextCreate", "CGBitmapContextCreate"},
    Operation{"CoreGraphics", "gradientCreateWithColorComponents", "CGGradientCreateWithColorComponents"},
    Operation{"Image", "size", "-[UIImage size]"},
    Operation{"Image", "scale", "-[UIImage scale]"},
    Operation{"Image", "bitmap", "-[UIImage CGImage]"},
    Operation{"Image", "hasCIImage", "-[UIImage CIImage]"},
    Operation{"Layer", "bounds", "-[CALayer bounds]"},
    Operation{"Layer", "renderInContext", "-[CALayer renderInContext:]"},
    Operation{"Layer", "setOpacity", "-[CALayer setOpacity:]"},
    Operation{"Layer", "setMasksToBounds", "-[CALayer setMasksToBounds:]"},
    Operation{"Layer", "setShadowColor", "-[CALayer setShadowColor:]"},
    Operation{"Layer", "setShadowOpacity", "-[CALayer setShadowOpacity:]"},
    Operation{"Layer", "setShadowOffset", "-[CALayer setShadowOffset:]"},
    Operation{"Layer", "setShadowRadius", "-[CALayer setShadowRadius:]"},
    Operation{"Layer", "setShadowPathRect", "-[CALayer setShadowPath:]"},
    Operation{"View", "tag", "-[UIView tag]"},
    Operation{"View", "setTag", "-[UIView setTag:]"},
    Operation{"View", "frame", "-[UIView frame]"},
    Operation{"View", "setFrame", "-[UIView setFrame:]"},
    Operation{"View", "bounds", "-[UIView bounds]"},
    Operation{"View", "subviews", "-[UIView subviews]"},
    Operation{"View", "addSubview", "-[UIView addSubview:]"},
    Operation{"View", "insertSubviewAtIndex", "-[UIView insertSubview:atIndex:]"},
    Operation{"View", "removeFromSuperview", "-[UIView removeFromSuperview]"},
    Operation{"View", "viewWithTag", "-[UIView viewWithTag:]"},
    Operation{"View", "setBackgroundColor", "-[UIView setBackgroundColor:]"},
    Operation{"View", "setClipsToBounds", "-[UIView setClipsToBounds:]"},
    Operation{"View", "setAlpha", "-[UIView setAlpha:]"},
    Operation{"View", "setHidden", "-[UIView setHidden:]"},
    Operation{"View", "addGestureRecognizer", "-[UIView addGestureRecognizer:]"},
    Operation{"View", "layer", "-[UIView layer]"},
    Operation{"ImageView", "image", "-[UIImageView image]"},
    Operation{"ImageView", "setImage", "-[UIImageView setImage:]"},
    Operation{"Label", "setFont", "-[UILabel setFont:]"},
    Operation{"Label", "setTextAlignment", "-[UILabel setTextAlignment:]"},
    Operation{"Label", "setText", "-[UILabel setText:]"},
    Operation{"Label", "setTextColor", "-[UILabel setTextColor:]"},
    Operation{"Label", "setShadowColor", "-[UILabel setShadowColor:]"},
    Operation{"Label", "setShadowOffset", "-[UILabel setShadowOffset:]"},
    Operation{"ViewController", "view", "-[UIViewController view]"},
    Operation{"ViewController", "presentViewControllerAnimated", "-[UIViewController presentViewController:animated:completion:]"},
    Operation{"Window", "rootViewController", "-[UIWindow rootViewController]"},
    Operation{"AlertController", "addAction", "-[UIAlertController addAction:]"},
    Operation{"UIFeedback", "_effectiveSystemSoundID", "-[_UIFeedback _effectiveSystemSoundID]"},
    Operation{"UIImageContent", "vectorGlyph", "-[_UIImageContent vectorGlyph]"},
    Operation{"Images", "imageWithContentsOfFile", "+[UIImage imageWithContentsOfFile:]"},
    Operation{"Images", "imageWithCGImage", "+[UIImage imageWithCGImage:]"},
    Operation{"Images", "drawInRect", "-[UIImage drawInRect:]"},
    Operation{"Images", "pngRepresentation", "UIImagePNGRepresentation"},
    Operation{"Images", "applicationIconImageForBundleIdentifierFormatScale", "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:]"},
    Operation{"ImageContexts", "beginImageContextWithOptions", "UIGraphicsBeginImageContextWithOptions"},
    Operation{"ImageContexts", "getCurrentContext", "UIGraphicsGetCurrentContext"},
    Operation{"ImageContexts", "getImageFromCurrentImageContext", "UIGraphicsGetImageFromCurrentImageContext"},
    Operation{"ImageContexts", "endImageContext", "UIGraphicsEndImageContext"},
    Operation{"Fonts", "fontWithNameSize", "+[UIFont fontWithName:size:]"},
    Operation{"Views", "viewWithFrame", "-[UIView initWithFrame:]"},
    Operation{"Views", "labelWithFrame", "-[UILabel initWithFrame:]"},
    Operation{"Views", "imageView", "-[UIImageView init]"},
    Operation{"Views", "imageViewWithImage", "-[UIImageView initWithImage:]"},
    Operation{"Views", "imageViewWithFrame", "-[UIImageView initWithFrame:]"},
    Operation{"Views", "tapGestureRecognizer", "-[UITapGestureRecognizer initWithTarget:action:]"},
    Operation{"Views", "animateWithDurationAnimationsCompletion", "+[UIView animateWithDuration:animations:completion:]"},
    Operation{"Views", "animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion", "+[UIView animateWithDuration:delay:usingSpringWithDamping:initialSpringVelocity:options:animations:completion:]"},
    Operation{"Alerts", "alertControllerWithTitleMessagePreferredStyle", "+[UIAlertController alertControllerWithTitle:message:preferredStyle:]"},
    Operation{"Alerts", "actionWithTitleStyleHandler", "+[UIAlertAction actionWithTitle:style:handler:]"},
    Operation{"Application", "keyWindow", "-[UIApplication keyWindow]"},
    Operation{"Device", "respondsToUserInterfaceIdiom", "-[UIDevice respondsToSelector:]"},
    Operation{"Device", "userInterfaceIdiom", "-[UIDevice userInterfaceIdiom]"},
    Operation{"Device", "orientation", "-[UIDevice orientation]"},
    Operation{"Screen", "scale", "-[UIScreen scale]"},
    Operation{"Screen", "bounds", "-[UIScreen bounds]"},
    Operation{"SBIcon", "leafIdentifier", "-[SBIcon leafIdentifier]"},
    Operation{"SBIcon", "nodeIdentifier", "-[SBIcon nodeIdentifier]"},
    Operation{"SBIcon", "uniqueIdentifier", "-[SBIcon uniqueIdentifier]"},
    Operation{"SBIconImageView", "icon", "-[SBIconImageView icon]"},
    Operation{"SBFolderIconImageView", "isAnimating", "-[SBFolderIconImageView isAnimating]"},
    Operation{"SBIconView", "icon", "-[SBIconView icon]"},
    Operation{"SBIconListView", "icons", "-[SBIconListView icons]"},
    Operation{"SBDockView", "dockListViewFrame", "-[SBDockView dockListViewFrame]"},
    Operation{"SBDockView", "setBackgroundView", "-[SBDockView setBackgroundView:]"},
    Operation{"SBFloatingDockView", "backgroundView", "-[SBFloatingDockView backgroundView]"},
    Operation{"SBIconListPageControl", "_searchIndicatorImage", "-[SBIconListPageControl _searchIndicatorImage:]"},
    Operation{"SBIconController", "_closeFolderControllerAnimatedWithCompletion", "-[SBIconController _closeFolderController:animated:withCompletion:]"},
    Operation{"WGWidgetInfo", "widgetIdentifier", "-[WGWidgetInfo widgetIdentifier]"},
    Operation{"SpringBoard", "sharedInstance", "+[SBIconController sharedInstance]"},
    Operation{"AudioSession", "setCategory", "-[AVAudioSession setCategory:error:]"},
    Operation{"AudioSession", "setActive", "-[AVAudioSession setActive:error:]"},
    Operation{"AudioPlayer", "setVolume", "-[AVAudioPlayer setVolume:]"},
    Operation{"AudioPlayer", "setDelegate", "-[AVAudioPlayer setDelegate:]"},
    Operation{"AudioPlayer", "prepareToPlay", "-[AVAudioPlayer prepareToPlay]"},
    Operation{"AudioPlayer", "play", "-[AVAudioPlayer play]"},
    Operation{"Audio", "sharedInstance", "+[AVAudioSession sharedInstance]"},
    Operation{"Audio", "audioPlayerWithContentsOfURL", "-[AVAudioPlayer initWithContentsOfURL:error:]"},
    Operation{"Audio", "audioPlayerWithData", "-[AVAudioPlayer initWithData:error:]"},
    Operation{"CUINamedVectorGlyph", "name", "-[CUINamedVectorGlyph name]"},
    Operation{"CUINamedImage", "name", "-[CUINamedImage name]"},
    Operation{"CUINamedImage", "scale", "-[CUINamedImage scale]"},
    Operation{"CUINamedImage", "createImageFromPDFRenditionWithScale", "-[CUINamedImage createImageFromPDFRenditionWithScale:]"},
    Operation{"CUINamedImage", "image", "-[CUINamedImage image]"},
    Operation{"CUICatalog", "allImageNames", "-[CUICatalog allImageNames]"},
    Operation{"CUICatalog", "imageWithNameScaleFactor", "-[CUICatalog imageWithName:scaleFactor:]"},
    Operation{"CUICatalog", "imageWithNameScaleFactorDeviceIdiom", "-[CUICatalog imageWithName:scaleFactor:deviceIdiom:]"},
    Operation{"CUICatalog", "imagesWithName", "-[CUICatalog imagesWithName:]"},
    Operation{"CatalogClass", "initWithURL", "-[CUICatalog initWithURL:error:]"},
    Operation{"CatalogClass", "defaultUICatalogForBundle", "+[CUICatalog defaultUICatalogForBundle:]"},
    Operation{"CatalogClass", "initWithNameFromBundle", "-[CUICatalog initWithName:fromBundle:error:]"},
};
// clang-format on

}  // namespace detail

[[nodiscard]] inline std::span<const Operation> operations() {
    return detail::kOperations;
}

// The message of a function of an interface, looked up while compiling: a name that the table does
// not have does not build.
consteval std::string_view messageOf(std::string_view interface, std::string_view function) {
    for (const Operation& operation : detail::kOperations) {
        if (operation.interface == interface && operation.function == function) {
            return operation.message;
        }
    }
    throw "the table of operations has no such function";
}

}  // namespace velmoranth::record
