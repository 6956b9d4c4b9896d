/* The user database. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
struct passwd {
  char *pw_name, *pw_passwd;
  uid_t pw_uid;
  gid_t pw_gid;
  time_t pw_change;
  char *pw_class, *pw_gecos, *pw_dir, *pw_shell;
  time_t pw_expire;
};
struct passwd* getpwuid(uid_t);
int getpwuid_r(uid_t, struct passwd*, char*, size_t, struct passwd**);
#ifdef __cplusplus
}
#endif
