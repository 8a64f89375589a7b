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

// None for a file that only requests without a name of their own may open: the furniture of the
// home screen, sounds, the calendar.
[[nodiscard]] std::vector<FileRequest> requestsOf(const std::string& file);

}  // namespace velmoranth::makers
