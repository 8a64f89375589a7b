// Which requests a file of a theme could be meant for, by its name alone.
#pragma once

#include "cli/sound_events.h"
#include "simulator/screens/question_rows.h"

#include <string>
#include <vector>

namespace velmoranth::cli {

// Those that the device sends by itself: every one without an argument, and those for something
// that it has and whose name is the file's or near it. `name` is the file's in its theme.
[[nodiscard]] std::vector<simulator::Question> ownRequestsFor(const std::string& name);

// Those with the file's name as it stands, or without what a file adds to it, where the device has
// nothing of that name: apps that people install may send them.
[[nodiscard]] std::vector<simulator::Question> otherRequestsFor(const std::string& name);

// The request for the icon of an app that such a file may be named for.
[[nodiscard]] simulator::Question iconRequestFor(const std::string& name);

// That for a sound of the interface or of the home screen.
[[nodiscard]] simulator::Question requestOf(const SoundName& sound);

// Every request that a device sends by itself but those for the icons of apps.
[[nodiscard]] std::vector<simulator::Question> deviceRequests();

// Those: the icon of each app that the device has, for each place that shows one.
[[nodiscard]] std::vector<simulator::Question> iconRequests();

}  // namespace velmoranth::cli
