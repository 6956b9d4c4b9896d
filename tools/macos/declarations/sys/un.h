/* Local sockets. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
struct sockaddr_un {
  unsigned char sun_len;
  sa_family_t sun_family;
  char sun_path[104];
};
#ifdef __cplusplus
}
#endif
