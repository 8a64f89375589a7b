// velmoranth hooks: the table of replaced methods, really installed into an object runtime that has
// every class and method of the table.
#include "cli/commands.h"
#include "cli/idle_platform.h"
#include "cli/messages.h"
#include "cli/numbers.h"
#include "core/hook_table.h"
#include "desktop/runtime/runtime.h"
#include "simulator/device.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <span>
#include <string>

namespace velmoranth::cli {

using core::HookRow;
using core::HookSide;
using core::HookTable;

namespace {

// A method that does nothing, of the type that the row's replacement stands in for; of a simple
// type where there is no replacement.
platform::Implementation stubFor(const HookRow& row) {
    return row.isImplemented()
               ? row.replacement.forwarding([] { return platform::Implementation(); })
               : platform::Implementation(std::function<void(platform::Object&)>([](auto&) {}));
}

// Where two rows share a method, the one for this version gives its type.
void addStubs(desktop::Runtime& runtime, double versionNumber) {
    for (const bool gateOpen : {true, false}) {
        for (const HookRow& row : HookTable::rows()) {
            if (core::isGateOpen(row.gate, versionNumber) != gateOpen) {
                continue;
            }
            const std::string className(row.targetClass);
            runtime.addClass(className);
            const platform::ClassRef cls = runtime.getClass(className);
            runtime.addMethod(row.side == HookSide::classSide ? runtime.getMetaclass(cls) : cls,
                              std::string(row.selector), stubFor(row), "");
        }
    }
}

std::string asJson(std::span<const HookRow> rows) {
    auto array = nlohmann::ordered_json::array();
    for (const HookRow& row : rows) {
        array.push_back({{"number", row.number},
                         {"class", row.targetClass},
                         {"side", core::nameOf(row.side)},
                         {"selector", row.selector},
                         {"gate", core::nameOf(row.gate)},
                         {"implemented", row.isImplemented()},
                         {"installed", row.isInstalled()}});
    }
    return array.dump(2) + "\n";
}

std::string asTable(std::span<const HookRow> rows, double versionNumber) {
    const bool colored = colorsResults();
    std::size_t classWidth = 0;
    for (const HookRow& row : rows) {
        classWidth = std::max(classWidth, row.targetClass.size());
    }
    std::string text = fmt::format("{:>3}  {:<13}  {:<8}  {:<6}  {:<{}}  {}\n", "no.", "state",
                                   "side", "gate", "class", classWidth, "selector");
    for (const HookRow& row : rows) {
        const std::string state = row.isInstalled()     ? "installed"
                                  : row.isImplemented() ? "not installed"
                                                        : "not written";
        const std::string line = fmt::format("{:>3}  {:<13}  {:<8}  {:<6}  {:<{}}  {}", row.number,
                                             state, core::nameOf(row.side), core::nameOf(row.gate),
                                             row.targetClass, classWidth, row.selector);
        text += (colored && !row.isInstalled() ? "\033[2m" + line + "\033[0m" : line) + "\n";
    }
    const auto installed = std::count_if(rows.begin(), rows.end(),
                                         [](const HookRow& row) { return row.isInstalled(); });
    const auto written = std::count_if(rows.begin(), rows.end(),
                                       [](const HookRow& row) { return row.isImplemented(); });
    return text + fmt::format("{} methods: {} written, {} installed for version number {}\n",
                              rows.size(), written, installed, versionNumber);
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
    desktop::Runtime runtime([](const std::string& line) { warn(line); });
    const IdlePlatform platform(runtime, versionNumber);
    addStubs(runtime, versionNumber);
    HookTable::install();
    const std::span<const HookRow> rows = HookTable::rows();
    print(arguments.has("--json") ? asJson(rows) : asTable(rows, versionNumber));
    return ExitCode::done;
}

constexpr std::array<Option, 2> kOptions{{
    {"--version-number", "", "N",
     "the system, by its kCFCoreFoundationVersionNumber (default 1674.102, iOS 13.3)"},
    {"--json", "", "", "an array with an object a row"},
}};

constexpr std::array<std::string_view, 3> kExamples{
    "velmoranth hooks",
    "velmoranth hooks --version-number 1575.17 --json",
    "velmoranth hooks --json | jq -r '.[] | select(.installed) | .selector'",
};

}  // namespace

Command hooksCommand() {
    return {.name = "hooks",
            .summary = "List the replaced methods, and which of them a system installs.",
            .positionalNames = "",
            .description =
                "The table is installed in a process that has every class of it; a real "
                "process installs the\nrows whose classes it has.",
            .options = kOptions,
            .examples = kExamples,
            .run = runHooks};
}

}  // namespace velmoranth::cli
