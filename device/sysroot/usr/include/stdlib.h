// Numbers from text, process end: what the C++ library's headers and the engine name.
#pragma once

#include <stddef.h>
#include <sys/cdefs.h>

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
void abort(void) __attribute__((__noreturn__));
void exit(int) __attribute__((__noreturn__));
div_t div(int, int);
ldiv_t ldiv(long, long);
lldiv_t lldiv(long long, long long);
double strtod(const char*, char**);
__END_DECLS
