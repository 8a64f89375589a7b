#include "cli/question_batches.h"

#include <map>
#include <string>
#include <utility>

namespace velmoranth::cli {

using simulator::ProcessKind;
using simulator::Question;

std::vector<std::vector<std::size_t>> batchesOf(std::span<const Question> questions) {
    std::map<std::pair<ProcessKind, std::size_t>, std::vector<std::size_t>> batches;
    std::map<std::string, std::size_t> timesNamed;
    std::map<ProcessKind, std::size_t> counts;
    for (std::size_t i = 0; i < questions.size(); ++i) {
        const Question& question = questions[i];
        const ProcessKind kind = simulator::questionRowNamed(question.word)->process;
        // Batches of a kind come one after another in steps, so that none grows without end.
        const std::size_t step = counts[kind]++ / kMostQuestionsTogether;
        const std::size_t times = question.word == "image" ? timesNamed[question.argument]++ : 0;
        batches[{kind, step * questions.size() + times}].push_back(i);
    }
    std::vector<std::vector<std::size_t>> result;
    result.reserve(batches.size());
    for (auto& [key, batch] : batches) {
        result.push_back(std::move(batch));
    }
    return result;
}

}  // namespace velmoranth::cli
