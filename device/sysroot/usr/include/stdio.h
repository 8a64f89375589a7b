// Files and formatted text: what the C++ library's headers and the engine name.
#pragma once

#include <stdarg.h>
#include <sys/cdefs.h>
#include <sys/types.h>

typedef struct __sFILE FILE;
typedef off_t fpos_t;
#define EOF (-1)

__BEGIN_DECLS
extern FILE *__stdoutp, *__stderrp;
#define stdout __stdoutp
#define stderr __stderrp
int snprintf(char*, size_t, const char*, ...) __attribute__((__format__(__printf__, 3, 4)));
int remove(const char*);
__END_DECLS
