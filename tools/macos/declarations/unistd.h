/* POSIX calls. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
#define _SC_OPEN_MAX 5
#define _SC_PAGESIZE 29
#define _SC_NPROCESSORS_ONLN 58
#define _PC_PATH_MAX 5
#define F_OK 0
#define X_OK 1
#define W_OK 2
#define R_OK 4
#define SEEK_SET 0
#define SEEK_CUR 1
#define SEEK_END 2
#define STDIN_FILENO 0
#define STDOUT_FILENO 1
#define STDERR_FILENO 2
#define _POSIX_VERSION 200112L
#define _POSIX_THREADS 200112L
int access(const char*, int);
unsigned alarm(unsigned);
int chdir(const char*);
int chown(const char*, uid_t, gid_t);
int close(int);
int dup(int);
int dup2(int, int);
int execv(const char*, char* const*);
int execve(const char*, char* const*, char* const*);
void _exit(int) __attribute__((noreturn));
int fchown(int, uid_t, gid_t);
pid_t fork(void);
int fsync(int);
int ftruncate(int, off_t);
int truncate(const char*, off_t);
char* getcwd(char*, size_t);
int gethostname(char*, size_t);
gid_t getgid(void);
gid_t getegid(void);
uid_t getuid(void);
uid_t geteuid(void);
pid_t getpid(void);
pid_t getppid(void);
pid_t getpgrp(void);
pid_t tcgetpgrp(int);
int isatty(int);
int link(const char*, const char*);
off_t lseek(int, off_t, int);
int pause(void);
int pipe(int[2]);
ssize_t pread(int, void*, size_t, off_t);
ssize_t pwrite(int, const void*, size_t, off_t);
ssize_t read(int, void*, size_t);
ssize_t readlink(const char*, char*, size_t);
ssize_t readlinkat(int, const char*, char*, size_t);
int rmdir(const char*);
pid_t setsid(void);
unsigned sleep(unsigned);
int symlink(const char*, const char*);
long sysconf(int);
long pathconf(const char*, int);
int unlink(const char*);
int unlinkat(int, const char*, int);
int usleep(useconds_t);
ssize_t write(int, const void*, size_t);
int ttyname_r(int, char*, size_t);
#ifdef __cplusplus
}
#endif
