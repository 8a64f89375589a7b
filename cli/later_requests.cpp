#include "cli/later_requests.h"

#include "cli/asking.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace velmoranth::cli {

using simulator::Answer;
using simulator::Question;
using simulator::QuestionRow;

namespace {

// The others that the same kind of process is asked.
std::vector<Question> siblingsOf(const Question& question, int system) {
    const QuestionRow& own = *simulator::questionRowNamed(question.word);
    std::vector<Question> siblings;
    for (const QuestionRow& row : simulator::questionRows()) {
        const bool isOther = row.word != own.word && row.process == own.process;
        if (!isOther || system < row.firstSystem) {
            continue;
        }
        if (row.argument.empty()) {
            siblings.push_back({std::string(row.word), "", ""});
        } else if (row.argument == own.argument) {
            siblings.push_back({std::string(row.word), question.argument, ""});
        }
    }
    return siblings;
}

bool opens(const desktop::Result<Answer>& answer, const std::string& path) {
    return answer && std::ranges::any_of(askedFiles(answer->record), [&](const AskedFile& file) {
               return file.path == path && isRead(file);
           });
}

}  // namespace

std::vector<Question> laterRequests(const Investigation& investigation,
                                    const Explanation& explanation,
                                    simulator::RunningScreen& process) {
    std::vector<Question> later;
    Asking fresh(investigation);
    for (Question& sibling :
         siblingsOf(explanation.question, investigation.configuration.system.major)) {
        if (opens(fresh.ask(sibling), explanation.shown->path)) {
            fresh.forget(sibling);  // which keeps it now
            if (!opens(process.ask(sibling), explanation.shown->path)) {
                later.push_back(std::move(sibling));
            }
        }
    }
    return later;
}

}  // namespace velmoranth::cli
