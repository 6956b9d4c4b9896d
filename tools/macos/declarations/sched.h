/* Scheduling. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
struct sched_param {
  int sched_priority;
  char opaque[4];
};
int sched_yield(void);
#ifdef __cplusplus
}
#endif
