// The shared audio session: remembers its category, and refuses what is none as the platform does.
#pragma once

#include "platform/av_foundation.h"

#include <string>
#include <vector>

namespace velmoranth::desktop {

class RecordedAudioSession final : public platform::AudioSession {
  public:
    // False, and nothing changes, for a name that is no category of iOS 12 and 13.
    bool setCategory(const std::string& category) override;

    // The one in force; the platform's default until one is set.
    [[nodiscard]] const std::string& category() const { return category_; }

    // Every category asked for, refused ones included, in order.
    [[nodiscard]] const std::vector<std::string>& requests() const { return requests_; }

  private:
    std::string category_ = "AVAudioSessionCategorySoloAmbient";
    std::vector<std::string> requests_;
};

}  // namespace velmoranth::desktop
