/* Limits. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
typedef uint64_t rlim_t;
struct rlimit {
  rlim_t rlim_cur, rlim_max;
};
struct rusage {
  struct timeval ru_utime, ru_stime;
  long ru_maxrss, rest[13];
};
#define RLIMIT_NOFILE 8
#define RUSAGE_SELF 0
#define RLIM_INFINITY (((uint64_t)1 << 63) - 1)
int getrlimit(int, struct rlimit*);
int setrlimit(int, const struct rlimit*);
int getrusage(int, struct rusage*);
int setpriority(int, id_t, int);
#define PRIO_PROCESS 0
#define PRIO_DARWIN_BG 0x1000
#ifdef __cplusplus
}
#endif
