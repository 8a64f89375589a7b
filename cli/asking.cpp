#include "cli/asking.h"

#include <utility>

namespace velmoranth::cli {

using desktop::Result;
using simulator::Answer;
using simulator::Question;

Result<Answer> Asking::ask(const Question& question) {
    auto& process = processes_[simulator::questionRowNamed(question.word)->process];
    if (process == nullptr) {
        auto started = startProcess(investigation_, question, true);
        if (!started) {
            return tl::unexpected(std::move(started.error()));
        }
        process = std::move(*started);
    }
    return process->ask(question);
}

void Asking::forget(const Question& question) {
    processes_.erase(simulator::questionRowNamed(question.word)->process);
}

}  // namespace velmoranth::cli
