// What the sanitizers are told in programs with GCC's Objective-C runtime, whose tables of classes
// and selectors they take for leaks, and with GNUstep's Foundation, which asks for more memory than
// there is for some files and goes on when it gets none. Our leaks are counted by the stand-ins.
extern "C" const char* __asan_default_options();

extern "C" const char* __asan_default_options() {
    return "detect_leaks=0:allocator_may_return_null=1";
}
