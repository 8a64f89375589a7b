// Writing a package as a phone's installer reads it: an ar file of a mark, a control member and a
// data member, both gzipped tar files. The same contents give the same bytes: entries are in the
// order of their names, all belong to root, and times and modes do not come from this machine.
#pragma once

#include "desktop/result/result.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace velmoranth::makers {

// A file of the package.
struct PackagedFile {
    std::string name;    // where it is installed, without the first slash
    std::string source;  // of this machine
    std::uint64_t size = 0;
};

struct Package {
    std::string control;              // the text of that file
    std::string script;               // run once it is installed; "" for none
    std::vector<PackagedFile> files;  // in any order; the folders on the way are added
    std::int64_t time = 0;            // of everything in it, in seconds since 1970
};

// Writes the new file `path`, whose data is gathered beside it first. `progress` is told how many
// files are in it. A problem names the source that could not be read or has another size by now;
// one of writing has no path, and the file is left as far as it got.
[[nodiscard]] desktop::Result<void> writePackage(
    const Package& package, const std::string& path,
    const std::function<void(std::size_t files)>& progress);

}  // namespace velmoranth::makers
