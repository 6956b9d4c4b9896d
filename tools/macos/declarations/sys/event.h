/* Kernel queues. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
struct kevent {
  uintptr_t ident;
  int16_t filter;
  uint16_t flags;
  uint32_t fflags;
  intptr_t data;
  void* udata;
};
#define EVFILT_READ (-1)
#define EVFILT_WRITE (-2)
#define EVFILT_VNODE (-4)
#define EVFILT_PROC (-5)
#define EVFILT_TIMER (-7)
#define EVFILT_USER (-10)
#define EVFILT_EXCEPT (-15)
#define EV_ADD 0x0001
#define EV_DELETE 0x0002
#define EV_ENABLE 0x0004
#define EV_DISABLE 0x0008
#define EV_ONESHOT 0x0010
#define EV_CLEAR 0x0020
#define EV_OOBAND 0x2000
#define EV_ERROR 0x4000
#define EV_EOF 0x8000
#define NOTE_TRIGGER 0x01000000
#define NOTE_DELETE 0x0001
#define NOTE_WRITE 0x0002
#define NOTE_EXTEND 0x0004
#define NOTE_ATTRIB 0x0008
#define NOTE_LINK 0x0010
#define NOTE_RENAME 0x0020
#define NOTE_REVOKE 0x0040
#define NOTE_EXIT 0x80000000
#define EV_SET(kevp, a, b, c, d, e, f) \
  do {                                 \
    struct kevent* __kevp__ = (kevp);  \
    __kevp__->ident = (a);             \
    __kevp__->filter = (b);            \
    __kevp__->flags = (c);             \
    __kevp__->fflags = (d);            \
    __kevp__->data = (e);              \
    __kevp__->udata = (f);             \
  } while (0)
int kqueue(void);
int kevent(int, const struct kevent*, int, struct kevent*, int, const struct timespec*);
#ifdef __cplusplus
}
#endif
