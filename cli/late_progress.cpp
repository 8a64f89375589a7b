#include "cli/late_progress.h"

#include <cmath>

namespace velmoranth::cli {
namespace {

// "8 s", "2 min 5 s"; a part of a second counts as one.
std::string timeText(double time) {
    const auto seconds = static_cast<long>(std::ceil(time));
    const std::string rest = std::to_string(seconds % 60) + " s";
    return seconds < 60 ? rest : std::to_string(seconds / 60) + " min " + rest;
}

}  // namespace

double LateProgress::secondsPassed() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
}

void LateProgress::show(const std::string& what) {
    constexpr double kLate = 0.5;
    if (secondsPassed() >= kLate) {
        line_.show(shown(what));
    }
}

void LateProgress::show(std::size_t done, std::size_t all, std::string_view noun) {
    // More often is more than anyone reads, and a slow terminal would hold the work up.
    constexpr double kBetween = 0.05;
    const double now = secondsPassed();
    if (now - shownAt_ < kBetween) {
        return;
    }
    shownAt_ = now;
    constexpr std::size_t kWidth = 30;
    const std::size_t filled = all == 0 ? kWidth : done * kWidth / all;
    std::string text = "[" + std::string(filled, '#') + std::string(kWidth - filled, '-') + "] " +
                       std::to_string(done) + " of " + counted(all, noun);
    if (done > 0 && done < all) {
        text += ", " + timeText(now * static_cast<double>(all - done) / static_cast<double>(done)) +
                " left";
    }
    show(text);
}

}  // namespace velmoranth::cli
