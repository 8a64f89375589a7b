// What can be found wrong with a theme: a stable code each, with all that is said about it. Lists,
// explanations and the documentation are made of this table.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace velmoranth::makers {

enum class Severity {
    error,    // something of the theme does not show, or hides what would
    warning,  // something shows otherwise, or elsewhere, than its maker hopes
    note,     // nothing that shows is the worse for it
};

struct CodeRow {
    std::string_view code;
    Severity severity;
    std::string_view reason;  // a clause about the file
    std::string_view fix;     // what to do, as a clause; "" where there is nothing to do
    std::string_view explanation;
};

// The gravest first.
[[nodiscard]] std::span<const CodeRow> codes();
// Null when there is none of that name.
[[nodiscard]] const CodeRow* codeNamed(std::string_view code);

// "error", "warning", "note".
[[nodiscard]] std::string_view wordOf(Severity severity);

// A table of all of them in Markdown, as the documentation has it.
[[nodiscard]] std::string codesAsMarkdown();

}  // namespace velmoranth::makers
