/* Waiting for descriptors. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
#define POLLIN 0x0001
#define POLLPRI 0x0002
#define POLLOUT 0x0004
#define POLLERR 0x0008
#define POLLHUP 0x0010
#define POLLNVAL 0x0020
struct pollfd {
  int fd;
  short events, revents;
};
typedef unsigned int nfds_t;
int poll(struct pollfd*, nfds_t, int);
#ifdef __cplusplus
}
#endif
