// assert, over the function that Darwin's C library reports a failed one with.
#include <sys/cdefs.h>

// May be included again with another NDEBUG, so there is no guard around the macro.
#undef assert
#ifdef NDEBUG
#define assert(condition) ((void)0)
#else
__BEGIN_DECLS
void __assert_rtn(const char*, const char*, int, const char*) __attribute__((__noreturn__));
__END_DECLS
#define assert(condition)                                                                       \
    (__builtin_expect(!(condition), 0) ? __assert_rtn(__func__, __FILE__, __LINE__, #condition) \
                                       : (void)0)
#endif
