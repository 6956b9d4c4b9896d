/* The types behind the C library's headers, with the widths that they have on this system. */
#ifndef ZELVANE_CHECK_TYPES
#define ZELVANE_CHECK_TYPES

typedef signed char int8_t;
typedef short int16_t;
typedef int int32_t;
typedef long long int64_t;
typedef unsigned char uint8_t;
typedef unsigned short uint16_t;
typedef unsigned int uint32_t;
typedef unsigned long long uint64_t;
typedef long intmax_t;
typedef unsigned long uintmax_t;
typedef long intptr_t;
typedef unsigned long uintptr_t;
#ifndef __cplusplus
typedef int wchar_t;
#endif
typedef unsigned long size_t;
typedef long ssize_t;
typedef long ptrdiff_t;
typedef unsigned char u_char;
typedef unsigned short u_short;
typedef unsigned int u_int;
typedef unsigned int __uint32_t;
typedef int __int32_t;

typedef int32_t dev_t;
typedef uint16_t mode_t;
typedef uint16_t nlink_t;
typedef uint64_t ino_t;
typedef int64_t off_t;
typedef int64_t blkcnt_t;
typedef int32_t blksize_t;
typedef int32_t pid_t;
typedef uint32_t id_t;
typedef uint32_t uid_t;
typedef uint32_t gid_t;
typedef int32_t key_t;
typedef long time_t;
typedef int32_t suseconds_t;
typedef uint32_t useconds_t;
typedef unsigned long clock_t;
typedef enum {
  CLOCK_REALTIME = 0,
  CLOCK_MONOTONIC_RAW = 4,
  CLOCK_MONOTONIC = 6,
  CLOCK_PROCESS_CPUTIME_ID = 12,
  CLOCK_THREAD_CPUTIME_ID = 16
} clockid_t;
typedef void* timer_t;
typedef int wint_t;
typedef uint32_t wctype_t;
typedef uint32_t sigset_t;
typedef uint32_t socklen_t;
typedef uint8_t sa_family_t;
typedef uint16_t in_port_t;
typedef uint32_t in_addr_t;
typedef float float_t;
typedef double double_t;
typedef int nl_item;

struct timeval {
  time_t tv_sec;
  suseconds_t tv_usec;
};
struct timespec {
  time_t tv_sec;
  long tv_nsec;
};
struct iovec {
  void* iov_base;
  size_t iov_len;
};
struct winsize {
  unsigned short ws_row, ws_col, ws_xpixel, ws_ypixel;
};

typedef struct _opaque_pthread* pthread_t;
typedef unsigned long pthread_key_t;
typedef struct {
  long sig;
  char opaque[56];
} pthread_mutex_t;
typedef struct {
  long sig;
  char opaque[40];
} pthread_cond_t;
typedef struct {
  long sig;
  char opaque[192];
} pthread_rwlock_t;
typedef struct {
  long sig;
  char opaque[8];
} pthread_once_t;
typedef struct {
  long sig;
  char opaque[56];
} pthread_attr_t;
typedef struct {
  long sig;
  char opaque[8];
} pthread_mutexattr_t;
typedef struct {
  long sig;
  char opaque[8];
} pthread_condattr_t;

typedef struct __sFILE FILE;
typedef __builtin_va_list va_list;
typedef __builtin_va_list __isoc_va_list;
typedef union {
  char opaque[128];
  long long align;
} __mbstate_t;
typedef __mbstate_t mbstate_t;
typedef struct _xlocale* locale_t;

#define __LONG_MAX 0x7fffffffffffffffL
#define __BYTE_ORDER 1234
#define __LITTLE_ENDIAN 1234
#define __BIG_ENDIAN 4321
#endif
