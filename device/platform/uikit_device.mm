// The device and its screen.
#include "device/platform/geometry.h"
#include "device/platform/services.h"
#import <UIKit/UIDevice.h>
#include <objc/runtime.h>

namespace velmoranth::device {
namespace {

class CurrentDevice final : public platform::Device {
  public:
    bool respondsToUserInterfaceIdiom() override {
        return [device() respondsToSelector:@selector(userInterfaceIdiom)] != 0;
    }

    int userInterfaceIdiom() override { return static_cast<int>([device() userInterfaceIdiom]); }

    int orientation() override { return static_cast<int>([device() orientation]); }

  private:
    static UIDevice* device() {
        return [static_cast<Class>(objc_getClass("UIDevice")) currentDevice];
    }
};

class MainScreen final : public platform::Screen {
  public:
    double scale() override { return [screen() scale]; }

    platform::Rect bounds() override { return fromNative([screen() bounds]); }

  private:
    static UIScreen* screen() { return [static_cast<Class>(objc_getClass("UIScreen")) mainScreen]; }
};

}  // namespace

platform::Device& currentDevice() {
    static CurrentDevice instance;
    return instance;
}

platform::Screen& mainScreen() {
    static MainScreen instance;
    return instance;
}

}  // namespace velmoranth::device
