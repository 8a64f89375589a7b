// The process's ids.
#pragma once

#include <sys/cdefs.h>
#include <sys/types.h>

__BEGIN_DECLS
int setgid(gid_t);
int setuid(uid_t);
__END_DECLS
