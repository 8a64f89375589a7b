// What images take their bytes from.
#pragma once

#include <stddef.h>

typedef struct CGDataProvider* CGDataProviderRef;
typedef const struct __CFData* CFDataRef;

// `info` is what the provider was made with.
typedef void (*CGDataProviderReleaseDataCallback)(void* info, const void* data, size_t size);

extern "C" {
// The data is not copied; it is in use until `releaseData` is called.
CGDataProviderRef CGDataProviderCreateWithData(void* info, const void* data, size_t size,
                                               CGDataProviderReleaseDataCallback releaseData);
// An NSData as well, with a reference for the caller.
CFDataRef CGDataProviderCopyData(CGDataProviderRef provider);
void CGDataProviderRelease(CGDataProviderRef provider);
}
