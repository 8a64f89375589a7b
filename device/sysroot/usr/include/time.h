// Clocks and calendar time, with Darwin's clock ids.
#pragma once

#include <sys/cdefs.h>
#include <sys/types.h>

struct timespec {
    time_t tv_sec;
    long tv_nsec;
};

struct timeval {
    time_t tv_sec;
    suseconds_t tv_usec;
};

struct tm {
    int tm_sec, tm_min, tm_hour, tm_mday, tm_mon, tm_year, tm_wday, tm_yday, tm_isdst;
    long tm_gmtoff;
    char* tm_zone;
};

typedef enum {
    CLOCK_REALTIME = 0,
    CLOCK_MONOTONIC_RAW = 4,
    CLOCK_MONOTONIC = 6,
    CLOCK_UPTIME_RAW = 8
} clockid_t;

#define CLOCK_REALTIME CLOCK_REALTIME
#define CLOCK_MONOTONIC CLOCK_MONOTONIC
#define CLOCK_UPTIME_RAW CLOCK_UPTIME_RAW
#define CLOCKS_PER_SEC ((clock_t)1000000)

__BEGIN_DECLS
clock_t clock(void);
time_t time(time_t*);
int clock_gettime(clockid_t, struct timespec*);  // iOS 10+
int nanosleep(const struct timespec*, struct timespec*);
struct tm* gmtime_r(const time_t*, struct tm*);
struct tm* localtime_r(const time_t*, struct tm*);
size_t strftime(char*, size_t, const char*, const struct tm*);
__END_DECLS
