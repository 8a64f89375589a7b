// What explain says, read from its JSON, and what a record has of the same, read without explain's
// own functions.
#pragma once

#include "cli/explanation.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// A file of a theme that was asked for.
struct NotedFile {
    std::string path;    // below the folder of the themes
    std::string state;   // "found", "missing" or "unreadable"
    std::string answer;  // what was read of it, in words; "" for nothing

    friend bool operator==(const NotedFile&, const NotedFile&) = default;
};

inline std::ostream& operator<<(std::ostream& stream, const NotedFile& file) {
    return stream << "\n  " << file.path << " (" << file.state << ") " << file.answer;
}

using NotedFiles = std::vector<NotedFile>;
using Texts = std::vector<std::string>;

inline NotedFile filed(const nlohmann::json& file) {
    return {file.at("theme").get<std::string>() + "/" + file.at("file").get<std::string>(),
            file.at("state"), file.value("answer", "")};
}

// Nothing for null.
inline std::optional<NotedFile> filedOrNot(const nlohmann::json& file) {
    return file.is_null() ? std::nullopt : std::optional(filed(file));
}

inline NotedFiles allFiled(const nlohmann::json& files) {
    NotedFiles all;
    std::transform(files.begin(), files.end(), std::back_inserter(all), filed);
    return all;
}

// The files of themes in a record, in the order in which they are first named. One that is looked
// for and then read is what the reading says. A name that the platform tries in vain beside the one
// that it was asked for has that one as its argument, and is left out.
inline NotedFiles filesIn(const record::Record& record) {
    constexpr std::string_view kThemes = "/Library/Themes/";
    NotedFiles files;
    for (const record::Entry& entry : record) {
        const std::string state(record::wordOf(entry.kind));
        if ((state != "found" && state != "missing" && state != "unreadable") ||
            !entry.subject.starts_with(kThemes) ||
            (state == "missing" && !entry.arguments.empty())) {
            continue;
        }
        // Slashes behind a theme's name are one.
        std::string path = entry.subject.substr(kThemes.size());
        const std::size_t slash = path.find('/');
        if (slash == std::string::npos) {
            continue;
        }
        path.replace(slash, std::min(path.find_first_not_of('/', slash), path.size()) - slash, "/");
        const bool isLook = entry.answer == "YES" || entry.answer == "NO" || entry.answer == "nil";
        const NotedFile file{path, state, isLook ? "" : entry.answer};
        const auto known = std::find_if(files.begin(), files.end(), [&](const NotedFile& other) {
            return other.path == file.path;
        });
        if (known == files.end()) {
            files.push_back(file);
        } else if (!file.answer.empty() || state == "unreadable") {
            *known = file;
        }
    }
    return files;
}

// The replaced methods that a record enters, none twice.
inline Texts methodsIn(const record::Record& record) {
    Texts methods;
    for (const record::Entry& entry : record) {
        if (record::wordOf(entry.kind) == "entered" &&
            std::find(methods.begin(), methods.end(), entry.message) == methods.end()) {
            methods.push_back(entry.message);
        }
    }
    return methods;
}

// The first of `some` that `all` does not have behind those before it; nothing when it has them in
// that order.
template <class T>
std::optional<T> outOfOrder(const std::vector<T>& some, const std::vector<T>& all) {
    auto next = all.begin();
    for (const T& one : some) {
        next = std::find(next, all.end(), one);
        if (next == all.end()) {
            return one;
        }
        ++next;
    }
    return std::nullopt;
}

// The last file that was read for what shows: lists are none, nor is what was done to the picture.
inline std::optional<NotedFile> winnerIn(const NotedFiles& files, const nlohmann::json& effects) {
    std::optional<NotedFile> winner;
    for (const NotedFile& file : files) {
        const bool isEffect = std::any_of(effects.begin(), effects.end(), [&](const auto& effect) {
            return filed(effect) == file;
        });
        if (file.state == "found" && !file.answer.empty() && !isEffect &&
            !file.path.ends_with(".plist")) {
            winner = file;
        }
    }
    return winner;
}

// "180 x 180" pixels, or "nothing".
inline std::string pictureSizeSaid(const nlohmann::json& said) {
    const nlohmann::json& size = said.at("size");
    return size.is_null() ? "nothing" : size.at("width").dump() + " x " + size.at("height").dump();
}

// The pixels of "50×50 @3x"; "" for words that are no image.
inline std::string pixelsOf(const std::string& words) {
    double width = 0;
    double height = 0;
    double scale = 0;
    return std::sscanf(words.c_str(), "%lf×%lf @%lfx", &width, &height, &scale) == 3
               ? std::to_string(std::lround(width * scale)) + " x " +
                     std::to_string(std::lround(height * scale))
               : "";
}

// The sentence says what the rest says: whose file shows, or that the stock picture does, and that
// of no other; the file behind an interface image is the picture that came.
inline void expectOneStory(const nlohmann::json& said) {
    const std::string summary = said.at("summary");
    const bool saysStock = summary.starts_with("The stock picture shows");
    EXPECT_TRUE(!saysStock || (said.at("isStock") && said.at("shown").is_null())) << said;
    if (said.at("shown").is_null()) {
        const bool saysOther = summary.starts_with("The device's own picture shows");
        EXPECT_TRUE(!saysOther || !said.at("isStock")) << said;
        return;
    }
    const NotedFile shown = filed(said.at("shown"));
    EXPECT_TRUE(summary.starts_with(shown.path)) << said;
    const std::string request = said.at("request");
    if (request == "image" || request == "symbol" || request == "knob") {
        EXPECT_EQ(pixelsOf(shown.answer), pictureSizeSaid(said)) << said;
    }
}

// What is said of a request, against the record of the process that was asked: the whole of it, and
// nothing else.
inline void expectOfItsOwnRecord(const nlohmann::json& said, const record::Record& record) {
    const NotedFiles files = allFiled(said.at("files"));
    EXPECT_EQ(said.at("failure"), nlohmann::json());
    EXPECT_EQ(said.at("methods").get<Texts>(), methodsIn(record));
    EXPECT_EQ(files, filesIn(record));
    EXPECT_EQ(filedOrNot(said.at("shown")), winnerIn(files, said.at("effects")));
    expectOneStory(said);
    for (const auto& effect : said.at("effects")) {
        EXPECT_NE(std::find(files.begin(), files.end(), filed(effect)), files.end()) << effect;
    }
}

}  // namespace velmoranth::cli
