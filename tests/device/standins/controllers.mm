#import "device/standins/controllers.h"

#include <Block.h>

namespace {

struct Hardware {
    std::optional<long> idiom = 0;
    long orientation = 1;
    CGSize screen{375, 667};
    double scale = 2;
};

Hardware& hardware() {
    static Hardware instance;
    return instance;
}

}  // namespace

namespace velmoranth::standins {

void setKeyWindow(UIWindow* window) {
    replace([UIApplication sharedApplication]->_keyWindow, window);
}

void choose(UIAlertAction* action) {
    if (action->_handler != nil) {
        action->_handler(action);
    }
}

void setDevice(std::optional<long> idiom, long orientation) {
    hardware().idiom = idiom;
    hardware().orientation = orientation;
}

void setScreen(CGSize size, double scale) {
    hardware().screen = size;
    hardware().scale = scale;
}

}  // namespace velmoranth::standins

using namespace velmoranth::standins;

@implementation UIViewController

- (void)dealloc {
    [_view release];
    [_presentedViewController release];
    [super dealloc];
}

- (UIView*)view {
    received(self, _cmd);
    return _view;
}

- (void)setView:(UIView*)view {
    received(self, _cmd, view);
    replace(_view, view);
}

- (void)presentViewController:(UIViewController*)controller
                     animated:(BOOL)animated
                   completion:(void (^)(void))completion {
    received(self, _cmd, controller, animated, wordsIfSet(completion));
    replace(_presentedViewController, controller);
}

@end

@implementation UIWindow

- (void)dealloc {
    [_rootViewController release];
    [super dealloc];
}

- (UIViewController*)rootViewController {
    received(self, _cmd);
    return _rootViewController;
}

- (void)setRootViewController:(UIViewController*)controller {
    received(self, _cmd, controller);
    replace(_rootViewController, controller);
}

@end

@implementation UIAlertAction

+ (id)actionWithTitle:(NSString*)title
                style:(NSInteger)style
              handler:(void (^)(UIAlertAction* action))handler {
    const Noted noted = received(self, _cmd, title, style, wordsOfPointer(handler));
    UIAlertAction* const action = [[[self alloc] init] autorelease];
    action->_title = [title copy];
    action->_style = style;
    if (handler != nil) {
        action->_handler = Block_copy(handler);
    }
    return noted.answered(action);
}

- (void)dealloc {
    [_title release];
    if (_handler != nil) {
        Block_release(_handler);
    }
    [super dealloc];
}

@end

@implementation UIAlertController

+ (id)alertControllerWithTitle:(NSString*)title
                       message:(NSString*)message
                preferredStyle:(NSInteger)style {
    const Noted noted = received(self, _cmd, title, message, style);
    UIAlertController* const alert = [[[self alloc] init] autorelease];
    alert->_title = [title copy];
    alert->_message = [message copy];
    alert->_preferredStyle = style;
    alert->_actions = [[NSMutableArray alloc] init];
    return noted.answered(alert);
}

- (void)dealloc {
    [_title release];
    [_message release];
    [_actions release];
    [super dealloc];
}

- (void)addAction:(UIAlertAction*)action {
    received(self, _cmd, action);
    [_actions addObject:action];
}

@end

@implementation UIApplication

+ (UIApplication*)sharedApplication {
    static UIApplication* const kApplication = [[UIApplication alloc] init];
    asked(self, _cmd);
    return kApplication;
}

- (UIWindow*)keyWindow {
    return asked(self, _cmd).answered(_keyWindow);
}

@end

@implementation UIDevice

+ (UIDevice*)currentDevice {
    static UIDevice* const kDevice = [[UIDevice alloc] init];
    asked(self, _cmd);
    return kDevice;
}

- (BOOL)respondsToSelector:(SEL)selector {
    const Noted noted = asked(self, _cmd, selector);
    const bool isHidden = !hardware().idiom && sel_isEqual(selector, @selector(userInterfaceIdiom));
    return noted.answered(isHidden ? NO : [super respondsToSelector:selector]);
}

- (NSInteger)userInterfaceIdiom {
    return asked(self, _cmd).answered(hardware().idiom.value_or(-1));
}

- (NSInteger)orientation {
    return asked(self, _cmd).answered(hardware().orientation);
}

@end

@implementation UIScreen

+ (UIScreen*)mainScreen {
    static UIScreen* const kScreen = [[UIScreen alloc] init];
    asked(self, _cmd);
    return kScreen;
}

- (CGFloat)scale {
    return asked(self, _cmd).answered(hardware().scale);
}

- (CGRect)bounds {
    return asked(self, _cmd).answered(CGRect{{0, 0}, hardware().screen});
}

@end
