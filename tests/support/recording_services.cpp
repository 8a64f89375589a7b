#include "tests/support/recording_services.h"

#include <array>
#include <cstdio>

namespace velmoranth::tests {

using platform::BitmapImageRef;
using platform::ClassRef;
using platform::Data;
using platform::Failure;
using platform::ImageRef;
using platform::ImageViewRef;

bool RecordingFileManager::fileExistsAtPath(const std::string& path) {
    journal_.write("fileExists " + path);
    return real_.fileExistsAtPath(path);
}

platform::FileExistence RecordingFileManager::fileExistsAtPathIsDirectory(const std::string& path) {
    journal_.write("isDirectory " + path);
    return real_.fileExistsAtPathIsDirectory(path);
}

Failure RecordingFileManager::setPosixPermissionsOfItemAtPath(unsigned mode,
                                                              const std::string& path) {
    journal_.write("permissions " + modeText(mode) + " " + path);
    return real_.setPosixPermissionsOfItemAtPath(mode, path);
}

Failure RecordingFileManager::copyItemAtPathToPath(const std::string& source,
                                                   const std::string& destination) {
    journal_.write("copy " + source + " -> " + destination);
    return real_.copyItemAtPathToPath(source, destination);
}

Failure RecordingFileManager::moveItemAtPathToPath(const std::string& source,
                                                   const std::string& destination) {
    journal_.write("move " + source + " -> " + destination);
    if (nextMoveFailure) {
        Failure failure = nextMoveFailure;
        nextMoveFailure.reset();
        return failure;
    }
    if (nextMoveSucceeds) {
        nextMoveSucceeds = false;
        return {};
    }
    return real_.moveItemAtPathToPath(source, destination);
}

Failure RecordingFileManager::createDirectoryAtPathWithIntermediateDirectories(
    const std::string& path) {
    journal_.write("createDirectory " + path);
    return real_.createDirectoryAtPathWithIntermediateDirectories(path);
}

bool RecordingFileManager::createFileAtPathContents(const std::string& path, const Data& contents) {
    journal_.write("create " + path);
    return real_.createFileAtPathContents(path, contents);
}

bool RecordingFileManager::writeToFileAtomically(const Data& contents, const std::string& path) {
    journal_.write("write " + path);
    if (failingWrites > 0) {
        --failingWrites;
        if (whenWriteFails) {
            whenWriteFails(path);
        }
        return false;
    }
    return real_.writeToFileAtomically(contents, path);
}

Failure RecordingFileManager::removeItemAtPath(const std::string& path) {
    journal_.write("remove " + path);
    return real_.removeItemAtPath(path);
}

std::optional<Data> RecordingFileManager::dataWithContentsOfFile(const std::string& path) {
    journal_.write("data " + path);
    return real_.dataWithContentsOfFile(path);
}

platform::BundleRef RecordingBundles::bundleWithPath(const std::string& path) {
    journal_.write("bundleWithPath " + path);
    return real == nullptr ? nullptr : real->bundleWithPath(path);
}

bool RecordingBundles::load(const platform::BundleRef& bundle) {
    journal_.write(bundle == nullptr ? "load nil" : "load bundle");
    return real != nullptr && real->load(bundle);
}

platform::OpenedCatalog RecordingCatalogClass::initWithURL(const platform::ClassRef& cls,
                                                           const std::string& path) {
    journal_.write("initWithURL " + path);
    return real == nullptr ? platform::OpenedCatalog{} : real->initWithURL(cls, path);
}

platform::CUICatalogRef RecordingCatalogClass::defaultUICatalogForBundle(
    const platform::ClassRef& cls, const platform::BundleRef& bundle) {
    journal_.write(bundle == nullptr ? "defaultUICatalogForBundle nil"
                                     : "defaultUICatalogForBundle");
    return real == nullptr ? nullptr : real->defaultUICatalogForBundle(cls, bundle);
}

platform::OpenedCatalog RecordingCatalogClass::initWithNameFromBundle(
    const platform::ClassRef& cls, const std::string& name, const platform::BundleRef& bundle) {
    journal_.write("initWithName " + name + (bundle == nullptr ? " of nil" : " of bundle"));
    return real == nullptr ? platform::OpenedCatalog{}
                           : real->initWithNameFromBundle(cls, name, bundle);
}

std::optional<platform::Dictionary> RecordingPropertyLists::dictionaryWithContentsOfFile(
    const std::string& path) {
    journal_.write("readPlist " + path);
    return real_.dictionaryWithContentsOfFile(path);
}

std::optional<platform::PrintableDictionary>
RecordingPropertyLists::printableDictionaryWithContentsOfFile(const std::string& path) {
    journal_.write("readPlist " + path);
    return real_.printableDictionaryWithContentsOfFile(path);
}

int RecordingLibSystem::setuid(unsigned id) {
    journal_.write("setuid " + std::to_string(id));
    return real_.setuid(id);
}

int RecordingLibSystem::setgid(unsigned id) {
    journal_.write("setgid " + std::to_string(id));
    return real_.setgid(id);
}

int RecordingLibSystem::chmod(const std::string& path, unsigned mode) {
    journal_.write("chmod " + modeText(mode) + " " + path);
    return real_.chmod(path, mode);
}

int RecordingLibSystem::mkdir(const std::string& path, unsigned mode) {
    journal_.write("mkdir " + modeText(mode) + " " + path);
    return real_.mkdir(path, mode);
}

std::string RecordingLibSystem::machine() {
    journal_.write("machine");
    return real_.machine();
}

void RecordingLibSystem::dispatchAfterOnMainQueue(std::int64_t nanoseconds,
                                                  const std::function<void()>& block) {
    journal_.write("dispatchAfter " + std::to_string(nanoseconds));
    real_.dispatchAfterOnMainQueue(nanoseconds, block);
}

std::string RecordingLibSystem::homeDirectory() {
    return real_.homeDirectory();
}

BitmapImageRef RecordingCoreGraphics::imageMaskCreate(
    std::size_t width, std::size_t height, std::size_t bitsPerComponent, std::size_t bitsPerPixel,
    std::size_t bytesPerRow, const platform::DataProviderRef& provider, bool shouldInterpolate) {
    journal_.write("imageMaskCreate " + std::to_string(width) + " " + std::to_string(height) + " " +
                   std::to_string(bitsPerComponent) + " " + std::to_string(bitsPerPixel) + " " +
                   std::to_string(bytesPerRow) + (shouldInterpolate ? " smooth" : " sharp"));
    return real_.imageMaskCreate(width, height, bitsPerComponent, bitsPerPixel, bytesPerRow,
                                 provider, shouldInterpolate);
}

BitmapImageRef RecordingCoreGraphics::imageCreateWithMask(const BitmapImageRef& image,
                                                          const BitmapImageRef& mask) {
    journal_.write("imageCreateWithMask");
    return real_.imageCreateWithMask(image, mask);
}

platform::GraphicsContextRef RecordingCoreGraphics::bitmapContextCreate(
    std::int64_t width, std::int64_t height, std::size_t bitsPerComponent, std::size_t bytesPerRow,
    platform::ColorSpace space, std::uint32_t bitmapInfo) {
    journal_.write("bitmapContextCreate " + std::to_string(width) + " " + std::to_string(height) +
                   " " + std::to_string(bitsPerComponent) + " " + std::to_string(bytesPerRow) +
                   (space == platform::ColorSpace::deviceGray ? " gray " : " rgb ") +
                   std::to_string(bitmapInfo));
    return real_.bitmapContextCreate(width, height, bitsPerComponent, bytesPerRow, space,
                                     bitmapInfo);
}

platform::GradientRef RecordingCoreGraphics::gradientCreateWithColorComponents(
    platform::ColorSpace space, const std::vector<double>& components,
    const std::optional<std::vector<double>>& locations) {
    std::string line = space == platform::ColorSpace::deviceGray ? "gradient gray" : "gradient rgb";
    for (const double component : components) {
        line += " " + text(component);
    }
    journal_.write(line + (locations ? " located" : " even"));
    return real_.gradientCreateWithColorComponents(space, components, locations);
}

ImageRef RecordingImages::imageWithContentsOfFile(const std::string& path) {
    journal_.write("load " + path);
    return real_.imageWithContentsOfFile(path);
}

ImageRef RecordingImages::imageWithCGImage(const BitmapImageRef& bitmap) {
    journal_.write("imageWithCGImage");
    return real_.imageWithCGImage(bitmap);
}

void RecordingImages::drawInRect(const ImageRef& image, const platform::Rect& rect) {
    journal_.write(std::string(image ? "draw " : "draw nil ") + text(rect));
    real_.drawInRect(image, rect);
}

std::optional<Data> RecordingImages::pngRepresentation(const ImageRef& image) {
    journal_.write("encode");
    return real_.pngRepresentation(image);
}

ImageRef RecordingImages::applicationIconImageForBundleIdentifierFormatScale(
    const platform::NullableString& bundleIdentifier, int format, double scale) {
    journal_.write("applicationIcon " + bundleIdentifier.value_or("nil") + " " +
                   std::to_string(format) + " " + text(scale));
    return real_.applicationIconImageForBundleIdentifierFormatScale(bundleIdentifier, format,
                                                                    scale);
}

void RecordingImageContexts::beginImageContextWithOptions(platform::Size size, bool opaque,
                                                          double scale) {
    journal_.write("begin " + text(size) + (opaque ? " opaque " : " clear ") + text(scale));
    real_.beginImageContextWithOptions(size, opaque, scale);
}

platform::GraphicsContextRef RecordingImageContexts::getCurrentContext() {
    return real_.getCurrentContext();
}

ImageRef RecordingImageContexts::getImageFromCurrentImageContext() {
    journal_.write("snapshot");
    return real_.getImageFromCurrentImageContext();
}

void RecordingImageContexts::endImageContext() {
    journal_.write("end");
    real_.endImageContext();
}

platform::FontRef RecordingFonts::fontWithNameSize(const platform::NullableString& name,
                                                   double size) {
    std::array<char, 40> points{};
    std::snprintf(points.data(), points.size(), "%.17g", size);
    journal_.write("font " + name.value_or("nil") + " " + points.data());
    return real_.fontWithNameSize(name, size);
}

desktop::DesktopDates RecordingDates::real() const {
    return desktop::DesktopDates({.locale = locale, .date = now, .timeZone = "UTC"});
}

platform::Date RecordingDates::date() {
    journal_.write("date");
    return now;
}

long RecordingDates::dayFromDate(const platform::Date& date) {
    journal_.write("day");
    return real().dayFromDate(date);
}

std::string RecordingDates::stringFromDate(const platform::Date& date,
                                           const std::string& dateFormat) {
    journal_.write("stringFromDate " + dateFormat);
    return real().stringFromDate(date, dateFormat);
}

platform::ViewRef RecordingViews::viewWithFrame(const platform::Rect& frame) {
    journal_.write("viewWithFrame " + text(frame));
    return real_.viewWithFrame(frame);
}

platform::LabelRef RecordingViews::labelWithFrame(const platform::Rect& frame) {
    journal_.write("labelWithFrame " + text(frame));
    return real_.labelWithFrame(frame);
}

ImageViewRef RecordingViews::imageView() {
    journal_.write("imageView");
    return real_.imageView();
}

ImageViewRef RecordingViews::imageViewWithImage(const ImageRef& image) {
    journal_.write(image ? "imageViewWithImage" : "imageViewWithImage nil");
    return real_.imageViewWithImage(image);
}

ImageViewRef RecordingViews::imageViewWithFrame(const platform::Rect& frame) {
    journal_.write("imageViewWithFrame " + text(frame));
    return real_.imageViewWithFrame(frame);
}

platform::GestureRecognizerRef RecordingViews::tapGestureRecognizer(
    platform::Object& target, const platform::Selector& action) {
    journal_.write("tapGestureRecognizer " + target.className() + " " + action);
    return real_.tapGestureRecognizer(target, action);
}

void RecordingViews::animateWithDurationAnimationsCompletion(
    double duration, const std::function<void()>& animations,
    const std::function<void(bool finished)>& completion) {
    std::array<char, 40> seconds{};
    std::snprintf(seconds.data(), seconds.size(), "%.17g", duration);
    journal_.write("animate " + std::string(seconds.data()));
    real_.animateWithDurationAnimationsCompletion(duration, animations, completion);
}

void RecordingViews::
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double duration, double delay, double damping, double initialVelocity, unsigned options,
        const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) {
    std::array<char, 120> numbers{};
    std::snprintf(numbers.data(), numbers.size(),
                  "%.17g delay %g damping %g velocity %g options %u", duration, delay, damping,
                  initialVelocity, options);
    journal_.write("spring " + std::string(numbers.data()) +
                   (completion ? " completion" : " no completion"));
    real_
        .animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
            duration, delay, damping, initialVelocity, options, animations, completion);
}

