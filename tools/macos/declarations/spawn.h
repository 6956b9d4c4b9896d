/* Starting processes. */
#pragma once
#include <bits/alltypes.h>
#include <signal.h>
#ifdef __cplusplus
extern "C" {
#endif
typedef void* posix_spawnattr_t;
typedef void* posix_spawn_file_actions_t;
#define POSIX_SPAWN_SETPGROUP 0x0002
#define POSIX_SPAWN_SETSIGDEF 0x0004
#define POSIX_SPAWN_SETSIGMASK 0x0008
#define POSIX_SPAWN_SETSID 0x0400
#define POSIX_SPAWN_CLOEXEC_DEFAULT 0x4000
int posix_spawn(pid_t*, const char*, const posix_spawn_file_actions_t*, const posix_spawnattr_t*,
                char* const[], char* const[]);
int posix_spawnattr_init(posix_spawnattr_t*);
int posix_spawnattr_destroy(posix_spawnattr_t*);
int posix_spawnattr_setflags(posix_spawnattr_t*, short);
int posix_spawnattr_setsigmask(posix_spawnattr_t*, const sigset_t*);
int posix_spawnattr_setsigdefault(posix_spawnattr_t*, const sigset_t*);
int posix_spawnattr_setpgroup(posix_spawnattr_t*, pid_t);
int posix_spawn_file_actions_init(posix_spawn_file_actions_t*);
int posix_spawn_file_actions_destroy(posix_spawn_file_actions_t*);
int posix_spawn_file_actions_addopen(posix_spawn_file_actions_t*, int, const char*, int, mode_t);
int posix_spawn_file_actions_adddup2(posix_spawn_file_actions_t*, int, int);
int posix_spawn_file_actions_addclose(posix_spawn_file_actions_t*, int);
int posix_spawn_file_actions_addchdir_np(posix_spawn_file_actions_t*, const char*)
    __attribute__((availability(macos, introduced = 10.15)));
int posix_spawn_file_actions_addchdir(posix_spawn_file_actions_t*, const char*)
    __attribute__((availability(macos, introduced = 26.0)));
#ifdef __cplusplus
}
#endif
