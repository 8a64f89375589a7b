// Decorators of the services that reach files: file manager, property lists, bundles, catalogs,
// images, sounds, and of the small ones of the C library. Private to this folder.
#pragma once

#include "platform/platform.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace velmoranth::record {

class RecordedFileManager final : public platform::FileManager {
  public:
    explicit RecordedFileManager(platform::FileManager& real) : real_(real) {}

    [[nodiscard]] bool fileExistsAtPath(const std::string& path) override;
    [[nodiscard]] platform::FileExistence fileExistsAtPathIsDirectory(
        const std::string& path) override;
    platform::Failure setPosixPermissionsOfItemAtPath(unsigned mode,
                                                      const std::string& path) override;
    platform::Failure copyItemAtPathToPath(const std::string& source,
                                           const std::string& destination) override;
    platform::Failure moveItemAtPathToPath(const std::string& source,
                                           const std::string& destination) override;
    platform::Failure removeItemAtPath(const std::string& path) override;
    bool createFileAtPathContents(const std::string& path, const platform::Data& contents) override;
    platform::Failure createDirectoryAtPathWithIntermediateDirectories(
        const std::string& path) override;
    bool writeToFileAtomically(const platform::Data& contents, const std::string& path) override;
    [[nodiscard]] std::optional<platform::Data> dataWithContentsOfFile(
        const std::string& path) override;

  private:
    platform::FileManager& real_;
};

class RecordedPropertyLists final : public platform::PropertyLists {
  public:
    RecordedPropertyLists(platform::PropertyLists& real, platform::FileManager& files)
        : real_(real), files_(files) {}

    [[nodiscard]] std::optional<platform::Dictionary> dictionaryWithContentsOfFile(
        const std::string& path) override;
    [[nodiscard]] std::optional<platform::PrintableDictionary>
    printableDictionaryWithContentsOfFile(const std::string& path) override;

  private:
    platform::PropertyLists& real_;
    platform::FileManager& files_;
};

class RecordedBundles final : public platform::Bundles {
  public:
    explicit RecordedBundles(platform::Bundles& real) : real_(real) {}

    [[nodiscard]] platform::BundleRef bundleWithPath(const std::string& path) override;
    bool load(const platform::BundleRef& bundle) override;

  private:
    platform::Bundles& real_;
};

class RecordedCatalogClass final : public platform::CatalogClass {
  public:
    explicit RecordedCatalogClass(platform::CatalogClass& real) : real_(real) {}

    [[nodiscard]] platform::OpenedCatalog initWithURL(const platform::ClassRef& cls,
                                                      const std::string& path) override;
    [[nodiscard]] platform::CUICatalogRef defaultUICatalogForBundle(
        const platform::ClassRef& cls, const platform::BundleRef& bundle) override;
    [[nodiscard]] platform::OpenedCatalog initWithNameFromBundle(
        const platform::ClassRef& cls, const std::string& name,
        const platform::BundleRef& bundle) override;

  private:
    platform::CatalogClass& real_;
};

class RecordedImages final : public platform::Images {
  public:
    RecordedImages(platform::Images& real, platform::FileManager& files)
        : real_(real), files_(files) {}

    [[nodiscard]] platform::ImageRef imageWithContentsOfFile(const std::string& path) override;
    [[nodiscard]] platform::ImageRef imageWithCGImage(
        const platform::BitmapImageRef& bitmap) override;
    void drawInRect(const platform::ImageRef& image, const platform::Rect& rect) override;
    [[nodiscard]] std::optional<platform::Data> pngRepresentation(
        const platform::ImageRef& image) override;
    platform::ImageRef applicationIconImageForBundleIdentifierFormatScale(
        const platform::NullableString& bundleIdentifier, int format, double scale) override;

  private:
    platform::Images& real_;
    platform::FileManager& files_;
};

class RecordedAudio final : public platform::Audio {
  public:
    RecordedAudio(platform::Audio& real, platform::FileManager& files)
        : real_(real), files_(files) {}

    [[nodiscard]] platform::AudioSessionRef sharedInstance() override;
    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithContentsOfURL(
        const std::string& path) override;
    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithData(
        const std::optional<platform::Data>& data) override;

  private:
    platform::Audio& real_;
    platform::FileManager& files_;
};

class RecordedLibSystem final : public platform::LibSystem {
  public:
    explicit RecordedLibSystem(platform::LibSystem& real) : real_(real) {}

    int setuid(unsigned id) override;
    int setgid(unsigned id) override;
    int chmod(const std::string& path, unsigned mode) override;
    int mkdir(const std::string& path, unsigned mode) override;
    [[nodiscard]] std::string machine() override;
    [[nodiscard]] std::string homeDirectory() override;
    void dispatchAfterOnMainQueue(std::int64_t nanoseconds,
                                  const std::function<void()>& block) override;

  private:
    platform::LibSystem& real_;
};

}  // namespace velmoranth::record
