#include "tests/support/test_services.h"

#include <utility>

namespace velmoranth::tests {

platform::Failure FailingFileManager::moveItemAtPathToPath(const std::string& source,
                                                           const std::string& destination) {
    if (nextMoveFailure) {
        return std::exchange(nextMoveFailure, std::nullopt);
    }
    if (std::exchange(nextMoveSucceeds, false)) {
        return {};
    }
    return real_.moveItemAtPathToPath(source, destination);
}

bool FailingFileManager::writeToFileAtomically(const platform::Data& contents,
                                               const std::string& path) {
    if (failingWrites == 0) {
        return real_.writeToFileAtomically(contents, path);
    }
    --failingWrites;
    if (whenWriteFails) {
        whenWriteFails(path);
    }
    return false;
}

void TestNotificationCenter::addObserver(void* observer, platform::NotificationCallback callback,
                                         const std::string& name, const void* /*object*/,
                                         platform::SuspensionBehavior /*suspensionBehavior*/) {
    registrations_.push_back({observer, callback, name});
}

bool TestNotificationCenter::post(const std::string& name) {
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
