#include "device/equality/transcript.h"

#include "device/equality/phone_files.h"
#include "record/operations.h"
#include "record/words.h"
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>
#include <utility>

namespace velmoranth::equality {
namespace {

constexpr int kDiffers = 1;
constexpr int kWrongUse = 2;
constexpr const char* kEnded = "ended with status ";
constexpr const char* kUse =
    "NAME | --list | --write FOLDER [NAME...] | --compare FOLDER [NAME...]\n";

// An object's address is another one in every process: all are the same word.
std::string withoutAddresses(const std::string& line) {
    std::string text;
    for (std::size_t i = 0; i < line.size();) {
        const bool isAddress =
            line.compare(i, 2, "0x") == 0 && (i == 0 || line[i - 1] == ' ' || line[i - 1] == ':');
        const std::size_t end =
            isAddress ? std::min(line.find_first_not_of("0123456789abcdef", i + 2), line.size())
                      : i + 1;
        text += isAddress ? "ADDRESS" : line.substr(i, 1);
        i = end;
    }
    return text;
}

// A line of its own, whatever it holds.
std::string onOneLine(const std::string& text) {
    std::string line;
    for (const char character : text) {
        line += character == '\n' ? std::string("\\n") : std::string(1, character);
    }
    return line;
}

std::string shownStep(const Step& step) {
    std::string line = step.message;
    for (const Text text : step.texts) {
        line += text == nullptr ? " -" : std::string(" \"") + text + "\"";
    }
    line += step.given == Given::none ? " nil " : " ";
    return line + std::to_string(step.number);
}

std::string carryOut(const Step& step, Side& side, std::vector<std::string>& listed) {
    const std::string message = step.message;
    if (message == "post") {
        side.post(step.texts[0]);
    } else if (message == "wait") {
        side.wait(step.number);
    } else if (message == "list") {
        listed = listFolder(side.root(), step.texts[0]);
    } else if (!changeFiles(step, side.root())) {
        return side.send(step);
    }
    return "";
}

void appendLine(std::string& transcript, const std::string& line) {
    transcript += onOneLine(withoutAddresses(line)) + "\n";
}

// The interfaces of the platform whose operations both sides take down, but for those below.
constexpr std::string_view kComparedInterfaces[] = {
    "Alerts",
    "AlertController",
    "Application",
    "Audio",
    "AudioPlayer",
    "AudioSession",
    "Bundles",
    "CoreGraphics",
    "DarwinNotificationCenter",
    "Device",
    "FileManager",
    "Fonts",
    "GraphicsContext",
    "ImageContexts",
    "ImageView",
    "Images",
    "Label",
    "Layer",
    "LibSystem",
    "PropertyLists",
    "Screen",
    "Substrate",
    "View",
    "ViewController",
    "Views",
};

// What the desktop does not take down of views, as nothing comes of it, and what the phone's side
// does not of the system.
constexpr std::string_view kNotCompared[] = {
    record::messageOf("Images", "applicationIconImageForBundleIdentifierFormatScale"),
    record::messageOf("ImageView", "image"),
    record::messageOf("Layer", "bounds"),
    record::messageOf("LibSystem", "dispatchAfterOnMainQueue"),
    record::messageOf("LibSystem", "homeDirectory"),
    record::messageOf("LibSystem", "machine"),
    record::messageOf("View", "bounds"),
    record::messageOf("View", "frame"),
    record::messageOf("View", "layer"),
    record::messageOf("View", "subviews"),
    record::messageOf("View", "tag"),
    record::messageOf("View", "viewWithTag"),
    record::messageOf("ViewController", "view"),
};

bool isTakenDownByBoth(std::string_view message) {
    return std::ranges::find(kNotCompared, message) == std::end(kNotCompared) &&
           std::ranges::any_of(record::operations(), [&](const record::Operation& operation) {
               return operation.message == message &&
                      std::ranges::find(kComparedInterfaces, operation.interface) !=
                          std::end(kComparedInterfaces);
           });
}

// What the phone's library does not ask for nothing: of an image, a context, a mask or a bundle
// that is not there nothing is made, nothing is drawn into it, and it is not loaded.
bool isOfNothing(const record::Entry& entry) {
    struct Operand {
        std::string_view message;
        std::size_t place;
    };

    constexpr Operand kOperands[] = {
        {record::messageOf("Audio", "audioPlayerWithData"), 0},
        {record::messageOf("Bundles", "load"), 0},
        {record::messageOf("CoreGraphics", "imageCreateWithMask"), 0},
        {record::messageOf("CoreGraphics", "imageCreateWithMask"), 1},
        {record::messageOf("CoreGraphics", "imageMaskCreate"), 5},
        {record::messageOf("Images", "drawInRect"), 0},
        {record::messageOf("Images", "imageWithCGImage"), 0},
        {record::messageOf("Layer", "renderInContext"), 0},
    };
    return std::ranges::any_of(kOperands, [&](const Operand& operand) {
        return entry.message == operand.message &&
               entry.arguments.at(operand.place) == record::kNil;
    });
}

// The phone's library hands its blocks to the platform as they are.
bool isCompared(const record::Entry& entry) {
    using record::EntryKind;
    return entry.kind == EntryKind::log ||
           (entry.kind != EntryKind::callback && isTakenDownByBoth(entry.message) &&
            !isOfNothing(entry));
}

// Why a file gives nothing is told by the desktop's readers alone, and a written image's bytes are
// each encoder's own.
std::string shownEntry(record::Entry entry) {
    entry.depth = 0;
    entry.reason.clear();
    if (entry.kind == record::EntryKind::written) {
        std::erase_if(entry.arguments,
                      [](const std::string& argument) { return argument.ends_with(" bytes"); });
    }
    // Which classes there are is each side's own, and whether one may become another user.
    if (entry.message == record::messageOf("Substrate", "hookMessageEx")) {
        const std::string& last = entry.arguments.back();
        entry.arguments = {last.substr(last.find(' ') + 1, last.find(']') - last.find(' ') - 1)};
    }
    if (entry.message == record::messageOf("LibSystem", "setuid") ||
        entry.message == record::messageOf("LibSystem", "setgid")) {
        entry.answer.clear();
    }
    if (entry.message == record::messageOf("Images", "pngRepresentation") &&
        entry.answer.ends_with(" bytes")) {
        entry.answer = "bytes";
    }
    return record::lineOf(entry);
}

void appendEvents(std::string& transcript, Side& side) {
    for (const record::Entry& entry : side.takeRecord()) {
        if (isCompared(entry)) {
            appendLine(transcript, "    " + shownEntry(entry));
        }
    }
    for (const std::string& event : side.events()) {
        appendLine(transcript, "    " + event);
    }
}

std::string transcriptOf(const Scenario& scenario) {
    ::umask(022);
    const std::unique_ptr<Side> side = makeSide(scenario);
    layPhone(scenario, side->root());
    side->startRecording();
    std::string transcript = scenario.name + "\nload\n";
    side->load();
    appendEvents(transcript, *side);
    for (const Step& step : scenario.steps) {
        appendLine(transcript, shownStep(step));
        std::vector<std::string> listed;
        const std::string result = carryOut(step, *side, listed);
        appendEvents(transcript, *side);
        for (const std::string& line : listed) {
            appendLine(transcript, "    " + line);
        }
        if (!result.empty()) {
            appendLine(transcript, "    = " + result);
        }
    }
    return transcript;
}

// In a process of its own: what it wrote, or how it ended.
std::string transcriptApart(const Scenario& scenario) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        return "no pipe\n";
    }
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        const std::string text = transcriptOf(scenario);
        for (std::size_t written = 0; written < text.size();) {
            const ssize_t count = ::write(ends[1], text.data() + written, text.size() - written);
            if (count <= 0) {
                ::_exit(kDiffers);
            }
            written += static_cast<std::size_t>(count);
        }
        std::quick_exit(0);  // no destructors, but what is to be told at the end
    }
    ::close(ends[1]);
    std::string text;
    std::array<char, 4096> buffer;
    ssize_t count = 0;
    while ((count = ::read(ends[0], buffer.data(), buffer.size())) > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    ::close(ends[0]);
    int status = -1;
    ::waitpid(child, &status, 0);
    return status == 0 ? text : text + kEnded + std::to_string(status) + "\n";
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

// The step that the line belongs to.
std::string stepOf(const std::vector<std::string>& lines, std::size_t line) {
    while (line > 0 && lines[line].starts_with(' ')) {
        --line;
    }
    return lines[line];
}

// The lines that only one of them has, under the steps that they belong to; "" when equal.
std::string differenceOf(const std::vector<std::string>& wanted,
                         const std::vector<std::string>& given) {
    // How many lines the rests have in common, by the lines at which they begin.
    const std::size_t width = given.size() + 1;
    std::vector<unsigned> common((wanted.size() + 1) * width);
    for (std::size_t i = wanted.size(); i-- > 0;) {
        for (std::size_t j = given.size(); j-- > 0;) {
            common[i * width + j] = wanted[i] == given[j] ? common[(i + 1) * width + j + 1] + 1
                                                          : std::max(common[(i + 1) * width + j],
                                                                     common[i * width + j + 1]);
        }
    }
    std::string text;
    std::string told;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < wanted.size() || j < given.size()) {
        if (i < wanted.size() && j < given.size() && wanted[i] == given[j]) {
            ++i;
            ++j;
            continue;
        }
        const bool isMissing =
            j == given.size() ||
            (i < wanted.size() && common[(i + 1) * width + j] >= common[i * width + j + 1]);
        const std::string step = isMissing ? stepOf(wanted, i) : stepOf(given, j);
        text += step == told ? "" : "  " + step + "\n";
        told = step;
        text += isMissing ? "- " + wanted[i++] + "\n" : "+ " + given[j++] + "\n";
    }
    return text;
}

