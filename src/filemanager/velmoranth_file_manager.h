// The settings file manager of the settings panel: factory preferences, named copies of the
// preferences, a theme's fonts. An operation that fails says so in an alert over the key window,
// and does not retry or roll back. All of it runs on the main thread.
#pragma once

#include "platform/foundation.h"
#include "platform/objc_runtime.h"

#include <memory>
#include <string>

namespace velmoranth::filemanager {

class VelmoranthFileManager;
using VelmoranthFileManagerRef = std::shared_ptr<VelmoranthFileManager>;

class VelmoranthFileManager final : public platform::Object {
  public:
    [[nodiscard]] std::string className() const override { return "VelmoranthFileManager"; }

    // +initialize: makes the shared instance when the receiver is the class itself, not a subclass.
    static void initialize(const platform::ClassRef& receiver);
    // Nil before +initialize.
    [[nodiscard]] static VelmoranthFileManagerRef sharedFileManager();

    // Puts the factory preferences in place of missing ones, and opens their folder up (mode 0777).
    // When there are preferences already, the copy fails, is logged, and they stay.
    static void NoUserSettingCreateThemeNow();

    // Strings come as the platform has them: nil prints "(null)" and is a path of nothing. Each
    // of these gives whether it succeeded; when not, the alert is up.

    // saveCurrentSettinginFolderWithName: a copy of the live preferences in the folder of saved
    // ones, by way of a staging copy, which stays when the name is taken.
    static bool saveCurrentSettinginFolderWithName(const platform::NullableString& name);
    // renameFileFrom:to: as root, with the file opened up (mode 0777).
    static bool renameFileFromTo(const platform::NullableString& oldPath,
                                 const platform::NullableString& newPath);
    // deleteFileFromDevice:fromDir: the folder is logged and not used.
    static bool deleteFileFromDeviceFromDir(const platform::NullableString& path,
                                            const platform::NullableString& folder);
    // overwriteFontFilesInDir:fromTheme: copies the theme's fonts to where none are yet; an
    // existing destination is not replaced and makes it fail.
    static bool overwriteFontFilesInDirFromTheme(const platform::NullableString& destination,
                                                 const platform::NullableString& source);

    // ShowSuccesView: the image in the file at that path grows over the key window, and is gone 0.6
    // seconds later. A path of no image shows an empty view.
    static void ShowSuccesView(const platform::NullableString& imagePath);
    // Takes the image away.
    static void finshedSelfAlert();
};

}  // namespace velmoranth::filemanager
