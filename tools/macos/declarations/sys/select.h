/* Waiting for descriptors, the old way. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
#define FD_SETSIZE 1024
typedef struct {
  int32_t fds_bits[32];
} fd_set;
#define FD_ZERO(s) __builtin_memset((s), 0, sizeof(*(s)))
#define FD_SET(n, s) ((s)->fds_bits[(n) / 32] |= (int32_t)(1u << ((n) % 32)))
#define FD_CLR(n, s) ((s)->fds_bits[(n) / 32] &= (int32_t) ~(1u << ((n) % 32)))
#define FD_ISSET(n, s) (((s)->fds_bits[(n) / 32] & (int32_t)(1u << ((n) % 32))) != 0)
int select(int, fd_set*, fd_set*, fd_set*, struct timeval*);
#ifdef __cplusplus
}
#endif
