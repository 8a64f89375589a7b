// Darwin's scalar types on 64-bit ARM.
#pragma once

#include <stddef.h>
#include <stdint.h>

typedef long ssize_t;
typedef long long off_t;
typedef unsigned int uid_t, gid_t;
typedef unsigned short mode_t;
typedef long time_t;
typedef unsigned long clock_t;
