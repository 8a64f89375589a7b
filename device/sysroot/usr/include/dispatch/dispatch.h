// Queues of blocks.
#pragma once

#include <stdint.h>
#include <sys/cdefs.h>

struct dispatch_queue_s;
typedef struct dispatch_queue_s* dispatch_queue_t;
typedef void (^dispatch_block_t)(void);
typedef uint64_t dispatch_time_t;

#define DISPATCH_TIME_NOW (0ULL)
#define NSEC_PER_SEC 1000000000ULL

__BEGIN_DECLS
extern struct dispatch_queue_s _dispatch_main_q;
dispatch_time_t dispatch_time(dispatch_time_t, int64_t);
void dispatch_after(dispatch_time_t, dispatch_queue_t, dispatch_block_t);
void dispatch_async(dispatch_queue_t, dispatch_block_t);
__END_DECLS

#define dispatch_get_main_queue() (&_dispatch_main_q)