std::string fileIn(const std::string& folder, const Scenario& scenario) {
    return folder + "/" + scenario.name + ".txt";
}

std::optional<std::string> readText(const std::string& path) {
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        return std::nullopt;
    }
    std::string text;
    std::array<char, 4096> buffer;
    std::size_t count = 0;
    while ((count = std::fread(buffer.data(), 1, buffer.size(), file)) > 0) {
        text.append(buffer.data(), count);
    }
    std::fclose(file);
    return text;
}

bool writeTranscript(const std::string& folder, const Scenario& scenario) {
    ::mkdir(folder.c_str(), 0755);
    const std::string path = fileIn(folder, scenario);
    const std::string text = transcriptApart(scenario);
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        std::perror(path.c_str());
        return false;
    }
    const bool isWhole = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    // A side that comes to no end is no measure for the other.
    const bool hasEnded = text.find(kEnded) == std::string::npos;
    if (!hasEnded) {
        std::printf("%s", text.c_str());
    }
    return std::fclose(file) == 0 && isWhole && hasEnded;
}

bool compareTranscript(const std::string& folder, const Scenario& scenario) {
    const auto wanted = readText(fileIn(folder, scenario));
    if (!wanted) {
        std::printf("%s: there is nothing to compare with\n", scenario.name.c_str());
        return false;
    }
    const std::string difference =
        differenceOf(linesOf(*wanted), linesOf(transcriptApart(scenario)));
    if (!difference.empty()) {
        std::printf("%s: - is missing here, + is only here\n%s", scenario.name.c_str(),
                    difference.c_str());
    }
    return difference.empty();
}

