// Memory, numbers from text, process end: what the C++ library's headers and the engine name.
#pragma once

#include <stddef.h>
#include <sys/cdefs.h>

#define EXIT_SUCCESS 0
#define EXIT_FAILURE 1
#define RAND_MAX 0x7fffffff
#define MB_CUR_MAX 1

typedef struct {
    int quot, rem;
} div_t;

typedef struct {
    long quot, rem;
} ldiv_t;

typedef struct {
    long long quot, rem;
} lldiv_t;

__BEGIN_DECLS
void* malloc(size_t) __attribute__((__malloc__, __alloc_size__(1)));
void* calloc(size_t, size_t) __attribute__((__malloc__, __alloc_size__(1, 2)));
void* realloc(void*, size_t) __attribute__((__alloc_size__(2)));
void free(void*);
int posix_memalign(void**, size_t, size_t);
void abort(void) __attribute__((__noreturn__));
void exit(int) __attribute__((__noreturn__));
void _Exit(int) __attribute__((__noreturn__));
int atexit(void (*)(void));
int abs(int);
long labs(long);
long long llabs(long long);
div_t div(int, int);
ldiv_t ldiv(long, long);
lldiv_t lldiv(long long, long long);
int atoi(const char*);
long atol(const char*);
long long atoll(const char*);
double atof(const char*);
double strtod(const char*, char**);
float strtof(const char*, char**);
long double strtold(const char*, char**);
long strtol(const char*, char**, int);
long long strtoll(const char*, char**, int);
unsigned long strtoul(const char*, char**, int);
unsigned long long strtoull(const char*, char**, int);
void qsort(void*, size_t, size_t, int (*)(const void*, const void*));
void* bsearch(const void*, const void*, size_t, size_t, int (*)(const void*, const void*));
char* getenv(const char*);
unsigned int arc4random(void);
unsigned int arc4random_uniform(unsigned int);
__END_DECLS
