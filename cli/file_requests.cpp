#include "cli/file_requests.h"

#include "cli/nearest.h"

#include "makers/conversion/names.h"
#include "makers/lint/requests.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>

namespace velmoranth::cli {

using simulator::Question;
using simulator::QuestionRow;

namespace {

namespace fs = std::filesystem;

// A name as a request may have it: whole, and without what a file adds to it, for an image or for
// an icon.
std::set<std::string> namesMeant(const std::string& file) {
    std::set<std::string> names{file.substr(0, file.rfind('.'))};
    const auto add = [&names](const std::string& name) {
        for (makers::AskedName& asked : makers::askedNames(name)) {
            names.insert(std::move(asked.name));
        }
    };
    add(file);
    const makers::PictureName picture = makers::pictureName(makers::asPng(file));
    for (const std::string_view size : {"-large", "-small"}) {
        std::string_view base = picture.base;
        if (base.size() > size.size() && base.ends_with(size)) {
            base.remove_suffix(size.size());
            add(std::string(base) + ".png");
        }
    }
    // Nothing can be asked for by no name.
    if (names.erase("") > 0 && names.empty()) {
        names.insert(file);
    }
    return names;
}

// The names that the device has and that are one of these, or near one.
std::set<std::string> ownNames(const std::vector<std::string>& known,
                               const std::set<std::string>& names) {
    const std::vector<std::string_view> texts(known.begin(), known.end());
    std::set<std::string> own;
    for (const std::string& name : names) {
        if (std::ranges::find(known, name) != known.end()) {
            own.insert(name);
        } else if (const auto near = nearestName(name, texts)) {
            own.emplace(*near);
        }
    }
    return own;
}

// The bundles that images are asked of and that a folder of the path may be named for; "" is the
// toolkit.
std::set<std::string> ownBundles(const fs::path& folders) {
    std::set<std::string> bundles;
    for (const fs::path& folder : folders) {
        bundles.merge(ownNames(simulator::knownBundles(), {folder.string()}));
    }
    bundles.insert("");
    return bundles;
}

// Other folders that are named like bundles.
std::set<std::string> otherBundles(const fs::path& folders) {
    const std::vector<std::string> known = simulator::knownBundles();
    std::set<std::string> bundles;
    for (const fs::path& folder : folders) {
        const std::string name = folder.string();
        if (name.find('.') != std::string::npos && std::ranges::find(known, name) == known.end()) {
            bundles.insert(name);
        }
    }
    return bundles;
}

bool isImage(const QuestionRow& row) {
    return row.word == "image";
}

// Whether the argument is a name, for which the file may be called.
bool takesName(const QuestionRow& row) {
    return !row.argument.empty() && row.argument.find('|') == std::string_view::npos;
}

// The sounds that a device plays by itself.
std::vector<Question> soundRequests() {
    std::vector<Question> requests;
    for (const SoundName& sound : soundNames()) {
        if (sound.source != SoundSource::panel) {
            requests.push_back(requestOf(sound));
        }
    }
    return requests;
}

// Those of a row without a name behind its word: one, or one for each that there is to choose from.
std::vector<Question> requestsWithoutName(const QuestionRow& row) {
    if (row.word == "sound") {
        return soundRequests();
    }
    std::vector<Question> requests;
    std::istringstream choices(std::string(row.argument) + "|");
    for (std::string choice; std::getline(choices, choice, '|');) {
        requests.push_back({std::string(row.word), choice, ""});
    }
    return requests;
}

}  // namespace

std::vector<Question> deviceRequests() {
    std::vector<Question> requests;
    for (const QuestionRow& row : simulator::questionRows()) {
        if (!takesName(row)) {
            std::ranges::move(requestsWithoutName(row), std::back_inserter(requests));
        } else if (row.argument != "ID") {
            std::vector<std::string> bundles{""};
            if (isImage(row)) {
                std::ranges::move(simulator::knownBundles(), std::back_inserter(bundles));
            }
            for (const std::string& bundle : bundles) {
                for (std::string& name : simulator::knownArguments(row, bundle)) {
                    requests.push_back({std::string(row.word), std::move(name), bundle});
                }
            }
        }
    }
    return requests;
}

std::vector<Question> iconRequests() {
    std::vector<Question> requests;
    for (const QuestionRow& row : simulator::questionRows()) {
        if (row.argument == "ID") {
            for (std::string& app : simulator::knownArguments(row)) {
                requests.push_back({std::string(row.word), std::move(app), ""});
            }
        }
    }
    return requests;
}

std::vector<Question> ownRequestsFor(const std::string& name) {
    const fs::path path(name);
    const std::set<std::string> names = namesMeant(path.filename().string());
    std::vector<Question> requests;
    for (const QuestionRow& row : simulator::questionRows()) {
        if (!takesName(row)) {
            std::ranges::move(requestsWithoutName(row), std::back_inserter(requests));
            continue;
        }
        const std::set<std::string> bundles =
            isImage(row) ? ownBundles(path.parent_path()) : std::set<std::string>{""};
        for (const std::string& bundle : bundles) {
            for (const std::string& own : ownNames(simulator::knownArguments(row, bundle), names)) {
                requests.push_back({std::string(row.word), own, bundle});
            }
        }
    }
    return requests;
}

std::vector<Question> otherRequestsFor(const std::string& name) {
    const fs::path path(name);
    const std::set<std::string> names = namesMeant(path.filename().string());
    std::vector<Question> requests;
    for (const QuestionRow& row : simulator::questionRows()) {
        if (!takesName(row)) {
            continue;
        }
        std::set<std::string> bundles{""};
        if (isImage(row)) {
            bundles.merge(ownBundles(path.parent_path()));
            bundles.merge(otherBundles(path.parent_path()));
        }
        for (const std::string& bundle : bundles) {
            const std::vector<std::string> known = simulator::knownArguments(row, bundle);
            for (const std::string& one : names) {
                if (std::ranges::find(known, one) == known.end()) {
                    requests.push_back({std::string(row.word), one, bundle});
                }
            }
        }
    }
    return requests;
}

Question requestOf(const SoundName& sound) {
    return {
        "sound",
        (sound.source == SoundSource::homeScreen ? "event:" : "") + std::to_string(sound.number),
        ""};
}

Question iconRequestFor(const std::string& name) {
    const std::set<std::string> names = namesMeant(fs::path(name).filename().string());
    return {"icon", *std::ranges::min_element(names, {}, &std::string::size), ""};
}

}  // namespace velmoranth::cli
