#import "device/standins/springboard.h"

using namespace velmoranth::standins;

@implementation SBIcon

- (void)dealloc {
    [_leafIdentifier release];
    [_nodeIdentifier release];
    [_uniqueIdentifier release];
    [super dealloc];
}

- (NSString*)leafIdentifier {
    received(self, _cmd);
    return _leafIdentifier;
}

- (NSString*)nodeIdentifier {
    received(self, _cmd);
    return _nodeIdentifier;
}

- (NSString*)uniqueIdentifier {
    received(self, _cmd);
    return _uniqueIdentifier;
}

@end

@implementation SBApplicationIcon

- (UIImage*)getUnmaskedIconImage:(int)format {
    received(self, _cmd, format);
    return answer(self, _cmd);
}

@end

@implementation SBCalendarApplicationIcon

- (UIImage*)generateIconImageWithInfo:(IconImageInfo)info {
    received(self, _cmd, info);
    return answer(self, _cmd);
}

@end

@implementation SBHIconImageCache

- (UIImage*)imageForIcon:(SBIcon*)icon {
    received(self, _cmd, icon);
    return answer(self, _cmd);
}

- (UIImage*)unmaskedImageForIcon:(SBIcon*)icon {
    received(self, _cmd, icon);
    return answer(self, _cmd);
}

@end

@implementation SBFolderIconImageCache

- (UIImage*)gridCellImageForIcon:(SBIcon*)icon {
    received(self, _cmd, icon);
    return answer(self, _cmd);
}

@end

@implementation SBIconLabelImage

- (id)_initWithCGImage:(CGImageRef)image
                 scale:(CGFloat)scale
           orientation:(NSInteger)orientation
            parameters:(id)parameters
         maxSizeOffset:(CGPoint)offset {
    received(self, _cmd, image, scale, orientation, parameters, exactly(offset));
    if (const auto other = answerSet(self, _cmd)) {
        [*other retain];
        [self release];
        return *other;
    }
    return [super initWithCGImage:image scale:scale orientation:orientation];
}

@end

@implementation SBIconController

+ (SBIconController*)sharedInstance {
    received(self, _cmd);
    return answer(self, _cmd);
}

- (void)_closeFolderController:(id)controller
                      animated:(BOOL)animated
                withCompletion:(void (^)(void))completion {
    received(self, _cmd, controller, animated, wordsOfPointer(completion));
}

@end

@implementation SBUISound

+ (SBUISound*)soundWithFeedbackEventType:(unsigned long long)type {
    received(self, _cmd, type);
    return answer(self, _cmd);
}

@end

@implementation WGWidgetInfo

- (void)dealloc {
    [_widgetIdentifier release];
    [super dealloc];
}

- (NSString*)widgetIdentifier {
    received(self, _cmd);
    return _widgetIdentifier;
}

- (UIImage*)_queue_iconWithSize:(CGSize)size
                          scale:(CGFloat)scale
        forWidgetWithIdentifier:(NSString*)identifier
                      extension:(id)extension {
    received(self, _cmd, exactly(size), scale, identifier, extension);
    return answer(self, _cmd);
}

@end

@implementation UNNotificationIcon

- (id)_initWithName:(NSString*)name
                     path:(NSString*)path
    applicationIdentifier:(NSString*)identifier {
    received(self, _cmd, name, path, identifier);
    if (const auto other = answerSet(self, _cmd)) {
        [*other retain];
        [self release];
        return *other;
    }
    return [super init];
}

@end

@implementation PKIconImageCache

- (UIImage*)imageForKey:(NSString*)key {
    received(self, _cmd, key);
    return answer(self, _cmd);
}

@end

@implementation APWUtil

+ (UIImage*)iconForBundleIdentifier:(NSString*)identifier {
    received(self, _cmd, identifier);
    return answer(self, _cmd);
}

@end

@implementation WeatherImageLoader

+ (UIImage*)conditionImageNamed:(NSString*)name style:(NSInteger)style {
    received(self, _cmd, name, style);
    return answer(self, _cmd);
}

@end

@implementation _UIFeedback

- (void)play {
    received(self, _cmd);
}

- (unsigned int)_effectiveSystemSoundID {
    received(self, _cmd);
    return static_cast<unsigned int>(numberAnswer(self, _cmd));
}

@end
