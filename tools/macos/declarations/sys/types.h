/* Types of the kernel's. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
#define major(x) ((int32_t)(((uint32_t)(x) >> 24) & 0xff))
#define minor(x) ((int32_t)((x)&0xffffff))
#ifdef __cplusplus
}
#endif
