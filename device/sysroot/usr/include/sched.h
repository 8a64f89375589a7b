// Giving up the processor; the C++ library's thread header names it.
#pragma once

#include <sys/cdefs.h>

__BEGIN_DECLS
int sched_yield(void);
__END_DECLS
