// velmoranth hooks: the table of replaced methods, and the gates of a system.
#include "cli/commands.h"
#include "cli/messages.h"
#include "cli/numbers.h"
#include "core/hook_table.h"
#include "simulator/device.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace velmoranth::cli {

using core::HookGate;
using core::HookRow;
using core::HookSide;

namespace {

std::string_view nameOf(HookSide side) {
    return side == HookSide::classSide ? "class" : "instance";
}

std::string_view nameOf(HookGate gate) {
    return gate == HookGate::always ? "always" : gate == HookGate::ios12 ? "ios12" : "ios13";
}

std::string asJson(std::span<const HookRow> rows, double versionNumber) {
    auto array = nlohmann::ordered_json::array();
    for (const HookRow& row : rows) {
        array.push_back({{"number", row.number},
                         {"class", row.targetClass},
                         {"side", nameOf(row.side)},
                         {"selector", row.selector},
                         {"gate", nameOf(row.gate)},
                         {"installed", core::isGateOpen(row.gate, versionNumber)}});
    }
    return array.dump(2) + "\n";
}

std::string asTable(std::span<const HookRow> rows, double versionNumber) {
    std::size_t classWidth = 0;
    for (const HookRow& row : rows) {
        classWidth = std::max(classWidth, row.targetClass.size());
    }
    std::string text = fmt::format("{:>3}  {:<13}  {:<8}  {:<6}  {:<{}}  {}\n", "no.", "state",
                                   "side", "gate", "class", classWidth, "selector");
    int installed = 0;
    for (const HookRow& row : rows) {
        const bool isInstalled = core::isGateOpen(row.gate, versionNumber);
        installed += isInstalled ? 1 : 0;
        std::string line =
            fmt::format("{:>3}  {:<13}  {:<8}  {:<6}  {:<{}}  {}", row.number,
                        isInstalled ? "installed" : "not installed", nameOf(row.side),
                        nameOf(row.gate), row.targetClass, classWidth, row.selector);
        text += (isInstalled ? line : inColor(kFaintColor, std::move(line))) + "\n";
    }
    return text + fmt::format("{} methods: {} installed for version number {}\n", rows.size(),
                              installed, versionNumber);
}

ExitCode runHooks(const Arguments& arguments) {
    double versionNumber = simulator::kSystem13.coreFoundationVersion;
    if (const auto text = arguments.value("--version-number")) {
        const auto number = parseNumber(*text);
        if (!number) {
            return fail(ExitCode::wrongUsage,
                        "--version-number takes a number, not \"" + shown(*text) + "\"");
        }
        versionNumber = *number;
    }
    const std::span<const HookRow> rows = core::HookTable::rows();
    print(arguments.has("--json") ? asJson(rows, versionNumber) : asTable(rows, versionNumber));
    return ExitCode::done;
}

constexpr std::array<Option, 2> kHooksOptions{{
    {"--version-number", "", "N",
     "the system, by its kCFCoreFoundationVersionNumber (default 1674.102, iOS 13.3)"},
    {"--json", "", "", "an array with an object a row"},
}};

}  // namespace

Command hooksCommand() {
    return {.name = "hooks",
            .summary = "List the replaced methods, and which of them a system installs.",
            .positionalNames = "",
            .description =
                "The state is that of a process that has every class of the table; a real "
                "process installs the\nrows whose classes it has.",
            .options = kHooksOptions,
            .examples = {"velmoranth hooks", "velmoranth hooks --version-number 1575.17 --json",
                         "velmoranth hooks --json | jq -r '.[] | select(.installed) | .selector'"},
            .run = runHooks};
}

}  // namespace velmoranth::cli
