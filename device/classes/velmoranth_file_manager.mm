// The settings file manager, which the settings panel sends its operations.
#include "filemanager/velmoranth_file_manager.h"

#include "device/classes/answer.h"
#include "device/classes/engine_object.h"
#include "device/platform/handles.h"
#import <Foundation/Foundation.h>

using velmoranth::device::answer;
using velmoranth::device::EngineObject;
using velmoranth::device::wrapClass;
using Engine = velmoranth::filemanager::VelmoranthFileManager;

@interface VelmoranthFileManager : NSObject {
    // Behind the shared instance alone: no operation is an instance's.
  @private
    EngineObject<Engine>* engine_;
}
@end

namespace {

VelmoranthFileManager* sharedInstance = nil;

}  // namespace

@implementation VelmoranthFileManager

+ (void)initialize {
    const velmoranth::filemanager::VelmoranthFileManagerRef before = Engine::sharedFileManager();
    Engine::initialize(wrapClass(self));
    const velmoranth::filemanager::VelmoranthFileManagerRef now = Engine::sharedFileManager();
    if (now != before) {
        VelmoranthFileManager* const previous = sharedInstance;
        sharedInstance = [[VelmoranthFileManager alloc] init];
        sharedInstance->engine_ = new EngineObject<Engine>(now, sharedInstance);
        [previous release];
    }
}

+ (VelmoranthFileManager*)sharedFileManager {
    return [[sharedInstance retain] autorelease];
}

- (void)dealloc {
    delete engine_;
    [super dealloc];
}

+ (void)NoUserSettingCreateThemeNow {
    Engine::NoUserSettingCreateThemeNow();
}

+ (BOOL)overwriteFontFilesInDir:(NSString*)destination fromTheme:(NSString*)source {
    return answer(&Engine::overwriteFontFilesInDirFromTheme, destination, source);
}

+ (BOOL)saveCurrentSettinginFolderWithName:(NSString*)name {
    return answer(&Engine::saveCurrentSettinginFolderWithName, name);
}

+ (BOOL)renameFileFrom:(NSString*)oldPath to:(NSString*)newPath {
    return answer(&Engine::renameFileFromTo, oldPath, newPath);
}

+ (BOOL)deleteFileFromDevice:(NSString*)path fromDir:(NSString*)folder {
    return answer(&Engine::deleteFileFromDeviceFromDir, path, folder);
}

+ (void)ShowSuccesView:(NSString*)imagePath {
    answer(&Engine::ShowSuccesView, imagePath);
}

+ (void)finshedSelfAlert {
    Engine::finshedSelfAlert();
}

@end
