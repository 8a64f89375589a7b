// A small library that is made like the one for the phone: a class, functions that it exports or
// not, the names of a replaced method.
#include <string.h>

extern "C" {
extern const char* rowOfTheSample[2];
const char* rowOfTheSample[2] = {"SBSampleView", "layoutSampleOf:"};

__attribute__((visibility("default"))) unsigned long sampleLength(const char* text);
__attribute__((visibility("default"))) unsigned long otherLength(const char* text);

unsigned long sampleLength(const char* text) {
    return strlen(text) + strlen(rowOfTheSample[0]) + strlen(rowOfTheSample[1]);
}

#ifdef STRAY
unsigned long inNoLibrary(const char* text);

unsigned long otherLength(const char* text) {
    return inNoLibrary(text);
}
#else
unsigned long otherLength(const char* text) {
    return sampleLength(text) + 1;
}
#endif
}

__attribute__((objc_root_class))
@interface Sample
+ (void)load;
+ (id)sharedSample;
- (void)play:(const char*)name;
@end

@implementation Sample

+ (void)load {
}

+ (id)sharedSample {
    return 0;
}

- (void)play:(const char*)name {
    sampleLength(name);
}

@end
