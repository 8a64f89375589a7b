// What the sanitizers are told in programs with GCC's Objective-C runtime, whose tables of classes
// and selectors they take for leaks. Leaks of ours are counted by the stand-ins.
extern "C" const char* __asan_default_options();

extern "C" const char* __asan_default_options() {
    return "detect_leaks=0";
}
