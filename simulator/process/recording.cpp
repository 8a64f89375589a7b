#include "simulator/process/recording.h"

#include "core/hook_rows.h"
#include "platform/platform.h"

#include "record/recorded_methods.h"

#include <tuple>
#include <type_traits>

namespace velmoranth::simulator {
namespace {

template <class Replacement>
struct SignatureOf;

template <class R, class Receiver, class... Args>
struct SignatureOf<R (*)(const core::OriginalImplementation<R(Receiver&, Args...)>&, Receiver&,
                         Args...)> {
    using Type = R(Receiver&, Args...);
};

// The method that is added is sent without arguments and answers nothing.
template <class... Rows>
auto methodsOf(const std::tuple<Rows...>&) -> record::Methods<
    typename SignatureOf<std::remove_const_t<decltype(Rows::kReplacement)>>::Type...,
    void(platform::Object&)>;

using HookedMethods = decltype(methodsOf(core::kHookRows));

}  // namespace

ProcessRecording::ProcessRecording(record::RecordListener* listener)
    : recorder_(listener), services_(platform::platform(), HookedMethods::recorded) {
    record::Recorder::setCurrent(&recorder_);
    platform::setPlatform(services_.platform());
}

}  // namespace velmoranth::simulator
