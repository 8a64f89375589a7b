#include "desktop/result/result.h"

namespace velmoranth::desktop {

std::string toLine(const Problem& problem) {
    std::string line =
        problem.path.empty() ? problem.message : problem.path + ": " + problem.message;
    if (problem.offset) {
        line += " (at byte " + std::to_string(*problem.offset) + ")";
    }
    return line;
}

}  // namespace velmoranth::desktop
