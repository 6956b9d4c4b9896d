/* Questions about processes. */
#pragma once
#include <bits/alltypes.h>
#include <sys/proc_info.h>
#ifdef __cplusplus
extern "C" {
#endif
int proc_listallpids(void*, int);
int proc_pidinfo(int, int, uint64_t, void*, int);
int proc_pidfdinfo(int, int, int, void*, int);
int proc_pidpath(int, void*, uint32_t);
#ifdef __cplusplus
}
#endif
