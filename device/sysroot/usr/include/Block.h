// Blocks that outlive the call that made them.
#pragma once

#include <sys/cdefs.h>

__BEGIN_DECLS
void* _Block_copy(const void*);
void _Block_release(const void*);
__END_DECLS

#define Block_copy(...) ((__typeof(__VA_ARGS__))_Block_copy((const void*)(__VA_ARGS__)))
#define Block_release(...) _Block_release((const void*)(__VA_ARGS__))
