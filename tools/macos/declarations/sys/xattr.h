/* Extended attributes. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
#define XATTR_NOFOLLOW 0x0001
int removexattr(const char*, const char*, int);
#ifdef __cplusplus
}
#endif
