#include "cli/sound_watch.h"

#include <utility>

namespace velmoranth::cli {
namespace {

class WatchedPlayer final : public platform::AudioPlayer {
  public:
    WatchedPlayer(platform::AudioPlayerRef player, std::shared_ptr<PlayerRequest> request)
        : player_(std::move(player)), request_(std::move(request)) {}

    [[nodiscard]] std::string className() const override { return player_->className(); }

    void setVolume(float volume) override {
        request_->volume = volume;
        player_->setVolume(volume);
    }

    void setDelegate(platform::Object& delegate) override { player_->setDelegate(delegate); }

    bool prepareToPlay() override { return player_->prepareToPlay(); }

    bool play() override {
        request_->isStarted = player_->play();
        return request_->isStarted;
    }

  private:
    platform::AudioPlayerRef player_;
    std::shared_ptr<PlayerRequest> request_;
};

}  // namespace

platform::AudioPlayerRef WatchedAudio::audioPlayerWithContentsOfURL(const std::string& path) {
    return noted(audio_.audioPlayerWithContentsOfURL(path), path);
}

platform::AudioPlayerRef WatchedAudio::audioPlayerWithData(
    const std::optional<platform::Data>& data) {
    return noted(audio_.audioPlayerWithData(data), {});
}

platform::AudioPlayerRef WatchedAudio::noted(const platform::AudioPlayerRef& player,
                                             std::string path) {
    last_ = std::make_shared<PlayerRequest>();
    last_->path = std::move(path);
    last_->isMade = player != nullptr;
    if (player == nullptr) {
        last_->problem = audio_.lastProblem();
        return nullptr;
    }
    return std::make_shared<WatchedPlayer>(player, last_);
}

}  // namespace velmoranth::cli
