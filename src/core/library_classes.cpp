#include "core/library_classes.h"

#include "core/velmoranth.h"
#include "filemanager/velmoranth_file_manager.h"
#include "sounds/sounds.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace velmoranth::core {

using filemanager::VelmoranthFileManager;
using platform::AudioPlayerRef;
using platform::MethodDefinition;
using platform::NullableString;
using platform::ObjectRef;
using sounds::Sounds;

namespace {

// A class method that is a function of its arguments alone.
MethodDefinition classMethod(const char* selector, void (*function)()) {
    return {selector, true,
            platform::makeImplementation(std::function<void(platform::Class&)>(
                [function](platform::Class&) { function(); }))};
}

MethodDefinition classMethod(const char* selector, void (*function)(const NullableString&)) {
    return {
        selector, true,
        platform::makeImplementation(std::function<void(platform::Class&, NullableString)>(
            [function](platform::Class&, const NullableString& argument) { function(argument); }))};
}

MethodDefinition classMethod(const char* selector, bool (*function)(const NullableString&)) {
    return {selector, true,
            platform::makeImplementation(std::function<bool(platform::Class&, NullableString)>(
                [function](platform::Class&, const NullableString& argument) {
                    return function(argument);
                }))};
}

MethodDefinition classMethod(const char* selector,
                             bool (*function)(const NullableString&, const NullableString&)) {
    return {selector, true,
            platform::makeImplementation(
                std::function<bool(platform::Class&, NullableString, NullableString)>(
                    [function](platform::Class&, const NullableString& first,
                               const NullableString& second) { return function(first, second); }))};
}

// An action of the panel: takes its sender.
MethodDefinition action(const char* selector, void (Sounds::*method)(const ObjectRef&)) {
    return {selector, false,
            platform::makeImplementation(std::function<void(Sounds&, ObjectRef)>(
                [method](Sounds& self, const ObjectRef& sender) { (self.*method)(sender); }))};
}

std::vector<MethodDefinition> fileManagerMethods() {
    return {
        {"sharedFileManager", true,
         platform::makeImplementation(std::function<ObjectRef(platform::Class&)>(
             [](platform::Class&) { return VelmoranthFileManager::sharedFileManager(); }))},
        classMethod("NoUserSettingCreateThemeNow",
                    &VelmoranthFileManager::NoUserSettingCreateThemeNow),
        classMethod("overwriteFontFilesInDir:fromTheme:",
                    &VelmoranthFileManager::overwriteFontFilesInDirFromTheme),
        classMethod("saveCurrentSettinginFolderWithName:",
                    &VelmoranthFileManager::saveCurrentSettinginFolderWithName),
        classMethod("renameFileFrom:to:", &VelmoranthFileManager::renameFileFromTo),
        classMethod("deleteFileFromDevice:fromDir:",
                    &VelmoranthFileManager::deleteFileFromDeviceFromDir),
        classMethod("ShowSuccesView:", &VelmoranthFileManager::ShowSuccesView),
        classMethod("finshedSelfAlert", &VelmoranthFileManager::finshedSelfAlert),
    };
}

std::vector<MethodDefinition> soundMethods() {
    return {
        action("initClass:", &Sounds::initClass),
        action("PlayButtonClick:", &Sounds::PlayButtonClick),
        action("PlaySlide:", &Sounds::PlaySlide),
        action("PlaySlideWithClick:", &Sounds::PlaySlideWithClick),
        action("PlayError:", &Sounds::PlayError),
        action("PlayReboot:", &Sounds::PlayReboot),
        action("PlaySuccess:", &Sounds::PlaySuccess),
        action("PlayOn:", &Sounds::PlayOn),
        action("PlayOff:", &Sounds::PlayOff),
        {"soundToPlay", false,
         platform::makeImplementation(std::function<AudioPlayerRef(Sounds&)>(
             [](Sounds& self) { return self.soundToPlay(); }))},
        {"setSoundToPlay:", false,
         platform::makeImplementation(std::function<void(Sounds&, AudioPlayerRef)>(
             [](Sounds& self, const AudioPlayerRef& player) { self.setSoundToPlay(player); }))},
    };
}

}  // namespace

std::vector<platform::ClassDefinition> libraryClasses() {
    std::vector<platform::ClassDefinition> classes;
    classes.push_back({.name = "VelmoranthFileManager",
                       .superclass = "NSObject",
                       .load = {},
                       .initialize = VelmoranthFileManager::initialize,
                       .methods = fileManagerMethods()});
    classes.push_back({.name = "Sounds",
                       .superclass = "NSObject",
                       .load = {},
                       .initialize = {},
                       .methods = soundMethods(),
                       .makeInstance = [] { return std::make_shared<Sounds>(); }});
    // Its +load runs at once and may use the others.
    classes.push_back({.name = "VelMoranth",
                       .superclass = "NSObject",
                       .load = VelMoranth::load,
                       .initialize = VelMoranth::initialize});
    return classes;
}

}  // namespace velmoranth::core
