/* Threads. */
#pragma once
#include <bits/alltypes.h>
#include <sched.h>
#include <signal.h>
#ifdef __cplusplus
extern "C" {
#endif
#define PTHREAD_MUTEX_INITIALIZER \
  {                               \
    0x32AAABA7, { 0 }             \
  }
#define PTHREAD_COND_INITIALIZER \
  {                              \
    0x3CB0B1BB, { 0 }            \
  }
#define PTHREAD_ONCE_INIT \
  {                       \
    0x30B1BCBA, { 0 }     \
  }
#define PTHREAD_RWLOCK_INITIALIZER \
  {                                \
    0x2DA8B3B4, { 0 }              \
  }
#define PTHREAD_MUTEX_RECURSIVE 2
#define PTHREAD_SCOPE_SYSTEM 1
int pthread_create(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
int pthread_join(pthread_t, void**);
int pthread_detach(pthread_t);
pthread_t pthread_self(void);
int pthread_equal(pthread_t, pthread_t);
int pthread_setname_np(const char*);
int pthread_once(pthread_once_t*, void (*)(void));
int pthread_attr_init(pthread_attr_t*);
int pthread_attr_destroy(pthread_attr_t*);
int pthread_mutex_init(pthread_mutex_t*, const pthread_mutexattr_t*);
int pthread_mutex_destroy(pthread_mutex_t*);
int pthread_mutex_lock(pthread_mutex_t*);
int pthread_mutex_trylock(pthread_mutex_t*);
int pthread_mutex_unlock(pthread_mutex_t*);
int pthread_mutexattr_init(pthread_mutexattr_t*);
int pthread_mutexattr_settype(pthread_mutexattr_t*, int);
int pthread_mutexattr_destroy(pthread_mutexattr_t*);
int pthread_cond_init(pthread_cond_t*, const pthread_condattr_t*);
int pthread_cond_destroy(pthread_cond_t*);
int pthread_cond_signal(pthread_cond_t*);
int pthread_cond_broadcast(pthread_cond_t*);
int pthread_cond_wait(pthread_cond_t*, pthread_mutex_t*);
int pthread_cond_timedwait(pthread_cond_t*, pthread_mutex_t*, const struct timespec*);
int pthread_cond_timedwait_relative_np(pthread_cond_t*, pthread_mutex_t*, const struct timespec*);
int pthread_condattr_init(pthread_condattr_t*);
int pthread_condattr_destroy(pthread_condattr_t*);
int pthread_rwlock_init(pthread_rwlock_t*, const void*);
int pthread_rwlock_destroy(pthread_rwlock_t*);
int pthread_rwlock_rdlock(pthread_rwlock_t*);
int pthread_rwlock_wrlock(pthread_rwlock_t*);
int pthread_rwlock_unlock(pthread_rwlock_t*);
int pthread_key_create(pthread_key_t*, void (*)(void*));
int pthread_key_delete(pthread_key_t);
void* pthread_getspecific(pthread_key_t);
int pthread_setspecific(pthread_key_t, const void*);
#ifdef __cplusplus
}
#endif
