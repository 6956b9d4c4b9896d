/* Waiting for children. */
#pragma once
#include <bits/alltypes.h>
#include <signal.h>
#ifdef __cplusplus
extern "C" {
#endif
typedef enum { P_ALL, P_PID, P_PGID } idtype_t;
#define WNOHANG 0x01
#define WUNTRACED 0x02
#define WEXITED 0x04
#define WSTOPPED 0x08
#define WNOWAIT 0x20
#define WIFEXITED(s) (((s)&0177) == 0)
#define WEXITSTATUS(s) (((s) >> 8) & 0xff)
#define WIFSIGNALED(s) (((s)&0177) != 0177 && ((s)&0177) != 0)
#define WTERMSIG(s) ((s)&0177)
pid_t waitpid(pid_t, int*, int);
int waitid(idtype_t, id_t, siginfo_t*, int);
#ifdef __cplusplus
}
#endif
