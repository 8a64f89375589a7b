#include "core/hook_table.h"

#include "core/hook_rows.h"
#include "core/system_versions.h"
#include "platform/platform.h"

#include <array>
#include <map>
#include <string>
#include <tuple>

namespace velmoranth::core {

using platform::ClassRef;
using platform::platform;

namespace {

// The rows never move: a bound replacement refers to its row's slot.
struct Table {
    std::array<HookRow, kHookRowCount> rows;

    Table() {
        std::apply(
            [this](const auto&... typedRows) {
                int number = 0;
                const auto add = [&](const auto& typedRow) {
                    HookRow& row = rows.at(static_cast<std::size_t>(number));
                    row.number = ++number;
                    row.targetClass = typedRow.targetClass;
                    row.side = typedRow.side;
                    row.selector = typedRow.selector;
                    row.gate = typedRow.gate;
                };
                (add(typedRows), ...);
            },
            kHookRows);
        bindReplacements(rows);
    }
};

// Classes by name, each looked up once; a class that is missing is nil from then on.
class ClassCache {
  public:
    ClassRef find(std::string_view name) {
        const auto [entry, isNew] = classes_.try_emplace(std::string(name));
        if (isNew) {
            entry->second = platform().objc.getClass(entry->first);
        }
        return entry->second;
    }

  private:
    std::map<std::string, ClassRef> classes_;
};

void installRow(HookRow& row, ClassCache& classes) {
    const ClassRef cls = classes.find(row.targetClass);
    const ClassRef target =
        row.side == HookSide::classSide ? platform().objc.getMetaclass(cls) : cls;
    platform().substrate.hookMessageEx(target, std::string(row.selector), row.replacement,
                                       &row.saved);
}

void addMethod(const AddedMethod& method, ClassCache& classes) {
    platform().objc.addMethod(classes.find(method.targetClass), std::string(method.selector),
                              method.implementation, std::string(method.typeEncoding));
}

void installSet(HookGate gate) {
    ClassCache classes;
    for (HookRow& row : HookTable::rows()) {
        if (row.gate != gate) {
            continue;
        }
        installRow(row, classes);
        for (const AddedMethod& method : HookTable::addedMethods()) {
            if (method.afterRow == row.number) {
                addMethod(method, classes);
            }
        }
    }
}

}  // namespace

bool isGateOpen(HookGate gate, double versionNumber) {
    switch (gate) {
        case HookGate::always:
            return true;
        case HookGate::ios12:
            return !(versionNumber > kNewestiOS12);
        case HookGate::ios13:
            return versionNumber >= kOldestiOS13;
    }
    return false;
}

std::span<HookRow> HookTable::rows() {
    static Table table;
    return table.rows;
}

std::span<const AddedMethod> HookTable::addedMethods() {
    static const std::array<AddedMethod, 1> kMethods{
        {{10, "SBFloatyFolderView", "handleTap", "v@:",
          platform::makeImplementation(std::function<void(platform::SBFloatyFolderView&)>(
              &hooks::SBFloatyFolderViewHooks::handleTap))}}};
    return kMethods;
}

void HookTable::install() {
    installSet(HookGate::always);
    for (const HookGate gate : {HookGate::ios12, HookGate::ios13}) {
        if (isGateOpen(gate, platform().coreFoundation.versionNumber())) {
            installSet(gate);
        }
    }
}

}  // namespace velmoranth::core
