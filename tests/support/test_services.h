// Services that answer as a test wants, below the recorder.
#pragma once

#include "desktop/dates/dates.h"
#include "platform/platform.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::tests {

// Operations fail when a test says so; all others are the device's.
class FailingFileManager final : public platform::FileManager {
  public:
    explicit FailingFileManager(platform::FileManager& real) : real_(real) {}

    bool fileExistsAtPath(const std::string& path) override { return real_.fileExistsAtPath(path); }

    platform::FileExistence fileExistsAtPathIsDirectory(const std::string& path) override {
        return real_.fileExistsAtPathIsDirectory(path);
    }

    platform::Failure setPosixPermissionsOfItemAtPath(unsigned mode,
                                                      const std::string& path) override {
        return real_.setPosixPermissionsOfItemAtPath(mode, path);
    }

    platform::Failure copyItemAtPathToPath(const std::string& source,
                                           const std::string& destination) override {
        return real_.copyItemAtPathToPath(source, destination);
    }

    platform::Failure moveItemAtPathToPath(const std::string& source,
                                           const std::string& destination) override;

    platform::Failure createDirectoryAtPathWithIntermediateDirectories(
        const std::string& path) override {
        return real_.createDirectoryAtPathWithIntermediateDirectories(path);
    }

    bool createFileAtPathContents(const std::string& path,
                                  const platform::Data& contents) override {
        return real_.createFileAtPathContents(path, contents);
    }

    bool writeToFileAtomically(const platform::Data& contents, const std::string& path) override;

    platform::Failure removeItemAtPath(const std::string& path) override {
        return real_.removeItemAtPath(path);
    }

    std::optional<platform::Data> dataWithContentsOfFile(const std::string& path) override {
        return real_.dataWithContentsOfFile(path);
    }

    // So many of the next atomic writes fail without touching anything.
    int failingWrites = 0;
    // Runs with the path when one of those fails.
    std::function<void(const std::string& path)> whenWriteFails;
    // What the next move reports instead of being made.
    std::optional<platform::Error> nextMoveFailure;
    // The next move reports success without being made.
    bool nextMoveSucceeds = false;

  private:
    platform::FileManager& real_;
};

// Nil and false until a test brings the service that answers.
struct TestBundles final : platform::Bundles {
    platform::BundleRef bundleWithPath(const std::string& path) override {
        return real == nullptr ? nullptr : real->bundleWithPath(path);
    }

    bool load(const platform::BundleRef& bundle) override {
        return real != nullptr && real->load(bundle);
    }

    platform::Bundles* real = nullptr;  // not owned
};

// No catalog until a test brings the service that answers.
struct TestCatalogClass final : platform::CatalogClass {
    platform::OpenedCatalog initWithURL(const platform::ClassRef& cls,
                                        const std::string& path) override {
        return real == nullptr ? platform::OpenedCatalog{} : real->initWithURL(cls, path);
    }

    platform::CUICatalogRef defaultUICatalogForBundle(const platform::ClassRef& cls,
                                                      const platform::BundleRef& bundle) override {
        return real == nullptr ? nullptr : real->defaultUICatalogForBundle(cls, bundle);
    }

    platform::OpenedCatalog initWithNameFromBundle(const platform::ClassRef& cls,
                                                   const std::string& name,
                                                   const platform::BundleRef& bundle) override {
        return real == nullptr ? platform::OpenedCatalog{}
                               : real->initWithNameFromBundle(cls, name, bundle);
    }

    platform::CatalogClass* real = nullptr;  // not owned
};

// The log is where the journal is.
struct DroppedLog final : platform::SystemLog {
    void write(const std::string& /*line*/) override {}
};

// The clock is the test's: it shows `now` until it is set otherwise.
class TestDates final : public platform::Dates {
  public:
    // 2020-02-05 09:41:00 UTC, a Wednesday.
    platform::Date now{602588460};
    std::string locale = "en_US";

    platform::Date date() override { return now; }

    long dayFromDate(const platform::Date& date) override { return real().dayFromDate(date); }

    std::string stringFromDate(const platform::Date& date, const std::string& dateFormat) override {
        return real().stringFromDate(date, dateFormat);
    }

  private:
    [[nodiscard]] desktop::DesktopDates real() const {
        return desktop::DesktopDates({.locale = locale, .date = now, .timeZone = "UTC"});
    }
};

// Keeps the registrations; a test posts.
class TestNotificationCenter final : public platform::DarwinNotificationCenter {
  public:
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

    std::vector<Registration> registrations_;
};

}  // namespace velmoranth::tests
