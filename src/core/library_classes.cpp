#include "core/library_classes.h"

#include "core/velmoranth.h"
#include "filemanager/velmoranth_file_manager.h"
#include "sounds/sounds.h"

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace velmoranth::core {

using filemanager::VelmoranthFileManager;
using platform::MethodDefinition;
using platform::ObjectRef;
using sounds::Sounds;

namespace {

// A class method that is a function of its arguments alone.
template <class R, class... Args>
MethodDefinition classMethod(const char* selector, R (*function)(Args...)) {
    return {selector, true,
            platform::makeImplementation(std::function<R(platform::Class&, std::decay_t<Args>...)>(
                [function](platform::Class&, const std::decay_t<Args>&... arguments) -> R {
                    return function(arguments...);
                }))};
}

// `Base` is the receiver's class or a base that it is made of.
template <class Receiver, class R, class Base, class... Args>
MethodDefinition instanceMethod(const char* selector, R (Base::*method)(Args...)) {
    return {selector, false,
            platform::makeImplementation(std::function<R(Receiver&, std::decay_t<Args>...)>(
                [method](Receiver& self, const std::decay_t<Args>&... arguments) -> R {
                    return (self.*method)(arguments...);
                }))};
}

// The getter of a property.
template <class Receiver, class R, class Base>
MethodDefinition getter(const char* selector, const R& (Base::*method)() const) {
    return {selector, false,
            platform::makeImplementation(std::function<R(Receiver&)>(
                [method](Receiver& self) { return (self.*method)(); }))};
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
        instanceMethod<Sounds>("initClass:", &Sounds::initClass),
        instanceMethod<Sounds>("PlayButtonClick:", &Sounds::PlayButtonClick),
        instanceMethod<Sounds>("PlaySlide:", &Sounds::PlaySlide),
        instanceMethod<Sounds>("PlaySlideWithClick:", &Sounds::PlaySlideWithClick),
        instanceMethod<Sounds>("PlayError:", &Sounds::PlayError),
        instanceMethod<Sounds>("PlayReboot:", &Sounds::PlayReboot),
        instanceMethod<Sounds>("PlaySuccess:", &Sounds::PlaySuccess),
        instanceMethod<Sounds>("PlayOn:", &Sounds::PlayOn),
        instanceMethod<Sounds>("PlayOff:", &Sounds::PlayOff),
        getter<Sounds>("soundToPlay", &Sounds::soundToPlay),
        instanceMethod<Sounds>("setSoundToPlay:", &Sounds::setSoundToPlay),
    };
}

// Those that others send: the look-ups and the imaging are called by the library's own code alone.
std::vector<MethodDefinition> mainClassMethods() {
    return {
        {"sharedIconManager", true,
         platform::makeImplementation(std::function<ObjectRef(platform::Class&)>(
             [](platform::Class&) { return VelMoranth::sharedIconManager(); }))},
        instanceMethod<VelMoranth>("initClass:", &VelMoranth::initClass),
        instanceMethod<VelMoranth>("playUISound:", &VelMoranth::playUISound),
        instanceMethod<VelMoranth>("playsystemSound:", &VelMoranth::playsystemSound),
        getter<VelMoranth>("audiosession", &VelMoranth::audiosession),
        instanceMethod<VelMoranth>("setAudiosession:", &VelMoranth::setAudiosession),
        getter<VelMoranth>("soundToPlay", &VelMoranth::soundToPlay),
        instanceMethod<VelMoranth>("setSoundToPlay:", &VelMoranth::setSoundToPlay),
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
                       .initialize = VelMoranth::initialize,
                       .methods = mainClassMethods()});
    return classes;
}

}  // namespace velmoranth::core
