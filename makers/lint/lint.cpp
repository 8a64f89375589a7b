#include "makers/lint/lint.h"

#include "makers/conversion/names.h"
#include "makers/lint/rules.h"

#include <algorithm>
#include <set>
#include <tuple>
#include <utility>

namespace velmoranth::makers {

Finding finding(std::string_view code, std::string file, std::string reason, std::string fix,
                std::string wanted) {
    const CodeRow& row = *codeNamed(code);
    Finding result{.code = row.code, .file = std::move(file), .reason = {}, .fix = {}};
    result.reason = reason.empty() ? std::string(row.reason) : std::move(reason);
    result.fix = fix.empty() ? std::string(row.fix) : std::move(fix);
    result.wanted = std::move(wanted);
    return result;
}

void sortFindings(std::vector<Finding>& findings) {
    const auto rank = [](const Finding& one) {
        return std::tuple(&one.row(), std::string_view(one.file), one.line);
    };
    std::ranges::stable_sort(findings,
                             [&](const Finding& a, const Finding& b) { return rank(a) < rank(b); });
}

namespace {

bool hasWord(std::string_view words, std::string_view word) {
    const std::string all = " " + std::string(words) + " ";
    return all.find(" " + std::string(word) + " ") != std::string::npos;
}

// Whether the file of the converted theme is made, rather than being there already, of that one;
// "" is any.
bool isMadeOf(const Plan& plan, const std::string& name, const std::string& file) {
    const auto made = plan.files.find(name);
    return made != plan.files.end() && !made->second.repairs.empty() &&
           (file.empty() || made->second.origin() == file);
}

// Whether anything is made of the file that puts an end to what has the code.
bool isRepaired(const Plan& plan, const Finding& finding) {
    return std::ranges::any_of(plan.files, [&](const auto& named) {
        const auto& [target, made] = named;
        // Of a mask that is there under its right name the file may be made of another one.
        const bool isIt =
            made.origin() == finding.file || (made.work == Work::mask && target == finding.file);
        return isIt && std::ranges::any_of(made.repairs, [&](Repair repair) {
                   return hasWord(rowOf(repair).codes, finding.code) ||
                          (repair == Repair::maskName &&
                           hasWord(rowOf(Repair::maskAlpha).codes, finding.code));
               });
    });
}

bool isMended(const Finding& finding, const Plan& plan) {
    if (finding.code == "nested-theme") {
        return true;
    }
    if (finding.wanted.empty()) {
        return isRepaired(plan, finding);
    }
    const bool isOfAny = finding.code == "scale-missing" || finding.code == "scaled-only" ||
                         finding.code == "similar-icon";
    return isMadeOf(plan, finding.wanted, isOfAny ? "" : finding.file);
}

}  // namespace

void markConverted(std::vector<Finding>& findings, const Plan& plan) {
    std::set<std::string_view> leftOut;
    for (const LeftOut& left : plan.leftOut) {
        leftOut.insert(left.name);
    }
    for (Finding& one : findings) {
        one.isMended = isMended(one, plan);
        one.isLeftOut = !one.isMended && leftOut.contains(one.file);
    }
}

std::vector<Finding> findingsIn(const LintedTheme& theme) {
    std::vector<Finding> findings = listFindings(theme.theme, theme.plan);
    addPathFindings(theme, findings);
    addPictureFindings(theme, findings);
    addDeviceFindings(theme, findings);
    sortFindings(findings);
    return findings;
}

}  // namespace velmoranth::makers
