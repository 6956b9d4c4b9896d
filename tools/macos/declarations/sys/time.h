/* Times. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
int gettimeofday(struct timeval*, void*);
int utimes(const char*, const struct timeval*);
#ifdef __cplusplus
}
#endif
