#include "tests/support/cases/case_runner.h"

int main(int argc, char** argv) {
    if (velmoranth::tests::otherMain != nullptr) {
        if (const std::optional<int> status = velmoranth::tests::otherMain(argc, argv)) {
            return *status;
        }
    }
    return velmoranth::tests::runCases(argc, argv);
}
