/* What this system has beyond the standard's. */
#pragma once
#include_next <stdlib.h>
#ifdef __cplusplus
extern "C" {
#endif
uint32_t arc4random(void);
char* devname_r(dev_t, mode_t, char*, int);
#ifdef __cplusplus
}
#endif
