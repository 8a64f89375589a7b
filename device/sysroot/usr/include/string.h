// Memory blocks and C strings.
#pragma once

#include <stddef.h>
#include <sys/cdefs.h>

__BEGIN_DECLS
void* memcpy(void*, const void*, size_t);
int memcmp(const void*, const void*, size_t);
size_t strlen(const char*);
__END_DECLS
