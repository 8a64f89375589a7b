// How the decorators take a call down. Private to this folder.
#pragma once

#include "platform/foundation.h"

#include "record/operations.h"
#include "record/recorder.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace velmoranth::record {

inline void add(Entry entry) {
    if (Recorder* const recorder = Recorder::current()) {
        recorder->add(std::move(entry));
    }
}

// Takes down the call, before what it does itself, and its answer.
template <class Call>
auto recorded(std::string_view message, std::vector<std::string> arguments, Call&& call) {
    Recorder* const recorder = Recorder::current();
    const std::size_t place =
        recorder == nullptr
            ? 0
            : recorder->add({.message = std::string(message), .arguments = std::move(arguments)});
    const InPlatform platform;
    if constexpr (std::is_void_v<std::invoke_result_t<Call>>) {
        call();
    } else {
        auto result = call();
        if (recorder != nullptr) {
            recorder->answer(place, words(result));
        }
        return result;
    }
}

// Takes down an operation that changes the file, and how it ended.
template <class Call>
auto recordedChange(std::string_view message, const std::string& path,
                    std::vector<std::string> arguments, Call&& call) {
    auto result = call();
    Entry entry{.kind = EntryKind::written,
                .message = std::string(message),
                .subject = path,
                .arguments = std::move(arguments)};
    if constexpr (std::is_same_v<decltype(result), platform::Failure>) {
        entry.answer = result ? "error" : "done";
        entry.reason = result ? result->localizedDescription : "";
    } else {
        entry.answer = words(result);
    }
    add(std::move(entry));
    return result;
}

// Whether there is a block: "set" or "nil".
template <class Block>
std::string wordsOfBlock(const std::function<Block>& block) {
    return block == nullptr ? kNil : "set";
}

// A function of the engine's that the platform calls back, at its own time.
template <class... Arguments>
std::function<void(Arguments...)> recordedCallback(std::string_view message,
                                                   std::function<void(Arguments...)> callback) {
    if (callback == nullptr) {
        return callback;
    }
    return [message = std::string(message),
            callback = std::move(callback)](Arguments... arguments) {
        const Frame frame(
            {.kind = EntryKind::callback, .message = message, .arguments = {words(arguments)...}});
        callback(arguments...);
    };
}

}  // namespace velmoranth::record
