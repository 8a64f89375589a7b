// Why a request shows what it shows: the request is sent to simulated devices, and what they have
// taken down is put in order. Nothing here knows a rule of the engine; where one would be needed,
// another device is asked: one without the theme that has won, one without any, one whose themes
// have changed.
#pragma once

#include "cli/drawing_steps.h"
#include "cli/throw_away_device.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"
#include "simulator/device.h"
#include "simulator/process/launcher.h"

#include "record/entry.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::cli {

// A file that was asked for.
struct AskedFile {
    record::EntryKind state = record::EntryKind::missing;  // found, missing or unreadable
    std::string path;                                      // on the device
    std::string theme;                                     // that it lies in; "" outside the themes
    std::string name;                                      // in the theme, or the whole path
    std::string answer;  // what was read, in words; "" when it was only looked for
    std::string reason;  // why it is unreadable, or missing where it seems to be there
    // The name in the theme that was asked for, where the platform has tried this one beside it.
    std::string askedAs = {};

    friend bool operator==(const AskedFile&, const AskedFile&) = default;
};

// What was done to the picture with a file of a theme.
struct Effect {
    std::string_view name;  // "mask", "overlay", "shadow", "list" for what it was drawn by
    AskedFile file;
};

// A setting behind what shows: with the other value something else does.
struct SwitchReason {
    std::string_view key;
    bool isOn = false;  // now
    // The theme's file that shows, or is looked for, with the other value.
    std::optional<AskedFile> file;
    std::optional<Effect> brings;  // the effect that the picture has with the other value alone
    std::optional<Effect> ends;    // the effect that it has now alone
};

// A file of a theme that no request of this kind opens, and the name under which one would.
struct NearMiss {
    std::string theme;
    std::string name;
    std::string wanted;
};

// A theme's file that shows where the device has the other system, which asks for other names.
struct OnOtherSystem {
    int major = 0;
    AskedFile file;
};

struct Explanation {
    simulator::Question question;
    // The replaced methods that were reached, in order, none twice.
    std::vector<std::string> methods;
    // Files of themes in the order in which they were first asked for, none twice.
    std::vector<AskedFile> files;
    std::optional<AskedFile> shown;   // the theme's file behind the picture or the sound
    std::optional<AskedFile> hidden;  // what would show if its theme were not active
    std::vector<Effect> effects;
    // Those that could not be made, since their files are there and give nothing.
    std::vector<Effect> brokenEffects;
    std::vector<Effect> unusedEffects;  // those that other pictures have
    std::optional<SwitchReason> reason;
    std::vector<DrawingStep> drawn;             // what was done to the picture
    std::vector<std::string> findings;          // lines about the list that it was drawn by
    std::optional<simulator::Picture> picture;  // what shows; nothing for nil
    std::optional<simulator::Picture> stock;    // what shows with nothing replaced
    bool isStock = false;                       // whether both are the same picture
    // Whether the same request, sent again, opens no file of a theme.
    bool isKept = false;
    // The other requests that what is kept answers then.
    std::vector<simulator::Question> later;
    // Whether the picture stays when the themes are taken away while the process runs.
    bool needsRespring = false;
    std::vector<NearMiss> nearMisses;
    // The theme that would show with its file if it were the first one, "" for none. Some files are
    // looked for in the first theme alone.
    std::string firstTheme;
    // Only where nothing else is known of why no theme's file shows.
    std::optional<OnOtherSystem> onOtherSystem;
    // The first name that is looked for and that no theme has, "" for none. Where a folder of that
    // name would be looked into, the name in it.
    std::string wanted;
    // Why the process ended before it answered; what it did until then is in the record.
    std::optional<desktop::Problem> failure;
    record::Record record;
};

struct Investigation {
    const DeviceOfRun& device;
    simulator::DeviceConfiguration configuration;
    platform::Dictionary settings;
};

// summary: a sentence without what the other system would show, and not which later requests are
// answered.
enum class Depth { summary, whole };

// A process that ends early is no problem here, but a part of the explanation.
[[nodiscard]] desktop::Result<Explanation> explain(const Investigation& investigation,
                                                   const simulator::Question& question,
                                                   Depth depth = Depth::whole);

// Whether a file of a theme is behind what shows: its picture or sound, or what was done with it.
[[nodiscard]] bool isThemed(const Explanation& explanation);
// Whether anything of the picture is to be seen.
[[nodiscard]] bool isVisible(const std::optional<simulator::Picture>& picture);
// Whether the request gives the icon of an app.
[[nodiscard]] bool isIcon(const simulator::Question& question);

// "image Foo of com.example.bundle".
[[nodiscard]] std::string requestOf(const simulator::Question& question);

// The whole of it for a person, the last line being the sentence that sums up.
[[nodiscard]] std::string textOf(const Explanation& explanation);
[[nodiscard]] std::string summaryOf(const Explanation& explanation);
// One object, as docs/themes/explain.md describes it.
[[nodiscard]] std::string jsonOf(const Explanation& explanation);
[[nodiscard]] std::string jsonOf(const NearMiss& miss);
// Of a file that is a link which leads nowhere.
[[nodiscard]] std::string jsonOfDeadLink(const std::string& theme, const std::string& name);

// The last file of a theme that was read for a picture or a sound; those of the effects are left
// out.
[[nodiscard]] std::optional<AskedFile> lastRead(const record::Record& record,
                                                const std::vector<Effect>& effects);

// A process without a screen that has the question's classes, recorded or with nothing replaced.
[[nodiscard]] desktop::Result<std::unique_ptr<simulator::RunningScreen>> startProcess(
    const Investigation& investigation, const simulator::Question& question, bool withEngine);

// The answer of a process of its own.
[[nodiscard]] desktop::Result<simulator::Answer> askOnce(const Investigation& investigation,
                                                         const simulator::Question& question,
                                                         bool withEngine = true);

// What was done to a picture: the files that mask, overlay and shadow of this device are made of,
// by asking for these alone, as far as the record has read them too.
struct Effects {
    std::vector<Effect> made;
    std::vector<Effect> broken;  // their files give nothing
    std::vector<Effect> unused;  // could be made, and are not made of this picture
};

[[nodiscard]] Effects effectsOf(const Investigation& investigation,
                                const simulator::Question& question, const record::Record& record);

// Whether a file was read, not only looked for.
[[nodiscard]] bool isRead(const AskedFile& file);

// The replaced methods that a record says were reached, in order, none twice.
[[nodiscard]] std::vector<std::string> methodsOf(const record::Record& record);

// The files of themes that a record asks for, in order, none twice. The names for another screen
// that are tried on the way to one that is there are left out.
[[nodiscard]] std::vector<AskedFile> askedFiles(const record::Record& record);
// With those names.
[[nodiscard]] std::vector<AskedFile> triedFiles(const record::Record& record);

}  // namespace velmoranth::cli
