// Files and formatted text: what the C++ library's headers and the engine name.
#pragma once

#include <stdarg.h>
#include <sys/cdefs.h>
#include <sys/types.h>

typedef struct __sFILE FILE;
typedef off_t fpos_t;
#define EOF (-1)
#define SEEK_SET 0
#define SEEK_CUR 1
#define SEEK_END 2

__BEGIN_DECLS
extern FILE *__stdoutp, *__stderrp;
#define stdout __stdoutp
#define stderr __stderrp
FILE* fopen(const char*, const char*);
int fclose(FILE*);
int fflush(FILE*);
size_t fread(void*, size_t, size_t, FILE*);
size_t fwrite(const void*, size_t, size_t, FILE*);
int fseek(FILE*, long, int);
long ftell(FILE*);
int fputs(const char*, FILE*);
int fprintf(FILE*, const char*, ...) __attribute__((__format__(__printf__, 2, 3)));
int snprintf(char*, size_t, const char*, ...) __attribute__((__format__(__printf__, 3, 4)));
int vsnprintf(char*, size_t, const char*, va_list) __attribute__((__format__(__printf__, 3, 0)));
int sscanf(const char*, const char*, ...);
int remove(const char*);
int rename(const char*, const char*);
__END_DECLS
