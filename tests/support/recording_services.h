// Services that write every call into the journal and pass it on to the service they wrap.
#pragma once

#include "desktop/dates/dates.h"
#include "platform/platform.h"
#include "tests/support/journal.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::tests {

class RecordingFileManager final : public platform::FileManager {
  public:
    RecordingFileManager(Journal& journal, platform::FileManager& real)
        : journal_(journal), real_(real) {}

    bool fileExistsAtPath(const std::string& path) override;
    platform::FileExistence fileExistsAtPathIsDirectory(const std::string& path) override;
    platform::Failure setPosixPermissionsOfItemAtPath(unsigned mode,
                                                      const std::string& path) override;
    platform::Failure copyItemAtPathToPath(const std::string& source,
                                           const std::string& destination) override;
    platform::Failure moveItemAtPathToPath(const std::string& source,
                                           const std::string& destination) override;
    platform::Failure createDirectoryAtPathWithIntermediateDirectories(
        const std::string& path) override;
    bool createFileAtPathContents(const std::string& path, const platform::Data& contents) override;
    bool writeToFileAtomically(const platform::Data& contents, const std::string& path) override;
    platform::Failure removeItemAtPath(const std::string& path) override;
    std::optional<platform::Data> dataWithContentsOfFile(const std::string& path) override;

    // So many of the next atomic writes fail without touching anything.
    int failingWrites = 0;
    // Runs with the path when one of those fails.
    std::function<void(const std::string& path)> whenWriteFails;
    // What the next move reports instead of being made.
    std::optional<platform::Error> nextMoveFailure;
    // The next move reports success without being made.
    bool nextMoveSucceeds = false;

  private:
    Journal& journal_;
    platform::FileManager& real_;
};

// Nil and false until a test brings the service that answers.
class RecordingBundles final : public platform::Bundles {
  public:
    explicit RecordingBundles(Journal& journal) : journal_(journal) {}

    platform::BundleRef bundleWithPath(const std::string& path) override;
    bool load(const platform::BundleRef& bundle) override;

    platform::Bundles* real = nullptr;  // not owned

  private:
    Journal& journal_;
};

// No catalog until a test brings the service that answers.
class RecordingCatalogClass final : public platform::CatalogClass {
  public:
    explicit RecordingCatalogClass(Journal& journal) : journal_(journal) {}

    platform::OpenedCatalog initWithURL(const platform::ClassRef& cls,
                                        const std::string& path) override;
    platform::CUICatalogRef defaultUICatalogForBundle(const platform::ClassRef& cls,
                                                      const platform::BundleRef& bundle) override;
    platform::OpenedCatalog initWithNameFromBundle(const platform::ClassRef& cls,
                                                   const std::string& name,
                                                   const platform::BundleRef& bundle) override;

    platform::CatalogClass* real = nullptr;  // not owned

  private:
    Journal& journal_;
};

class RecordingPropertyLists final : public platform::PropertyLists {
  public:
    RecordingPropertyLists(Journal& journal, platform::PropertyLists& real)
        : journal_(journal), real_(real) {}

    std::optional<platform::Dictionary> dictionaryWithContentsOfFile(
        const std::string& path) override;
    std::optional<platform::PrintableDictionary> printableDictionaryWithContentsOfFile(
        const std::string& path) override;

  private:
    Journal& journal_;
    platform::PropertyLists& real_;
};

class RecordingLog final : public platform::SystemLog {
  public:
    explicit RecordingLog(Journal& journal) : journal_(journal) {}

    void write(const std::string& line) override { journal_.write("log: " + line); }

  private:
    Journal& journal_;
};

// Ids are recorded; modes and folders are passed on.
class RecordingLibSystem final : public platform::LibSystem {
  public:
    RecordingLibSystem(Journal& journal, platform::LibSystem& real)
        : journal_(journal), real_(real) {}

    int setuid(unsigned id) override;
    int setgid(unsigned id) override;
    int chmod(const std::string& path, unsigned mode) override;
    int mkdir(const std::string& path, unsigned mode) override;
    std::string machine() override;
    std::string homeDirectory() override;
    void dispatchAfterOnMainQueue(std::int64_t nanoseconds,
                                  const std::function<void()>& block) override;

  private:
    Journal& journal_;
    platform::LibSystem& real_;
};

class RecordingCoreGraphics final : public platform::CoreGraphics {
  public:
    RecordingCoreGraphics(Journal& journal, platform::CoreGraphics& real)
        : journal_(journal), real_(real) {}

    platform::BitmapImageRef imageMaskCreate(std::size_t width, std::size_t height,
                                             std::size_t bitsPerComponent, std::size_t bitsPerPixel,
                                             std::size_t bytesPerRow,
                                             const platform::DataProviderRef& provider,
                                             bool shouldInterpolate) override;
    platform::BitmapImageRef imageCreateWithMask(const platform::BitmapImageRef& image,
                                                 const platform::BitmapImageRef& mask) override;
    platform::GraphicsContextRef bitmapContextCreate(std::int64_t width, std::int64_t height,
                                                     std::size_t bitsPerComponent,
                                                     std::size_t bytesPerRow,
                                                     platform::ColorSpace space,
                                                     std::uint32_t bitmapInfo) override;
    platform::GradientRef gradientCreateWithColorComponents(
        platform::ColorSpace space, const std::vector<double>& components,
        const std::optional<std::vector<double>>& locations) override;

