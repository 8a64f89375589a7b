// The files of the phone, and what becomes of them. All paths but `root` are the phone's, and lie
// in the folder `root` of this machine.
#pragma once

#include "device/equality/requests.h"

#include <string>
#include <vector>

namespace velmoranth::equality {

// The folders of an untouched phone that are not there yet, three themes, and what the scenario has
// besides.
void layPhone(const Scenario& scenario, const std::string& root);
// Carries out a step that changes files; false for every other.
bool changeFiles(const Step& step, const std::string& root);
// Folders on the way are made.
void writeFile(const std::string& root, const std::string& path, const std::string& contents);
void eraseFile(const std::string& root, const std::string& path);

// All that the folder holds, by name: "0644 12 bytes 9f3c… /Library/x", modes of folders with them.
// Of an image only the size in pixels is told, as each side encodes in its own way.
[[nodiscard]] std::vector<std::string> listFolder(const std::string& root, const std::string& path);

// A file of that many pixels, 8 bits each of red, green, blue and alpha.
[[nodiscard]] std::string pngOf(int width, int height);

}  // namespace velmoranth::equality
