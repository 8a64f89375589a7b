#include "simulator/home_screen/folder_classes.h"

#include "simulator/home_screen/open_folder_views.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace velmoranth::simulator {
namespace {

using desktop::Runtime;
using platform::ObjectRef;
using platform::ViewRef;

struct ClassRow {
    std::string_view name;
    std::string_view superclass;
    int firstSystem = 12;
    int lastSystem = 13;
};

// Names and relations after public header lists of iOS 10.2, 12.1 and 13.
constexpr std::array kClasses{
    ClassRow{"UITouch", "NSObject"},
    ClassRow{"UIGestureRecognizer", "NSObject"},
    ClassRow{"UITapGestureRecognizer", "UIGestureRecognizer"},
    ClassRow{"UIViewController", "NSObject"},
    ClassRow{"UIVisualEffectView", "UIView", 12, 12},
    ClassRow{"SBFolder", "NSObject"},
    ClassRow{"SBFolderView", "UIView"},
    ClassRow{"SBFloatyFolderView", "SBFolderView"},
    ClassRow{"SBFolderControllerBackgroundView", "UIView"},
    ClassRow{"SBFolderBackgroundView", "UIView"},
    ClassRow{"SBFolderIconListView", "SBIconListView"},
    ClassRow{"SBIconController", "UIViewController"},
};

// The instance variables "_blurView" and "_tintView".
template <class ViewType>
void addMaterial(Runtime& runtime, const char* className) {
    runtime.addInstanceVariable(
        className, "_blurView",
        std::function<ObjectRef(ViewType&)>([](ViewType& view) { return view.blurView(); }));
    runtime.addInstanceVariable(
        className, "_tintView",
        std::function<ObjectRef(ViewType&)>([](ViewType& view) { return view.tintView(); }));
}

void addBackgroundMethods(Runtime& runtime) {
    runtime.addInstanceMethod(
        "SBFolderControllerBackgroundView", "initWithFrame:",
        std::function<ViewRef(FolderControllerBackgroundView&, platform::Rect)>(
            [](FolderControllerBackgroundView& view, const platform::Rect& frame) {
                return view.init(frame);
            }));
    addMaterial<FolderControllerBackgroundView>(runtime, "SBFolderControllerBackgroundView");
    runtime.addInstanceMethod("SBFolderBackgroundView", "layoutSubviews",
                              std::function<void(FolderBackgroundView&)>(
                                  [](FolderBackgroundView& view) { view.placeSubviews(); }));
    addMaterial<FolderBackgroundView>(runtime, "SBFolderBackgroundView");
}

void addFolderViewMethods(Runtime& runtime) {
    constexpr const char* kClass = "SBFloatyFolderView";
    runtime.addInstanceMethod(
        kClass, "initWithFolder:orientation:viewMap:context:",
        std::function<ViewRef(FloatyFolderView&, ObjectRef, std::int64_t, ObjectRef, ObjectRef)>(
            [](FloatyFolderView& view, const ObjectRef& folder, std::int64_t, const ObjectRef&,
               const ObjectRef&) { return view.init(folder); }));
    runtime.addInstanceMethod(kClass, "layoutSubviews",
                              std::function<void(FloatyFolderView&)>(
                                  [](FloatyFolderView& view) { view.placeSubviews(); }));
    runtime.addInstanceMethod(kClass, "_showsTitle",
                              std::function<bool(platform::SBFloatyFolderView&)>(
                                  [](platform::SBFloatyFolderView&) { return true; }));
    runtime.addInstanceMethod(
        kClass, "_tapToCloseGestureRecognizer:shouldReceiveTouch:",
        std::function<bool(FloatyFolderView&, platform::GestureRecognizerRef, ObjectRef)>(
            [](FloatyFolderView& view, const platform::GestureRecognizerRef&,
               const ObjectRef& touch) { return view.isOutside(touch); }));
}

void addControllerMethods(Runtime& runtime, const std::shared_ptr<IconController>& controller) {
    runtime.addClassMethod("SBIconController", "sharedInstance",
                           std::function<platform::SBIconControllerRef(platform::Class&)>(
                               [controller](platform::Class&) { return controller; }));
    runtime.addInstanceMethod(
        "SBIconController", "_closeFolderController:animated:withCompletion:",
        std::function<void(IconController&, ObjectRef, bool, FolderCompletion)>(
            [](IconController& receiver, const ObjectRef& folderController, bool animated,
               const FolderCompletion& completion) {
                receiver.closeFolder(folderController, animated, completion);
            }));
}

}  // namespace

void registerFolderClasses(const SystemVersion& system, Runtime& runtime,
                           const std::shared_ptr<IconController>& controller) {
    for (const ClassRow& row : kClasses) {
        if (row.firstSystem <= system.major && system.major <= row.lastSystem) {
            runtime.addClass(std::string(row.name), std::string(row.superclass));
        }
    }
    addBackgroundMethods(runtime);
    addFolderViewMethods(runtime);
    addControllerMethods(runtime, controller);
}

}  // namespace velmoranth::simulator
