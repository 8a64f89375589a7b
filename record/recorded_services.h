// The platform of a process that is recorded: every service takes down what it is asked and passes
// it on. Handles are never wrapped; what views, layers and sounds are told they tell the recorder
// themselves (recorder.h).
#pragma once

#include "platform/platform.h"

#include "record/entry.h"

#include <functional>
#include <memory>
#include <string>

namespace velmoranth::record {

// The method with its calls taken down (Methods<…>::recorded): who knows the signatures of the
// replaced methods brings it.
using RecordMethod = std::function<platform::Implementation(
    const platform::Implementation& method, EntryKind kind, const std::string& message)>;

class RecordedServices {
  public:
    // The services of `real` must outlive this object; this object every use of its platform, the
    // callbacks that were handed to it included.
    RecordedServices(const platform::Platform& real, RecordMethod method);
    ~RecordedServices();
    RecordedServices(const RecordedServices&) = delete;
    RecordedServices& operator=(const RecordedServices&) = delete;

    [[nodiscard]] const platform::Platform& platform() const;

  private:
    struct Services;
    std::unique_ptr<Services> services_;
};

}  // namespace velmoranth::record
