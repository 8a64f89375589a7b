// Modes of files, and folders.
#pragma once

#include <sys/cdefs.h>
#include <sys/types.h>

__BEGIN_DECLS
int chmod(const char*, mode_t);
int mkdir(const char*, mode_t);
__END_DECLS
