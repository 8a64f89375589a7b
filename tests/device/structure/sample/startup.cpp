// The sample's constructors, in the order of the real ones or, to see that noticed, the other way
// round.
extern "C" unsigned long sampleLength(const char* text);

namespace {

unsigned long total = 0;

#ifdef SWAPPED
__attribute__((constructor)) void startSettings() {
    total += sampleLength("settings");
}
#endif

__attribute__((constructor)) void installHooks() {
    total += sampleLength("hooks");
}

#ifndef SWAPPED
__attribute__((constructor)) void startSettings() {
    total += sampleLength("settings");
}
#endif

}  // namespace
