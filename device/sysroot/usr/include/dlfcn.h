// Libraries and their symbols at run time, with Darwin's values.
#pragma once

#include <sys/cdefs.h>

typedef struct dl_info {
    const char* dli_fname;
    void* dli_fbase;
    const char* dli_sname;
    void* dli_saddr;
} Dl_info;

#define RTLD_LAZY 0x1
#define RTLD_NOW 0x2
#define RTLD_LOCAL 0x4
#define RTLD_GLOBAL 0x8
#define RTLD_NOLOAD 0x10
#define RTLD_NEXT ((void*)-1)
#define RTLD_DEFAULT ((void*)-2)
#define RTLD_SELF ((void*)-3)

__BEGIN_DECLS
int dladdr(const void*, Dl_info*);
int dlclose(void*);
char* dlerror(void);
void* dlopen(const char*, int);
void* dlsym(void*, const char*);
__END_DECLS
