#include "makers/conversion/names.h"
#include "makers/lint/rules.h"

#include <algorithm>
#include <string>

namespace velmoranth::makers {
namespace {

std::string sizeOf(const PictureFacts& facts) {
    return std::to_string(facts.width) + " × " + std::to_string(facts.height) + " pixels";
}

// Those that icons are: what lies elsewhere may have any shape.
void addIconFindings(const std::string& file, const JudgedPicture& picture,
                     std::vector<Finding>& findings) {
    if (!picture.facts.isSquare()) {
        findings.push_back(
            finding("icon-not-square", file, "the icon is not square: " + sizeOf(picture.facts)));
    }
    if (std::max(picture.facts.width, picture.facts.height) > kLongestSide) {
        findings.push_back(
            finding("icon-too-large", file,
                    "it has more pixels than any icon shows: " + sizeOf(picture.facts)));
    }
    if (picture.isClear) {
        findings.push_back(finding("icon-clear", file));
    }
}

}  // namespace

void addPictureFindings(const LintedTheme& theme, std::vector<Finding>& findings) {
    for (const auto& [file, picture] : theme.pictures) {
        if (picture.isEmptyFile) {
            findings.push_back(finding("picture-empty", file));
            continue;
        }
        if (picture.facts.isUnreadable) {
            continue;  // said of all files alike
        }
        if (!picture.facts.isPicture()) {
            findings.push_back(finding("picture-broken", file,
                                       "no picture can be made of it: " + picture.facts.problem));
            continue;
        }
        if (!picture.format.empty() && picture.format != "PNG") {
            findings.push_back(
                finding("not-png", file,
                        "it is called .png and is a " + std::string(picture.format) + " picture"));
        }
        if (folderOf(file) == "IconBundles") {
            addIconFindings(file, picture, findings);
        }
    }
}

}  // namespace velmoranth::makers
