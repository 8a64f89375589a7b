// The replaced methods: an ordered table of rows, each with a slot of its own for the platform's
// implementation. The table can be enumerated, and installed for the running system.
#pragma once

#include "core/original_implementation.h"
#include "platform/objc_runtime.h"

#include <span>
#include <string_view>

namespace velmoranth::core {

enum class HookSide { instanceSide, classSide };

// Which systems install a row, by the value of kCFCoreFoundationVersionNumber.
enum class HookGate { always, ios12, ios13 };

// Whether a gate is open for that version number.
[[nodiscard]] bool isGateOpen(HookGate gate, double versionNumber);

struct HookRow {
    int number = 0;  // 1 to 54, in the order of installation
    std::string_view targetClass;
    HookSide side = HookSide::instanceSide;
    std::string_view selector;
    HookGate gate = HookGate::always;
    platform::Implementation replacement;
    platform::Implementation saved;  // the platform's; nothing while the row is not installed

    [[nodiscard]] bool isInstalled() const { return static_cast<bool>(saved); }
};

// A method that is added to a platform class, not replaced.
struct AddedMethod {
    int afterRow = 0;  // installed after the row of this number
    std::string_view targetClass;
    std::string_view selector;
    std::string_view typeEncoding;
    platform::Implementation implementation;
};

class HookTable {
  public:
    // The 54 rows in the order of installation. They live as long as the process.
    [[nodiscard]] static std::span<HookRow> rows();
    [[nodiscard]] static std::span<const AddedMethod> addedMethods();

    // Installs the rows whose gate is open for the running system: the always rows, then those of
    // iOS 12, then those of iOS 13; the version is asked for once for each gated set. Nothing is
    // logged or checked; a class that the process does not have installs nothing.
    static void install();
};

// Gives each of the table's rows its replacement, in the form in which the platform installs it: as
// function objects (hook_replacements.cpp), or, where the platform calls methods by their address,
// by a function that its own side brings in place of this one.
void bindReplacements(std::span<HookRow> rows);

}  // namespace velmoranth::core
