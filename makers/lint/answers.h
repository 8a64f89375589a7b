// What devices have asked of a theme's files: the ground that the rules stand on.
#pragma once

#include "simulator/screens/question_rows.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::makers {

enum class FileState { found, missing, unreadable };

// A file of the theme that was asked for.
struct FileAsked {
    std::string name;  // in the theme
    FileState state = FileState::missing;
    // Whether the name without a scale was asked for, and the loader has tried this one beside it.
    bool isBeside = false;

    [[nodiscard]] bool isOpened() const { return state != FileState::missing; }
};

// A device that is asked.
struct AskedDevice {
    std::string name;  // as a sentence has it: "phones with iOS 13"
    bool isPad = false;
};

enum class RequestKind {
    part,     // of the home screen, a sound, the calendar: asked by the device itself
    usual,    // as apps ask
    unusual,  // for a name as no app asks
};

struct AskedRequest {
    std::size_t device = 0;
    simulator::Question question;
    RequestKind kind = RequestKind::part;
    std::vector<FileAsked> files;  // in the order in which they were asked for, none twice

    // Null when it opened nothing.
    [[nodiscard]] const FileAsked* opened() const;
    [[nodiscard]] const FileAsked* find(const std::string& name) const;
};

class Answers {
  public:
    std::vector<AskedDevice> devices;

    void add(AskedRequest asked);

    [[nodiscard]] const std::vector<AskedRequest>& all() const { return asked_; }

    // Whether any request has opened it, or one that is usual or a device's own. A name without a
    // scale counts as opened where the loader has taken one with the screen's scale in its place.
    [[nodiscard]] bool isOpened(const std::string& name) const { return opened_.contains(name); }

    [[nodiscard]] bool isUsual(const std::string& name) const { return usual_.contains(name); }

    // Whether a device has opened it for one of its own requests, so that it shows as that part.
    [[nodiscard]] bool isPart(const std::string& name) const { return parts_.contains(name); }

    // Whether a request of that kind has opened it under its very name.
    [[nodiscard]] bool isByName(const std::string& name, RequestKind kind) const {
        return byName_.contains({kind, name});
    }

    // Names that were asked for under their very letters and were missing, in order.
    [[nodiscard]] const std::set<std::string>& wanted() const { return wanted_; }

    // Of these the ones that a device asks for itself.
    [[nodiscard]] const std::set<std::string>& wantedParts() const { return wantedParts_; }

    // The usual requests about the file, by their places in all().
    [[nodiscard]] std::vector<const AskedRequest*> about(const simulator::Question& question) const;

  private:
    std::vector<AskedRequest> asked_;
    std::multimap<std::string, std::size_t> places_;  // by the words of the question
    std::set<std::string> opened_;
    std::set<std::string> usual_;
    std::set<std::string> parts_;
    std::set<std::pair<RequestKind, std::string>> byName_;
    std::set<std::string> wanted_;
    std::set<std::string> wantedParts_;
};

}  // namespace velmoranth::makers
