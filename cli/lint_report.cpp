#include "cli/lint_report.h"

#include "cli/messages.h"

#include "makers/conversion/repairs.h"
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

namespace velmoranth::cli {

using makers::CodeRow;
using makers::Finding;
using makers::Severity;

namespace {

using Json = nlohmann::ordered_json;

constexpr std::array kSeverities{Severity::error, Severity::warning, Severity::note};

std::size_t countOf(const CheckedTheme& theme, Severity severity) {
    return static_cast<std::size_t>(std::ranges::count_if(
        theme.findings,
        [severity](const Finding& finding) { return finding.row().severity == severity; }));
}

std::string sumOf(const CheckedTheme& theme) {
    std::string text = fmt::format("{}: {}", shown(theme.name), counted(theme.files, "file"));
    for (const Severity severity : kSeverities) {
        if (const std::size_t count = countOf(theme, severity); count > 0) {
            text += ", " + counted(count, makers::wordOf(severity));
        }
    }
    return text + (theme.findings.empty() ? ", nothing found\n" : "\n");
}

// As wide as the longest.
std::string columnOf(Severity severity) {
    std::string word = fmt::format("{:<8}", makers::wordOf(severity));
    return severity == Severity::note
               ? word
               : inColor(severity == Severity::error ? kErrorColor : kWarningColor,
                         std::move(word));
}

std::string lineOf(const Finding& finding) {
    std::string text = fmt::format("  {} {:<21} {}: {}", columnOf(finding.row().severity),
                                   finding.code, shown(finding.file), shown(finding.reason));
    return text + (finding.fix.empty() ? "\n" : "; " + shown(finding.fix) + "\n");
}

std::string findingsText(const CheckedTheme& theme, bool all) {
    constexpr std::size_t kMostOfCode = 10;
    std::string text;
    std::size_t ofCode = 0;
    for (std::size_t i = 0; i < theme.findings.size(); ++i) {
        const Finding& finding = theme.findings[i];
        ofCode = i > 0 && theme.findings[i - 1].code == finding.code ? ofCode + 1 : 0;
        if (all || ofCode < kMostOfCode) {
            text += lineOf(finding);
        } else if (i + 1 == theme.findings.size() || theme.findings[i + 1].code != finding.code) {
            text += fmt::format("  {} {:<21} {} more (--all)\n", columnOf(finding.row().severity),
                                finding.code, ofCode + 1 - kMostOfCode);
        }
    }
    return text;
}

std::string advice(const CheckedTheme& theme) {
    const auto mended = std::ranges::count_if(theme.findings, &Finding::isMended);
    const auto leftOut = std::ranges::count_if(theme.findings, &Finding::isLeftOut);
    if (mended + leftOut == 0) {
        return {};
    }
    const std::string does =
        mended == 0    ? fmt::format("leaves out {} of these", leftOut)
        : leftOut == 0 ? fmt::format("mends {} of these", mended)
                       : fmt::format("mends {} of these and leaves out {}", mended, leftOut);
    return fmt::format("velmoranth convert {} -o FOLDER {}\n", forShell(theme.input), does);
}

Json jsonOf(const Finding& finding) {
    Json json{{"code", finding.code},
              {"severity", makers::wordOf(finding.row().severity)},
              {"file", finding.file},
              {"reason", finding.reason},
              {"fix", nullptr},
              {"line", nullptr},
              {"column", nullptr},
              {"isMendedByConvert", finding.isMended},
              {"isLeftOutByConvert", finding.isLeftOut}};
    if (!finding.fix.empty()) {
        json["fix"] = finding.fix;
    }
    if (finding.line > 0) {
        json["line"] = finding.line;
        json["column"] = finding.column;
    }
    return json;
}

}  // namespace

bool hasErrors(const std::vector<CheckedTheme>& themes) {
    return std::ranges::any_of(
        themes, [](const CheckedTheme& theme) { return countOf(theme, Severity::error) > 0; });
}

std::string textOf(const std::vector<CheckedTheme>& themes, bool all) {
    std::string text;
    for (const CheckedTheme& theme : themes) {
        text += sumOf(theme) + findingsText(theme, all) + advice(theme);
    }
    return text;
}

std::string jsonOf(const std::vector<CheckedTheme>& themes) {
    Json json{{"version", 1}, {"themes", Json::array()}};
    for (const CheckedTheme& theme : themes) {
        Json findings = Json::array();
        for (const Finding& finding : theme.findings) {
            findings.push_back(jsonOf(finding));
        }
        json["themes"].push_back({{"name", theme.name},
                                  {"input", theme.input},
                                  {"files", theme.files},
                                  {"errors", countOf(theme, Severity::error)},
                                  {"warnings", countOf(theme, Severity::warning)},
                                  {"notes", countOf(theme, Severity::note)},
                                  {"findings", std::move(findings)}});
    }
    return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string explained(const CodeRow& row) {
    std::string text = fmt::format("{} ({}): {}.\n\n{}\n", row.code, makers::wordOf(row.severity),
                                   row.reason, row.explanation);
    if (!row.fix.empty()) {
        text += fmt::format("\nWhat to do: {}.\n", row.fix);
    }
    if (const makers::RepairRow* const repair = makers::repairOf(row.code)) {
        text += fmt::format("velmoranth convert {}.\n", repair->does);
    }
    return text;
}

}  // namespace velmoranth::cli