  private:
    Journal& journal_;
    platform::CoreGraphics& real_;
};

class RecordingImages final : public platform::Images {
  public:
    RecordingImages(Journal& journal, platform::Images& real) : journal_(journal), real_(real) {}

    platform::ImageRef imageWithContentsOfFile(const std::string& path) override;
    platform::ImageRef imageWithCGImage(const platform::BitmapImageRef& bitmap) override;
    void drawInRect(const platform::ImageRef& image, const platform::Rect& rect) override;
    std::optional<platform::Data> pngRepresentation(const platform::ImageRef& image) override;
    platform::ImageRef applicationIconImageForBundleIdentifierFormatScale(
        const platform::NullableString& bundleIdentifier, int format, double scale) override;

  private:
    Journal& journal_;
    platform::Images& real_;
};

class RecordingImageContexts final : public platform::ImageContexts {
  public:
    RecordingImageContexts(Journal& journal, platform::ImageContexts& real)
        : journal_(journal), real_(real) {}

    void beginImageContextWithOptions(platform::Size size, bool opaque, double scale) override;
    platform::GraphicsContextRef getCurrentContext() override;
    platform::ImageRef getImageFromCurrentImageContext() override;
    void endImageContext() override;

  private:
    Journal& journal_;
    platform::ImageContexts& real_;
};

class RecordingFonts final : public platform::Fonts {
  public:
    RecordingFonts(Journal& journal, platform::Fonts& real) : journal_(journal), real_(real) {}

    platform::FontRef fontWithNameSize(const platform::NullableString& name, double size) override;

  private:
    Journal& journal_;
    platform::Fonts& real_;
};

// The clock is the test's: it shows `now` until it is set otherwise.
class RecordingDates final : public platform::Dates {
  public:
    explicit RecordingDates(Journal& journal) : journal_(journal) {}

    // 2020-02-05 09:41:00 UTC, a Wednesday.
    platform::Date now{602588460};
    std::string locale = "en_US";

    platform::Date date() override;
    long dayFromDate(const platform::Date& date) override;
    std::string stringFromDate(const platform::Date& date, const std::string& dateFormat) override;

  private:
    [[nodiscard]] desktop::DesktopDates real() const;

    Journal& journal_;
};

class RecordingViews final : public platform::Views {
  public:
    RecordingViews(Journal& journal, platform::Views& real) : journal_(journal), real_(real) {}

    platform::ViewRef viewWithFrame(const platform::Rect& frame) override;
    platform::LabelRef labelWithFrame(const platform::Rect& frame) override;
    platform::ImageViewRef imageView() override;
    platform::ImageViewRef imageViewWithImage(const platform::ImageRef& image) override;
    platform::ImageViewRef imageViewWithFrame(const platform::Rect& frame) override;
    platform::GestureRecognizerRef tapGestureRecognizer(platform::Object& target,
                                                        const platform::Selector& action) override;
    void animateWithDurationAnimationsCompletion(
        double duration, const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) override;
    void
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double duration, double delay, double damping, double initialVelocity, unsigned options,
        const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) override;

  private:
    Journal& journal_;
    platform::Views& real_;
};

class RecordingObjcRuntime final : public platform::ObjcRuntime {
  public:
    RecordingObjcRuntime(Journal& journal, platform::ObjcRuntime& real)
        : journal_(journal), real_(real) {}

    void registerClass(const platform::ClassDefinition& definition) override;
    platform::ClassRef getClass(const std::string& name) override;
    platform::ClassRef getMetaclass(const platform::ClassRef& cls) override;
    void sendMessage(const platform::ClassRef& cls, const platform::Selector& selector) override;
    bool addMethod(const platform::ClassRef& cls, const platform::Selector& selector,
                   const platform::Implementation& implementation,
                   const std::string& typeEncoding) override;
    bool isKindOfClass(const platform::Object& object, const platform::ClassRef& cls) override;
    platform::ObjectRef instanceVariable(platform::Object& object,
                                         const std::string& name) override;
    platform::ObjectRef valueForKey(platform::Object& object, const std::string& key) override;

  private:
    Journal& journal_;
    platform::ObjcRuntime& real_;
};

class RecordingSubstrate final : public platform::Substrate {
  public:
    RecordingSubstrate(Journal& journal, platform::Substrate& real)
        : journal_(journal), real_(real) {}

    void hookMessageEx(const platform::ClassRef& cls, const platform::Selector& selector,
                       const platform::Implementation& replacement,
                       platform::Implementation* original) override;

  private:
    Journal& journal_;
    platform::Substrate& real_;
};

// Keeps the registrations; a test posts.
class RecordingNotificationCenter final : public platform::DarwinNotificationCenter {
  public:
    explicit RecordingNotificationCenter(Journal& journal) : journal_(journal) {}

    void addObserver(void* observer, platform::NotificationCallback callback,
                     const std::string& name, const void* object,
                     platform::SuspensionBehavior suspensionBehavior) override;

    // Runs the callbacks registered for the name, in order; false when there is none.
    bool post(const std::string& name);

  private:
    struct Registration {
        void* observer;
        platform::NotificationCallback callback;
        std::string name;
    };

    Journal& journal_;
    std::vector<Registration> registrations_;
};

}  // namespace velmoranth::tests
