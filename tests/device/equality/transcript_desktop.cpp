// The engine on the desktop's services, with its classes and replacements in the desktop's runtime.
#include "device/equality/desktop_side.h"

namespace velmoranth::equality {

std::unique_ptr<Side> makeSide(const Scenario& scenario) {
    return std::make_unique<DesktopSide>(scenario);
}

}  // namespace velmoranth::equality

int main(int argumentCount, char** arguments) {
    return velmoranth::equality::runProgram(argumentCount, arguments);
}
