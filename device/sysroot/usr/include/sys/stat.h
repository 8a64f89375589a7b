// Modes of files. What stat() fills is left out: nothing of the library's asks for it.
#pragma once

#include <sys/cdefs.h>
#include <sys/types.h>

#define S_IRWXU 0000700
#define S_IRUSR 0000400
#define S_IWUSR 0000200
#define S_IXUSR 0000100
#define S_IRWXG 0000070
#define S_IRGRP 0000040
#define S_IWGRP 0000020
#define S_IXGRP 0000010
#define S_IRWXO 0000007
#define S_IROTH 0000004
#define S_IWOTH 0000002
#define S_IXOTH 0000001

__BEGIN_DECLS
int chmod(const char*, mode_t);
int mkdir(const char*, mode_t);
__END_DECLS
