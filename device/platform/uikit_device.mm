// The device and its screen.
#include "device/platform/geometry.h"
#include "device/platform/handle.h"
#include "device/platform/services.h"
#import <UIKit/UIKit.h>

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
    static UIDevice* device() { return [classNamed("UIDevice") currentDevice]; }
};

class MainScreen final : public platform::Screen {
  public:
    double scale() override { return [screen() scale]; }

    platform::Rect bounds() override { return fromNative([screen() bounds]); }

  private:
    static UIScreen* screen() { return [classNamed("UIScreen") mainScreen]; }
};

}  // namespace

platform::Device& currentDevice() {
    return theOne<CurrentDevice>();
}

platform::Screen& mainScreen() {
    return theOne<MainScreen>();
}

}  // namespace velmoranth::device
