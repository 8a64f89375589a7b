// The replacements as function objects, each bound to its own row's slot.
#include "core/hook_rows.h"
#include "core/hook_table.h"

#include <cstddef>
#include <functional>
#include <tuple>
#include <utility>

namespace velmoranth::core {
namespace {

template <class Replacement>
struct ReplacementTraits;

// A replacement is handed the platform's implementation, the receiver and the arguments.
template <class R, class Receiver, class... Args>
struct ReplacementTraits<R (*)(const OriginalImplementation<R(Receiver&, Args...)>&, Receiver&,
                               Args...)> {
    // The replacement as a method's implementation. `saved` is its row's slot and outlives it.
    template <auto Replacement>
    static platform::Implementation bind(const platform::Implementation& saved) {
        return platform::makeImplementation(
            std::function<R(Receiver&, Args...)>([&saved](Receiver& self, Args... args) -> R {
                return Replacement(OriginalImplementation<R(Receiver&, Args...)>(saved), self,
                                   std::move(args)...);
            }));
    }
};

template <auto Replacement>
void bind(const TypedRow<Replacement>& /*typedRow*/, HookRow& row) {
    row.replacement =
        ReplacementTraits<decltype(Replacement)>::template bind<Replacement>(row.saved);
}

}  // namespace

void bindReplacements(std::span<HookRow> rows) {
    std::apply(
        [rows](const auto&... typedRows) {
            std::size_t next = 0;
            (bind(typedRows, rows[next++]), ...);
        },
        kHookRows);
}

}  // namespace velmoranth::core