int forEach(char** names, int count, const std::function<bool(const Scenario&)>& work) {
    std::vector<const Scenario*> chosen;
    for (int i = 0; i < count; ++i) {
        const Scenario* const scenario = scenarioNamed(names[i]);
        if (scenario == nullptr) {
            std::fprintf(stderr, "there is no scenario %s\n", names[i]);
            return kWrongUse;
        }
        chosen.push_back(scenario);
    }
    if (count == 0) {
        for (const Scenario& scenario : scenarios()) {
            chosen.push_back(&scenario);
        }
    }
    const auto failures = std::count_if(chosen.begin(), chosen.end(),
                                        [&](const Scenario* each) { return !work(*each); });
    if (failures != 0) {
        std::printf("%td of %zu scenarios failed\n", failures, chosen.size());
    }
    return failures == 0 ? 0 : kDiffers;
}

}  // namespace

int runProgram(int argumentCount, char** arguments) {
    const std::string word = argumentCount > 1 ? arguments[1] : "";
    if (word == "--list") {
        for (const Scenario& scenario : scenarios()) {
            std::puts(scenario.name.c_str());
        }
        return 0;
    }
    if (argumentCount > 2 && (word == "--write" || word == "--compare")) {
        const std::string folder = arguments[2];
        const auto work = word == "--write" ? writeTranscript : compareTranscript;
        return forEach(arguments + 3, argumentCount - 3,
                       [&](const Scenario& scenario) { return work(folder, scenario); });
    }
    if (argumentCount == 2 && !word.starts_with("-")) {
        return forEach(arguments + 1, 1, [](const Scenario& scenario) {
            std::fputs(transcriptOf(scenario).c_str(), stdout);
            return true;
        });
    }
    std::fprintf(stderr, "%s", kUse);
    return kWrongUse;
}

}  // namespace velmoranth::equality
