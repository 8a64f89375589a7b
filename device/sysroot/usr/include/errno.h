// BSD error numbers, as Darwin has them.
#pragma once

#include <sys/cdefs.h>

__BEGIN_DECLS
int* __error(void);
__END_DECLS

#define errno (*__error())
#define EINVAL 22
