// Decorators of the services around objects and the system: the runtime, the hooking library,
// notices, the version, dates, the log, the device, its screen and windows. Private to this folder.
#pragma once

#include "platform/platform.h"

#include "record/recorded_services.h"

#include <deque>
#include <mutex>
#include <string>

namespace velmoranth::record {

class RecordedRuntime final : public platform::ObjcRuntime {
  public:
    RecordedRuntime(platform::ObjcRuntime& real, const RecordMethod& method)
        : real_(real), method_(method) {}

    void registerClass(const platform::ClassDefinition& definition) override;
    [[nodiscard]] platform::ClassRef getClass(const std::string& name) override;
    [[nodiscard]] platform::ClassRef getMetaclass(const platform::ClassRef& cls) override;
    void sendMessage(const platform::ClassRef& cls, const platform::Selector& selector) override;
    bool addMethod(const platform::ClassRef& cls, const platform::Selector& selector,
                   const platform::Implementation& implementation,
                   const std::string& typeEncoding) override;
    [[nodiscard]] bool isKindOfClass(const platform::Object& object,
                                     const platform::ClassRef& cls) override;
    [[nodiscard]] platform::ObjectRef instanceVariable(platform::Object& object,
                                                       const std::string& name) override;
    [[nodiscard]] platform::ObjectRef valueForKey(platform::Object& object,
                                                  const std::string& key) override;

  private:
    platform::ObjcRuntime& real_;
    const RecordMethod& method_;
};

// Has the replacement and the platform's implementation take down their calls.
class RecordedSubstrate final : public platform::Substrate {
  public:
    RecordedSubstrate(platform::Substrate& real, const RecordMethod& method)
        : real_(real), method_(method) {}

    void hookMessageEx(const platform::ClassRef& cls, const platform::Selector& selector,
                       const platform::Implementation& replacement,
                       platform::Implementation* original) override;

  private:
    platform::Substrate& real_;
    const RecordMethod& method_;
};

class RecordedCoreFoundation final : public platform::CoreFoundation {
  public:
    explicit RecordedCoreFoundation(platform::CoreFoundation& real) : real_(real) {}

    [[nodiscard]] double versionNumber() override;
    [[nodiscard]] bool isSystemVersionAtLeast(int major, int minor, int patch) override;

  private:
    platform::CoreFoundation& real_;
};

class RecordedNotificationCenter final : public platform::DarwinNotificationCenter {
  public:
    explicit RecordedNotificationCenter(platform::DarwinNotificationCenter& real) : real_(real) {}

    void addObserver(void* observer, platform::NotificationCallback callback,
                     const std::string& name, const void* object,
                     platform::SuspensionBehavior suspensionBehavior) override;

  private:
    // Stands for the engine's observer at the real centre.
    struct Observer {
        RecordedNotificationCenter* center;
        void* observer;
        platform::NotificationCallback callback;
    };

    static void deliver(platform::DarwinNotificationCenter& center, void* observer,
                        const std::string& name, const void* object,
                        const platform::Dictionary* userInfo);

    platform::DarwinNotificationCenter& real_;
    std::mutex mutex_;
    std::deque<Observer> observers_;  // which stay where they are
};

class RecordedDates final : public platform::Dates {
  public:
    explicit RecordedDates(platform::Dates& real) : real_(real) {}

    [[nodiscard]] platform::Date date() override;
    [[nodiscard]] long dayFromDate(const platform::Date& date) override;
    [[nodiscard]] std::string stringFromDate(const platform::Date& date,
                                             const std::string& dateFormat) override;

  private:
    platform::Dates& real_;
};

class RecordedLog final : public platform::SystemLog {
  public:
    explicit RecordedLog(platform::SystemLog& real) : real_(real) {}

    void write(const std::string& line) override;

  private:
    platform::SystemLog& real_;
};

class RecordedDevice final : public platform::Device {
  public:
    explicit RecordedDevice(platform::Device& real) : real_(real) {}

    [[nodiscard]] bool respondsToUserInterfaceIdiom() override;
    [[nodiscard]] int userInterfaceIdiom() override;
    [[nodiscard]] int orientation() override;

  private:
    platform::Device& real_;
};

class RecordedScreen final : public platform::Screen {
  public:
    explicit RecordedScreen(platform::Screen& real) : real_(real) {}

    [[nodiscard]] double scale() override;
    [[nodiscard]] platform::Rect bounds() override;

  private:
    platform::Screen& real_;
};

class RecordedSpringBoard final : public platform::SpringBoard {
  public:
    explicit RecordedSpringBoard(platform::SpringBoard& real) : real_(real) {}

    [[nodiscard]] platform::SBIconControllerRef sharedInstance(
        const platform::ClassRef& iconController) override;

  private:
    platform::SpringBoard& real_;
};

class RecordedAlerts final : public platform::Alerts {
  public:
    explicit RecordedAlerts(platform::Alerts& real) : real_(real) {}

    [[nodiscard]] platform::AlertControllerRef alertControllerWithTitleMessagePreferredStyle(
        const platform::NullableString& title, const platform::NullableString& message,
        platform::AlertControllerStyle style) override;
    [[nodiscard]] platform::AlertActionRef actionWithTitleStyleHandler(
        const platform::NullableString& title, platform::AlertActionStyle style,
        const std::function<void()>& handler) override;

  private:
    platform::Alerts& real_;
};

class RecordedApplication final : public platform::Application {
  public:
    explicit RecordedApplication(platform::Application& real) : real_(real) {}

    [[nodiscard]] platform::WindowRef keyWindow() override;

  private:
    platform::Application& real_;
};

}  // namespace velmoranth::record
