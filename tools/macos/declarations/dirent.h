/* Listing folders. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
struct dirent {
  uint64_t d_ino, d_seekoff;
  uint16_t d_reclen, d_namlen;
  uint8_t d_type;
  char d_name[1024];
};
typedef struct __dirstream DIR;
#define DT_UNKNOWN 0
#define DT_DIR 4
#define DT_REG 8
#define DT_LNK 10
DIR* opendir(const char*);
DIR* fdopendir(int);
struct dirent* readdir(DIR*);
int closedir(DIR*);
int dirfd(DIR*);
void rewinddir(DIR*);
#ifdef __cplusplus
}
#endif