void RecordingObjcRuntime::registerClass(const platform::ClassDefinition& definition) {
    journal_.write("registerClass " + definition.name + " : " + definition.superclass);
    real_.registerClass(definition);
}

ClassRef RecordingObjcRuntime::getClass(const std::string& name) {
    journal_.write("getClass " + name);
    return real_.getClass(name);
}

ClassRef RecordingObjcRuntime::getMetaclass(const ClassRef& cls) {
    journal_.write("getMetaclass " + (cls ? cls->name() : std::string("nil")));
    return real_.getMetaclass(cls);
}

void RecordingObjcRuntime::sendMessage(const ClassRef& cls, const platform::Selector& selector) {
    journal_.write("send " + (cls ? cls->name() : std::string("nil")) + " " + selector);
    real_.sendMessage(cls, selector);
}

bool RecordingObjcRuntime::addMethod(const ClassRef& cls, const platform::Selector& selector,
                                     const platform::Implementation& implementation,
                                     const std::string& typeEncoding) {
    journal_.write("addMethod " + (cls ? cls->name() : std::string("nil")) + " " + selector + " " +
                   typeEncoding);
    return real_.addMethod(cls, selector, implementation, typeEncoding);
}

bool RecordingObjcRuntime::isKindOfClass(const platform::Object& object,
                                         const platform::ClassRef& cls) {
    journal_.write("isKindOfClass " + object.className() + " " + (cls ? cls->name() : "nil"));
    return real_.isKindOfClass(object, cls);
}

