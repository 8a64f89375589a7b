// The requests that the path of a theme's file names.
#pragma once

#include "simulator/screens/question_rows.h"

#include <string>
#include <vector>

namespace velmoranth::makers {

struct FileRequest {
    simulator::Question question;
    // Whether apps ask so: without scale and device in the name of an image.
    bool isUsual = true;
};

// A name that an image may be asked for by, and that opens the file.
struct AskedName {
    std::string name;
    bool isUsual = true;  // as FileRequest
};

// Of an image's file, with the folders before it in the bundle: none twice, the usual ones first.
[[nodiscard]] std::vector<AskedName> askedNames(const std::string& file);

// None for a file that only requests without a name of their own may open: the furniture of the
// home screen, sounds, the calendar.
[[nodiscard]] std::vector<FileRequest> requestsOf(const std::string& file);

}  // namespace velmoranth::makers
