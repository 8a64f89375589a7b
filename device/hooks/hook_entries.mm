#include "device/hooks/hook_entries.h"

#include "core/hook_rows.h"

#include "device/hooks/trampoline.h"
#include "device/platform/handles.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <utility>

// The recognizer that was added to a folder view last, for other code to see: held.
extern "C" __attribute__((visibility("default"))) id tap = nil;
// An effect that nothing sets.
extern "C" __attribute__((visibility("default"))) id blurEffect = nil;

namespace velmoranth::device {

namespace {

template <class Replacement>
struct SignatureOf;

template <class R, class Receiver, class... Args>
struct SignatureOf<R (*)(const core::OriginalImplementation<R(Receiver&, Args...)>&, Receiver&,
                         Args...)> {
    using Type = R(Receiver&, Args...);
};

template <std::size_t Row>
using RowOf = std::decay_t<decltype(std::get<Row>(core::kHookRows))>;

template <std::size_t Row>
using Trampoline = TypedTrampoline<
    Row, typename SignatureOf<std::remove_const_t<decltype(RowOf<Row>::kReplacement)>>::Type>;

template <std::size_t... Row>
std::array<HookEntry, sizeof...(Row)> makeEntries(std::index_sequence<Row...> /*rows*/) {
    return {HookEntry{implementationOf(&Trampoline<Row>::entry), &Trampoline<Row>::slot}...};
}

std::span<const HookEntry> entries() {
    static const auto kEntries = makeEntries(std::make_index_sequence<core::kHookRowCount>());
    return kEntries;
}

const void* addressOf(IMP implementation) {
    return reinterpret_cast<const void*>(implementation);
}

void handleTap(id self, SEL /*selector*/) {
    ReceiverHandle<platform::SBFloatyFolderView> receiver(self);
    hooks::SBFloatyFolderViewHooks::handleTap(receiver.get());
}

}  // namespace

const HookEntry* hookEntryOf(const platform::Implementation& replacement) {
    const auto all = entries();
    const auto entry = std::find_if(all.begin(), all.end(), [&](const HookEntry& candidate) {
        return addressOf(candidate.entry) == replacement.native();
    });
    return entry == all.end() ? nullptr : &*entry;
}

IMP addedMethodEntryOf(const platform::Implementation& implementation) {
    const auto methods = core::HookTable::addedMethods();
    return !methods.empty() && methods.front().implementation == implementation
               ? implementationOf(&handleTap)
               : nullptr;
}

}  // namespace velmoranth::device

namespace velmoranth::hooks {

void storeTap(const platform::GestureRecognizerRef& recognizer) {
    const id previous = ::tap;
    ::tap = [device::nativeOf(recognizer) retain];
    [previous release];
}

}  // namespace velmoranth::hooks

namespace velmoranth::core {

void bindReplacements(std::span<HookRow> rows) {
    const auto all = device::entries();
    for (std::size_t row = 0; row < rows.size(); ++row) {
        rows[row].replacement = platform::Implementation::native(device::addressOf(all[row].entry));
    }
}

}  // namespace velmoranth::core
