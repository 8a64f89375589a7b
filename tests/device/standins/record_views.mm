#import "device/standins/record_methods.h"

#include <array>
#include <cstddef>
#include <type_traits>

namespace velmoranth::standins {
namespace {

using record::messageOf;
using record::words;

struct Methods {
    Method<id (*)(id, SEL, CGRect)> viewWithFrame;
    Method<id (*)(id, SEL)> view;
    Method<id (*)(id, SEL, id)> imageViewWithImage;
    Method<void (*)(id, SEL, CGRect)> drawInRect;
    Method<id (*)(id, SEL, NSString*, CGFloat)> font;
    Method<void (*)(id, SEL, NSTimeInterval, id, id)> animate;
    Method<void (*)(id, SEL, NSTimeInterval, NSTimeInterval, CGFloat, CGFloat, NSUInteger, id, id)>
        spring;
};

Methods methods;

// What views, layers, players and alerts are told, by their places here.
constexpr std::array kTold{
    messageOf("View", "setTag"),
    messageOf("View", "setFrame"),
    messageOf("View", "setBackgroundColor"),
    messageOf("View", "setClipsToBounds"),
    messageOf("View", "setAlpha"),
    messageOf("View", "setHidden"),
    messageOf("View", "addSubview"),
    messageOf("View", "insertSubviewAtIndex"),
    messageOf("View", "removeFromSuperview"),
    messageOf("View", "addGestureRecognizer"),
    messageOf("ImageView", "setImage"),
    messageOf("AudioPlayer", "setVolume"),
    messageOf("AudioPlayer", "setDelegate"),
    messageOf("AudioPlayer", "prepareToPlay"),
    messageOf("AudioPlayer", "play"),
    messageOf("AlertController", "addAction"),
    messageOf("Label", "setFont"),
    messageOf("Label", "setTextAlignment"),
    messageOf("Label", "setText"),
    messageOf("Label", "setTextColor"),
    messageOf("Label", "setShadowColor"),
    messageOf("Label", "setShadowOffset"),
    messageOf("Layer", "renderInContext"),
    messageOf("Layer", "setOpacity"),
    messageOf("Layer", "setMasksToBounds"),
    messageOf("Layer", "setShadowColor"),
    messageOf("Layer", "setShadowOpacity"),
    messageOf("Layer", "setShadowOffset"),
    messageOf("Layer", "setShadowRadius"),
    messageOf("Layer", "setShadowPathRect"),
};

template <std::size_t kPlace, class Result, class... Args>
void replaceTold() {
    static Method<Result (*)(id, SEL, Args...)> method;
    method.replace(kTold[kPlace].data(), [](id self, SEL name, Args... arguments) -> Result {
        const Call call;
        const record::Told told = addMessage(call, kTold[kPlace], self, {wordsOf(arguments)...});
        if constexpr (std::is_void_v<Result>) {
            method.own(self, name, arguments...);
        } else {
            return answered(told, method.own(self, name, arguments...));
        }
    });
}

void replaceAllTold() {
    replaceTold<0, void, NSInteger>();
    replaceTold<1, void, CGRect>();
    replaceTold<2, void, id>();
    replaceTold<3, void, BOOL>();
    replaceTold<4, void, CGFloat>();
    replaceTold<5, void, BOOL>();
    replaceTold<6, void, id>();
    replaceTold<7, void, id, NSInteger>();
    replaceTold<8, void>();
    replaceTold<9, void, id>();
    replaceTold<10, void, id>();
    replaceTold<11, void, float>();
    replaceTold<12, void, id>();
    replaceTold<13, BOOL>();
    replaceTold<14, BOOL>();
    replaceTold<15, void, id>();
    replaceTold<16, void, id>();
    replaceTold<17, void, NSInteger>();
    replaceTold<18, void, NSString*>();
    replaceTold<19, void, id>();
    replaceTold<20, void, id>();
    replaceTold<21, void, CGSize>();
    replaceTold<22, void, struct CGContext*>();
    replaceTold<23, void, float>();
    replaceTold<24, void, BOOL>();
    replaceTold<25, void, struct CGColor*>();
    replaceTold<26, void, float>();
    replaceTold<27, void, CGSize>();
    replaceTold<28, void, CGFloat>();
    replaceTold<29, void, const struct CGPath*>();
}

// "-[UILabel initWithFrame:]": of the class that is made.
std::string initialiser(id object, SEL name) {
    return std::string("-[") + class_getName(object_getClass(object)) + " " + sel_getName(name) +
           "]";
}

void replaceViews() {
    // Labels and image views inherit it.
    methods.viewWithFrame.replace(messageOf("Views", "viewWithFrame").data(),
                                  [](id self, SEL name, CGRect frame) -> id {
                                      const Call call;
                                      const std::string message = initialiser(self, name);
                                      const id view = methods.viewWithFrame.own(self, name, frame);
                                      addCall(call, message, {wordsOf(frame)}, view);
                                      return view;
                                  });
    methods.view.replace("-[UIView init]", [](id self, SEL name) -> id {
        const Call call;
        const std::string message = initialiser(self, name);
        const id view = methods.view.own(self, name);
        addCall(call, message, {}, view);
        return view;
    });
    methods.imageViewWithImage.replace(
        messageOf("Views", "imageViewWithImage").data(), [](id self, SEL name, id image) -> id {
            const Call call;
            const id view = methods.imageViewWithImage.own(self, name, image);
            addCall(call, messageOf("Views", "imageViewWithImage"), {wordsOf(image)}, view);
            return view;
        });
    methods.font.replace(messageOf("Fonts", "fontWithNameSize").data(),
                         [](id self, SEL selector, NSString* name, CGFloat size) -> id {
                             const Call call;
                             const id font = methods.font.own(self, selector, name, size);
                             addCall(call, messageOf("Fonts", "fontWithNameSize"),
                                     {wordsOf(name), wordsOf(size)}, font);
                             return font;
                         });
    methods.drawInRect.replace(
        messageOf("Images", "drawInRect").data(), [](id self, SEL name, CGRect rect) {
            const Call call;
            if (call.isTheLibrarys()) {
                add({.message = std::string(messageOf("Images", "drawInRect")),
                     .arguments = {wordsOf(self), wordsOf(rect)}});
            }
            methods.drawInRect.own(self, name, rect);
        });
}

constexpr auto kAnimate = messageOf("Views", "animateWithDurationAnimationsCompletion");
constexpr auto kSpring = messageOf(
    "Views",
    "animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsComple"
    "tion");

// Before their blocks run, whose own doing is the library's again.
void replaceAnimations() {
    methods.animate.replace(kAnimate.data(), [](id self, SEL name, NSTimeInterval duration,
                                                id animations, id completion) {
        if (const Call call; call.isTheLibrarys()) {
            add({.message = std::string(kAnimate),
                 .arguments = {wordsOf(duration), wordsOfBlock(animations),
                               wordsOfBlock(completion)}});
        }
        methods.animate.own(self, name, duration, animations, completion);
    });
    methods.spring.replace(
        kSpring.data(),
        [](id self, SEL name, NSTimeInterval duration, NSTimeInterval delay, CGFloat damping,
           CGFloat velocity, NSUInteger options, id animations, id completion) {
            if (const Call call; call.isTheLibrarys()) {
                add({.message = std::string(kSpring),
                     .arguments = {wordsOf(duration), wordsOf(delay), wordsOf(damping),
                                   wordsOf(velocity), words(options), wordsOfBlock(animations),
                                   wordsOfBlock(completion)}});
            }
            methods.spring.own(self, name, duration, delay, damping, velocity, options, animations,
                               completion);
        });
}

}  // namespace

void recordViews() {
    replaceViews();
    replaceAnimations();
    replaceAllTold();
}

}  // namespace velmoranth::standins
