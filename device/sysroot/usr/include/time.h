// Clocks and calendar time, with Darwin's clock ids.
#pragma once

#include <sys/cdefs.h>
#include <sys/types.h>

struct timespec {
    time_t tv_sec;
    long tv_nsec;
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

__BEGIN_DECLS
int nanosleep(const struct timespec*, struct timespec*);
__END_DECLS
