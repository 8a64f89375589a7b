#include "makers/lint/lint.h"

#include "makers/conversion/names.h"
#include "makers/lint/rules.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace velmoranth::makers {

Finding finding(std::string_view code, std::string file, std::string reason, std::string fix) {
    const CodeRow& row = *codeNamed(code);
    Finding result{.code = row.code, .file = std::move(file), .reason = {}, .fix = {}};
    result.reason = reason.empty() ? std::string(row.reason) : std::move(reason);
    result.fix = fix.empty() ? std::string(row.fix) : std::move(fix);
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

constexpr const char* kInfoList = "Info.plist";

// Whether the file of the converted theme is made by that.
bool isMadeBy(const Plan& plan, const std::string& file, Repair repair) {
    const auto made = plan.files.find(file);
    return made != plan.files.end() &&
           std::ranges::find(made->second.repairs, repair) != made->second.repairs.end();
}

bool isMended(const Finding& finding, const Plan& plan) {
    const RepairRow* const row = repairOf(finding.code);
    if (row == nullptr) {
        return false;
    }
    if (finding.file == kInfoList) {
        return isMadeBy(plan, kInfoList, row->repair);
    }
    if (finding.code == "mask-hides-nothing") {
        const auto made = plan.files.find(finding.file);
        return made != plan.files.end() && made->second.work == Work::mask;
    }
    if (finding.code == "scale-missing" || finding.code == "scaled-only") {
        return plan.files.contains(
            inFolder(folderOf(finding.file), pictureName(finding.file).base + ".png"));
    }
    const auto stays = plan.files.find(finding.file);
    if (finding.code == "image-name" && std::ranges::any_of(plan.files, [&](const auto& made) {
            return made.second.source == finding.file && made.first != finding.file;
        })) {
        return true;
    }
    return finding.code == "icon-in-bundle" || finding.code == "settings-icon" ||
           stays == plan.files.end() || stays->second.source != finding.file ||
           stays->second.work != Work::copy;
}

}  // namespace

void markMended(std::vector<Finding>& findings, const Plan& plan) {
    for (Finding& one : findings) {
        one.isMended = isMended(one, plan);
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