platform::ObjectRef RecordingObjcRuntime::instanceVariable(platform::Object& object,
                                                           const std::string& name) {
    journal_.write("instanceVariable " + object.className() + " " + name);
    return real_.instanceVariable(object, name);
}

platform::ObjectRef RecordingObjcRuntime::valueForKey(platform::Object& object,
                                                      const std::string& key) {
    journal_.write("valueForKey " + object.className() + " " + key);
    return real_.valueForKey(object, key);
}

void RecordingSubstrate::hookMessageEx(const ClassRef& cls, const platform::Selector& selector,
                                       const platform::Implementation& replacement,
                                       platform::Implementation* original) {
    std::string target = cls ? cls->name() : std::string("nil");
    if (cls && cls->isMetaclass()) {
        target += " (metaclass)";
    }
    journal_.write("hook " + target + " " + selector);
    real_.hookMessageEx(cls, selector, replacement, original);
}

void RecordingNotificationCenter::addObserver(void* observer,
                                              platform::NotificationCallback callback,
                                              const std::string& name, const void* object,
                                              platform::SuspensionBehavior suspensionBehavior) {
    journal_.write("addObserver " + name + (observer ? " observer" : " no observer") +
                   (object ? " object " : " no object ") +
                   std::to_string(static_cast<int>(suspensionBehavior)));
    registrations_.push_back({observer, callback, name});
}

bool RecordingNotificationCenter::post(const std::string& name) {
    bool found = false;
    for (const Registration& registration : std::vector<Registration>(registrations_)) {
        if (registration.name == name) {
            found = true;
            registration.callback(*this, registration.observer, name, nullptr, nullptr);
        }
    }
    return found;
}

}  // namespace velmoranth::tests
