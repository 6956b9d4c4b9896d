/* Control of devices. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
#define TIOCGWINSZ 0x40087468UL
#define FIONBIO 0x8004667eUL
#define FIONREAD 0x4004667fUL
int ioctl(int, unsigned long, ...);
#ifdef __cplusplus
}
#endif
