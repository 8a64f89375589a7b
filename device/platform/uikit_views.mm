// UIView's and its subclasses' initialisers, gestures and animations.
#include "device/platform/geometry.h"
#include "device/platform/services.h"
#include "device/platform/signed_pointers.h"
#include "device/platform/uikit_handles.h"
#import <UIKit/UIKit.h>
#include <objc/runtime.h>

#include <functional>
#include <memory>

namespace velmoranth::device {
namespace {

using Animations = std::function<void()>;
using Completion = std::function<void(bool finished)>;

// The engine sets up what it has made without looking whether there is one, as messages to nil do
// nothing. So where the platform made none, there is a handle of nil.
template <class Interface>
std::shared_ptr<Interface> made(id view) {
    return std::make_shared<HandleFor<Interface>>(view, Hold::adopt);
}

template <class Interface>
std::shared_ptr<Interface> viewWithFrameOfClass(const char* name, const platform::Rect& frame) {
    return made<Interface>([[classNamed(name) alloc] initWithFrame:toNative(frame)]);
}

class UIViews final : public platform::Views {
  public:
    platform::ViewRef viewWithFrame(const platform::Rect& frame) override {
        return viewWithFrameOfClass<platform::View>("UIView", frame);
    }

    platform::LabelRef labelWithFrame(const platform::Rect& frame) override {
        return viewWithFrameOfClass<platform::Label>("UILabel", frame);
    }

    platform::ImageViewRef imageView() override {
        return made<platform::ImageView>([[classNamed("UIImageView") alloc] init]);
    }

    platform::ImageViewRef imageViewWithImage(const platform::ImageRef& image) override {
        return made<platform::ImageView>([[classNamed("UIImageView") alloc]
            initWithImage:static_cast<UIImage*>(nativeOf(image))]);
    }

    platform::ImageViewRef imageViewWithFrame(const platform::Rect& frame) override {
        return viewWithFrameOfClass<platform::ImageView>("UIImageView", frame);
    }

    platform::GestureRecognizerRef tapGestureRecognizer(platform::Object& target,
                                                        const platform::Selector& action) override {
        return wrap<platform::GestureRecognizer>(
            [[classNamed("UITapGestureRecognizer") alloc]
                initWithTarget:nativeOf(target)
                        action:sel_registerName(action.c_str())],
            Hold::adopt);
    }

    // The platform copies the blocks, and each copy has functions of its own: a block would keep no
    // more than the address of what it knows by reference.
    void animateWithDurationAnimationsCompletion(double duration, const Animations& animations,
                                                 const Completion& completion) override {
        const Animations animate = animations;
        const Completion complete = completion;
        [classNamed("UIView") animateWithDuration:duration
                                       animations:signedBlock(^{
                                         animate();
                                       })
                                       completion:signedBlock(^(BOOL finished) {
                                         complete(finished != 0);
                                       })];
    }

    void
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double duration, double delay, double damping, double initialVelocity, unsigned options,
        const Animations& animations, const Completion& completion) override {
        const Animations animate = animations;
        const Completion complete = completion;
        [classNamed("UIView") animateWithDuration:duration
                                            delay:delay
                           usingSpringWithDamping:damping
                            initialSpringVelocity:initialVelocity
                                          options:options
                                       animations:signedBlock(^{
                                         animate();
                                       })
                                       completion:signedBlock(^(BOOL finished) {
                                         complete(finished != 0);
                                       })];
    }
};

}  // namespace

platform::Views& views() {
    return theOne<UIViews>();
}

}  // namespace velmoranth::device
