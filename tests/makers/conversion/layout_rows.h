// The layouts that themes come in, a row each: what a theme in it holds, and the files that show
// the same where the engine itself looks for them.
#pragma once

#include "platform/foundation.h"
#include "simulator/screen_kinds.h"
#include "tests/support/archives/archive_writer.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::makers {

// What a theme comes in.
enum class Container {
    folder,    // "in/T.theme"
    plain,     // a folder without the ending
    deep,      // with folders above it
    package,   // .deb, below Library/Themes
    rootless,  // .deb, below var/jb/Library/Themes
    zip,       // with what an archiver adds
    tar,
};

struct ThemeContents {
    std::string name;  // in the theme
    std::string contents;

    friend bool operator==(const ThemeContents&, const ThemeContents&) = default;
};

struct LayoutRow {
    std::string_view section;  // what it is about, and what in it
    std::vector<ThemeContents> input;
    std::vector<ThemeContents> byHand;
    // What the input brings and a conversion leaves out, by name.
    std::vector<std::string> leftOut = {};
    simulator::ScreenKind screen = simulator::ScreenKind::home;
    // Apps that are on the home screen for it; none for a fresh device's.
    std::vector<std::string> apps = {};
    Container container = Container::folder;
    tests::Packing packing = tests::Packing::none;
    bool showsAsItIs = false;   // the input shows the same before
    bool showsNothing = false;  // nothing of it is ever seen
};

// What a fresh device has for the texts of its calendar's icon.
[[nodiscard]] platform::Dictionary installedCalendar();

[[nodiscard]] std::vector<LayoutRow> containerRows();
[[nodiscard]] std::vector<LayoutRow> iconRows();
[[nodiscard]] std::vector<LayoutRow> imageRows();
[[nodiscard]] std::vector<LayoutRow> listRows();
// Themes of five layouts each, made of rows above.
[[nodiscard]] std::vector<LayoutRow> mixtures();

}  // namespace velmoranth::makers
