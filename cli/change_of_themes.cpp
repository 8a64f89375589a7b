#include "cli/change_of_themes.h"

#include "cli/added_theme.h"
#include "cli/notifications.h"
#include "desktop/notifications/notification_center.h"
#include "simulator/screens/question_rows.h"

#include <algorithm>
#include <chrono>
#include <string>

namespace velmoranth::cli {

using simulator::Question;
using simulator::RunningScreen;

namespace {

bool reads(const record::Record& record, const std::string& theme, const std::string& name) {
    return std::ranges::any_of(askedFiles(record), [&](const AskedFile& file) {
        return file.theme == theme && file.name == name && isRead(file);
    });
}

// A theme in the place of all others, with a file of that name and the effects that there are: only
// the one file is another.
class ChangedTheme {
  public:
    ChangedTheme(const Investigation& investigation, const Explanation& explanation)
        : investigation_(investigation), theme_(investigation) {
        static_cast<void>(theme_.copy(explanation.shown->path, explanation.shown->name));
        for (const Effect& effect : explanation.effects) {
            static_cast<void>(theme_.copy(effect.file.path, effect.file.name));
        }
    }

    [[nodiscard]] const std::string& name() const { return theme_.name(); }

    [[nodiscard]] bool takeTheirPlace() const { return theme_.useAlone(investigation_.settings); }

  private:
    const Investigation& investigation_;
    AddedTheme theme_;
};

// The notices of the settings panel, one after the other.
template <typename Then>
void tellProcesses(const desktop::DeviceRoot& root, const Then& then) {
    for (const NotificationRow& row : kNotifications) {
        if (row.shortName == "prefs" || row.shortName == "themechanged") {
            static_cast<void>(desktop::postToProcesses(root, std::string(row.name)));
            then();
        }
    }
}

// A home screen with the engine; nothing where it does not show the file.
std::unique_ptr<RunningScreen> screenThatReads(const Investigation& investigation,
                                               const AskedFile& file) {
    simulator::ScreenRequest request;
    request.device = investigation.configuration;
    request.deviceFiles = investigation.device.root->files();
    request.isRecorded = true;
    auto screen = RunningScreen::start(request);
    if (!screen) {
        return nullptr;
    }
    const auto picture = (*screen)->render();
    return picture && reads(picture->record, file.theme, file.name) ? std::move(*screen) : nullptr;
}

}  // namespace

bool needsRespring(const Investigation& investigation, const Explanation& explanation,
                   RunningScreen& process, Depth depth) {
    const AskedFile& file = *explanation.shown;
    const Question& question = explanation.question;
    const bool mayBeOnScreen =
        simulator::questionRowNamed(question.word)->process == simulator::ProcessKind::homeScreen;
    const auto screen =
        mayBeOnScreen && depth == Depth::whole ? screenThatReads(investigation, file) : nullptr;
    const ChangedTheme changed(investigation, explanation);
    if (!changed.takeTheirPlace()) {
        return false;
    }
    const desktop::DeviceRoot& root = *investigation.device.root;
    bool isRead = false;
    if (screen != nullptr) {
        tellProcesses(root, [&] {
            constexpr std::chrono::seconds kLongest{2};
            const auto picture = screen->nextPicture(kLongest);
            isRead = isRead || (picture && reads(picture->record, changed.name(), file.name));
        });
        return !isRead;
    }
    tellProcesses(root, [&] {
        const auto answer = process.ask(question);
        isRead = isRead || (answer && reads(answer->record, changed.name(), file.name));
    });
    return !isRead;
}

}  // namespace velmoranth::cli
