/* What this system has beyond the standard's. */
#pragma once
#include_next <stdio.h>
#ifdef __cplusplus
extern "C" {
#endif
#define RENAME_SWAP 0x00000002
#define RENAME_EXCL 0x00000004
int renamex_np(const char*, const char*, unsigned int)
    __attribute__((availability(macos, introduced = 10.12)));
#ifdef __cplusplus
}
#endif
#undef stdin
#undef stdout
#undef stderr
#ifdef __cplusplus
extern "C" {
#endif
extern FILE *__stdinp, *__stdoutp, *__stderrp;
#ifdef __cplusplus
}
#endif
#define stdin __stdinp
#define stdout __stdoutp
#define stderr __stderrp
