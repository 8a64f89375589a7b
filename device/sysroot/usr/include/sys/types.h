// Darwin's scalar types on 64-bit ARM.
#pragma once

#include <stddef.h>
#include <stdint.h>

typedef long ssize_t;
typedef long long off_t;
typedef int pid_t;
typedef unsigned int uid_t, gid_t, id_t;
typedef unsigned short mode_t, nlink_t;
typedef int dev_t, blksize_t;
typedef unsigned long long ino_t;
typedef long long blkcnt_t;
typedef long time_t;
typedef unsigned long clock_t;
typedef int suseconds_t;
typedef unsigned int useconds_t;
