// The rules, each adding what it finds. Private to this folder.
#pragma once

#include "makers/lint/lint.h"

#include <string>
#include <vector>

namespace velmoranth::makers {

// About names and places of files.
void addPathFindings(const LintedTheme& theme, std::vector<Finding>& findings);
// About the pictures themselves.
void addPictureFindings(const LintedTheme& theme, std::vector<Finding>& findings);
// About what is there for some devices, or only under some names.
void addDeviceFindings(const LintedTheme& theme, std::vector<Finding>& findings);

}  // namespace velmoranth::makers
