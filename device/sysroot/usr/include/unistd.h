// The process's ids and the calls on files that take a path.
#pragma once

#include <stddef.h>
#include <sys/cdefs.h>
#include <sys/types.h>

#define F_OK 0
#define X_OK 1
#define W_OK 2
#define R_OK 4

__BEGIN_DECLS
int access(const char*, int);
int close(int);
gid_t getgid(void);
pid_t getpid(void);
uid_t getuid(void);
uid_t geteuid(void);
ssize_t read(int, void*, size_t);
ssize_t readlink(const char*, char*, size_t);
int rmdir(const char*);
int setgid(gid_t);
int setuid(uid_t);
int unlink(const char*);
unsigned int sleep(unsigned int);
int usleep(useconds_t);
ssize_t write(int, const void*, size_t);
__END_DECLS
