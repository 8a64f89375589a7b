// Prints what the library for the phone has to have, from the engine's own tables, for who checks
// that library: "class NAME" with a line for each of its methods below it ("+selector" of the
// class,
// "-selector" of an instance), and "row CLASS SELECTOR" for each replaced method.
#include "core/hook_table.h"
#include "core/library_classes.h"

#include <cstdio>
#include <string>

int main() {
    using namespace velmoranth;
    std::string text;
    for (const platform::ClassDefinition& cls : core::libraryClasses()) {
        text += "class " + cls.name + "\n";
        if (cls.load) {
            text += "+load\n";
        }
        if (cls.initialize) {
            text += "+initialize\n";
        }
        for (const platform::MethodDefinition& method : cls.methods) {
            text += (method.isClassMethod ? "+" : "-") + method.selector + "\n";
        }
    }
    for (const core::HookRow& row : core::HookTable::rows()) {
        text += "row " + std::string(row.targetClass) + " " + std::string(row.selector) + "\n";
    }
    return std::fputs(text.c_str(), stdout) < 0 ? 1 : 0;
}
