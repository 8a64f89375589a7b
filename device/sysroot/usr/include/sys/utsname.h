// The names of the machine and of its system.
#pragma once

#include <sys/cdefs.h>

#define _SYS_NAMELEN 256

struct utsname {
    char sysname[_SYS_NAMELEN];
    char nodename[_SYS_NAMELEN];
    char release[_SYS_NAMELEN];
    char version[_SYS_NAMELEN];
    char machine[_SYS_NAMELEN];
};

__BEGIN_DECLS
int uname(struct utsname*);
__END_DECLS
