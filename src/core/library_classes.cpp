#include "core/library_classes.h"

#include "core/velmoranth.h"
#include "filemanager/velmoranth_file_manager.h"
#include "sounds/sounds.h"

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace velmoranth::core {

using filemanager::VelmoranthFileManager;
using platform::MethodDefinition;
using platform::NullableString;
using platform::ObjectRef;
using sounds::Sounds;

namespace {

// How a type of the engine stands in a message. Where a string can be missing only there, a path or
// a line that is made of it says so as the platform prints it.
template <class T>
struct InMessage {
    using Type = T;

    static T toEngine(const T& value) { return value; }

    static T fromEngine(T value) { return value; }
};

template <>
struct InMessage<void> {
    using Type = void;
};

template <>
struct InMessage<std::string> {
    using Type = NullableString;

    static std::string toEngine(const NullableString& text) { return text.value_or("(null)"); }

    static NullableString fromEngine(std::string text) { return text; }
};

template <>
struct InMessage<platform::Data> {
    using Type = std::optional<platform::Data>;

    static platform::Data toEngine(const Type& data) { return data.value_or(platform::Data()); }
};

template <class T>
using MessageType = typename InMessage<std::decay_t<T>>::Type;

// A class method that is a function of its arguments alone.
template <class R, class... Args>
MethodDefinition classMethod(const char* selector, R (*function)(Args...)) {
    const auto method = [function](platform::Class&,
                                   const MessageType<Args>&... arguments) -> MessageType<R> {
        if constexpr (std::is_void_v<R>) {
            function(InMessage<std::decay_t<Args>>::toEngine(arguments)...);
        } else {
            return InMessage<R>::fromEngine(
                function(InMessage<std::decay_t<Args>>::toEngine(arguments)...));
        }
    };
    return {selector, true,
            platform::makeImplementation(
                std::function<MessageType<R>(platform::Class&, MessageType<Args>...)>(method))};
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

std::vector<MethodDefinition> lookupMethods() {
    return {
        classMethod("selectedTheme", &VelMoranth::selectedTheme),
        classMethod("currentThemePlist", &VelMoranth::currentThemePlist),
        classMethod("userChangedThemes", &VelMoranth::userChangedThemes),
        classMethod("DetectUserDevice", &VelMoranth::DetectUserDevice),
        classMethod("searchforIconInIconBundlesWithLeafIdentifier:forImg:",
                    &VelMoranth::searchforIconInIconBundlesWithLeafIdentifierForImg),
        classMethod("deviceUIImageNamed:fromBundle:originalUIImage:",
                    &VelMoranth::deviceUIImageNamedFromBundleOriginalUIImage),
        classMethod("deviceUIImageNamed:originalUIImage:",
                    &VelMoranth::deviceUIImageNamedOriginalUIImage),
        classMethod("searchFolder:forImageStr:", &VelMoranth::searchFolderForImageStr),
        classMethod("searchFolders:forImageString:", &VelMoranth::searchFoldersForImageString),
        classMethod("hasSearchForImageNamedOrBundle:forImg:",
                    &VelMoranth::hasSearchForImageNamedOrBundleForImg),
    };
}

std::vector<MethodDefinition> imagingMethods() {
    return {
        classMethod("iconMask", &VelMoranth::iconMask),
        classMethod("clearIconMask", &VelMoranth::clearIconMask),
        classMethod("maskImage:withMask:", &VelMoranth::maskImageWithMask),
        classMethod("iconOverlay", &VelMoranth::iconOverlay),
        classMethod("clearIconOverlay", &VelMoranth::clearIconOverlay),
        classMethod("redrawIconWithOverlay:", &VelMoranth::redrawIconWithOverlay),
        classMethod("addShadowToIcon", &VelMoranth::addShadowToIcon),
        classMethod("clearShadowImg", &VelMoranth::clearShadowImg),
        classMethod("reflectedImage:withHeight:", &VelMoranth::reflectedImageWithHeight),
        classMethod("imageWithImage:scaledToSize:", &VelMoranth::imageWithImageScaledToSize),
        classMethod("removeAllOverlaysfrom:", &VelMoranth::removeAllOverlaysfrom),
        classMethod("removeAllShadowsfrom:", &VelMoranth::removeAllShadowsfrom),
        classMethod("removeFolderfrom:", &VelMoranth::removeFolderfrom),
        classMethod("removeReflectedIconsfrom:", &VelMoranth::removeReflectedIconsfrom),
        classMethod("FolderImage", &VelMoranth::FolderImage),
        classMethod("badgeImage", &VelMoranth::badgeImage),
        classMethod("pageDots:", &VelMoranth::pageDots),
        classMethod("spotlightPageDot", &VelMoranth::spotlightPageDot),
        classMethod("SBDockImgWithFrame:", &VelMoranth::SBDockImgWithFrame),
        classMethod("colorWithHexString:", &VelMoranth::colorWithHexString),
    };
}

std::vector<MethodDefinition> toolMethods() {
    return {
        classMethod("VelmoranthImageDump:named:inBundle:",
                    &VelMoranth::VelmoranthImageDumpNamedInBundle),
        classMethod("contentTypeForImageData:", &VelMoranth::contentTypeForImageData),
        classMethod("imageFromBundlePath:extract:extractionPath:",
                    &VelMoranth::imageFromBundlePathExtractExtractionPath),
    };
}

// One class for whoever sends it messages, of as many rooms as it is made of.
std::vector<MethodDefinition> methodsOf(
    std::initializer_list<std::vector<MethodDefinition> (*)()> rooms) {
    std::vector<MethodDefinition> methods;
    for (const auto room : rooms) {
        std::ranges::move(room(), std::back_inserter(methods));
    }
    return methods;
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
    classes.push_back(
        {.name = "VelMoranth",
         .superclass = "NSObject",
         .load = VelMoranth::load,
         .initialize = VelMoranth::initialize,
         .methods = methodsOf({mainClassMethods, lookupMethods, imagingMethods, toolMethods})});
    return classes;
}

}  // namespace velmoranth::core
