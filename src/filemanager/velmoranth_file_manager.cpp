#include "filemanager/velmoranth_file_manager.h"

#include "core/format.h"
#include "core/preferences.h"
#include "platform/platform.h"

#include <cstdint>
#include <string>

namespace velmoranth::filemanager {

using core::NSLog;
using core::stringWithFormat;
using platform::Error;
using platform::Failure;
using platform::NullableString;
using platform::platform;
using platform::Rect;

namespace {

constexpr const char* kClassName = "VelmoranthFileManager";
constexpr unsigned kOpenMode = 0777;

// The success image, points: it grows from nothing at a point left of and above the middle of the
// view.
constexpr double kFromMiddle = 40;
constexpr double kGrownSide = 200;

// Both movements of the success image; seconds.
constexpr double kDuration = 0.3;
constexpr double kDamping = 0.5;
constexpr double kInitialVelocity = 0.5;
constexpr std::int64_t kShownNanoseconds = 600'000'000;

struct State {
    VelmoranthFileManagerRef sharedInstance;
    platform::ViewControllerRef presentingController;
    platform::ImageViewRef successImageView;
};

State& state() {
    static State instance;
    return instance;
}

std::string pathOf(const NullableString& string) {
    return string.value_or(std::string());
}

void openUp(const char* folder) {
    platform().fileManager.setPosixPermissionsOfItemAtPath(kOpenMode, folder);
    platform().libSystem.chmod(folder, kOpenMode);
}

void fetchPresentingController() {
    const platform::WindowRef window = platform().application.keyWindow();
    state().presentingController = window == nullptr ? nullptr : window->rootViewController();
}

platform::ViewRef presentingView() {
    const platform::ViewControllerRef& controller = state().presentingController;
    return controller == nullptr ? nullptr : controller->view();
}

void showAlert(const Error& error) {
    fetchPresentingController();
    const platform::AlertControllerRef alert =
        platform().alerts.alertControllerWithTitleMessagePreferredStyle(
            "ERROR", stringWithFormat("%@", error.localizedDescription),
            platform::AlertControllerStyle::alert);
    if (alert != nullptr) {
        alert->addAction(platform().alerts.actionWithTitleStyleHandler(
            "OK", platform::AlertActionStyle::normal, [] {}));
    }
    if (const platform::ViewControllerRef& controller = state().presentingController) {
        controller->presentViewControllerAnimated(alert, true);
    }
}

// Whether the operation succeeded; an alert says when it did not.
bool succeeded(const Failure& failure) {
    if (failure) {
        showAlert(*failure);
    }
    return !failure;
}

// Where the success image stands with sides of that length; a view that is not there is taken as
// one of no size.
Rect successFrame(double side) {
    const platform::ViewRef view = presentingView();
    const Rect frame = view == nullptr ? Rect{} : view->frame();
    return {{frame.size.width * 0.5 - kFromMiddle, frame.size.height * 0.5 - kFromMiddle},
            {side, side}};
}

void animateSuccessImage(double side) {
    platform()
        .views
        .animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
            kDuration, 0, kDamping, kInitialVelocity, platform::kViewAnimationOptionCurveEaseIn,
            [side] {
                if (state().successImageView != nullptr) {
                    state().successImageView->setFrame(successFrame(side));
                }
            },
            [](bool) {});
}

}  // namespace

void VelmoranthFileManager::initialize(const platform::ClassRef& receiver) {
    if (receiver != nullptr && receiver == platform().objc.getClass(kClassName)) {
        state().sharedInstance = std::make_shared<VelmoranthFileManager>();
    }
}

VelmoranthFileManagerRef VelmoranthFileManager::sharedFileManager() {
    return state().sharedInstance;
}

void VelmoranthFileManager::NoUserSettingCreateThemeNow() {
    const std::string factory = core::kFactoryPreferences;
    const std::string live = core::kPreferencesPath;
    openUp(core::kPreferencesFolder);
    Failure failure = platform().fileManager.copyItemAtPathToPath(factory, live);
    if (!failure) {
        // The file is moved onto its own path; that fails on the platform, and is logged.
        failure = platform().fileManager.moveItemAtPathToPath(live, live);
    }
    if (failure) {
        NSLog("Velmoranth Failed to move '%@' to '%@': %@", factory, live,
              failure->localizedDescription);
    }
}

bool VelmoranthFileManager::saveCurrentSettinginFolderWithName(const NullableString& name) {
    openUp(core::kSavedFolder);
    const std::string live = core::kPreferencesPath;
    const std::string staging = core::kStagingCopy;
    if (!succeeded(platform().fileManager.copyItemAtPathToPath(live, staging))) {
        return false;
    }
    const std::string saved = core::savedCopyPath(stringWithFormat("%@", name));
    const Failure failure = platform().fileManager.moveItemAtPathToPath(staging, saved);
    if (!succeeded(failure)) {
        NSLog("Velmoranth Failed to move '%@' to '%@': %@", live, staging,
              failure->localizedDescription);
        return false;
    }
    return true;
}

bool VelmoranthFileManager::renameFileFromTo(const NullableString& oldPath,
                                             const NullableString& newPath) {
    platform().fileManager.setPosixPermissionsOfItemAtPath(kOpenMode, pathOf(oldPath));
    platform().libSystem.setuid(0);
    platform().libSystem.setgid(0);
    platform().libSystem.chmod(pathOf(oldPath), kOpenMode);
    return succeeded(platform().fileManager.moveItemAtPathToPath(pathOf(oldPath), pathOf(newPath)));
}

bool VelmoranthFileManager::deleteFileFromDeviceFromDir(const NullableString& path,
                                                        const NullableString& folder) {
    NSLog("VELMORANTH FILE MANAGER: deleteFileFromDevice: %@ fromThemeDir: %@", path, folder);
    return succeeded(platform().fileManager.removeItemAtPath(pathOf(path)));
}

bool VelmoranthFileManager::overwriteFontFilesInDirFromTheme(const NullableString& destination,
                                                             const NullableString& source) {
    NSLog("VELMORANTH FILE MANAGER: overwriteFontFilesInDir: %@ fromThemeDir: %@", destination,
          source);
    if (!succeeded(
            platform().fileManager.copyItemAtPathToPath(pathOf(source), pathOf(destination)))) {
        return false;
    }
    // Names no file, so nothing but an empty view is shown.
    ShowSuccesView("Applied Fonts");
    return true;
}

void VelmoranthFileManager::ShowSuccesView(const NullableString& imagePath) {
    fetchPresentingController();
    state().successImageView = platform().views.imageViewWithFrame(successFrame(0));
    const platform::ImageViewRef imageView = state().successImageView;
    const platform::ImageRef image = platform().images.imageWithContentsOfFile(pathOf(imagePath));
    if (imageView != nullptr) {
        imageView->setImage(image);
    }
    animateSuccessImage(kGrownSide);
    if (const platform::ViewRef view = presentingView()) {
        view->addSubview(imageView);
    }
    platform().libSystem.dispatchAfterOnMainQueue(kShownNanoseconds, [] { finshedSelfAlert(); });
}

void VelmoranthFileManager::finshedSelfAlert() {
    animateSuccessImage(0);
    // At once: the shrinking is never seen.
    if (const platform::ImageViewRef& imageView = state().successImageView) {
        imageView->setHidden(true);
        imageView->removeFromSuperview();
    }
}

}  // namespace velmoranth::filemanager
