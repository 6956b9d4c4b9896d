/* What the kernel tells by number. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
#define CTL_KERN 1
#define KERN_PROC 14
#define KERN_BOOTTIME 21
#define KERN_PROCARGS2 49
#define KERN_PROC_PID 1
#define MAXCOMLEN 16
#define SIDL 1
#define SRUN 2
#define SSLEEP 3
#define SSTOP 4
#define SZOMB 5
struct extern_proc {
  struct timeval p_starttime;
  void *p_vmspace, *p_sigacts;
  int p_flag;
  char p_stat;
  pid_t p_pid, p_oppid;
  int p_dupfd;
  char* user_stack;
  void* exit_thread;
  int p_debugger, sigwait;
  unsigned p_estcpu;
  int p_cpticks;
  uint32_t p_pctcpu;
  void* p_wchan;
  char* p_wmesg;
  unsigned p_swtime, p_slptime;
  struct timeval p_realtimer[2], p_rtime;
  uint64_t p_uticks, p_sticks, p_iticks;
  int p_traceflag;
  void* p_tracep;
  int p_siglist;
  void* p_textvp;
  int p_holdcnt;
  sigset_t p_sigmask, p_sigignore, p_sigcatch;
  unsigned char p_priority, p_usrpri;
  char p_nice;
  char p_comm[MAXCOMLEN + 1];
  void *p_pgrp, *p_addr;
  unsigned short p_xstat, p_acflag;
  void* p_ru;
};
struct kinfo_proc {
  struct extern_proc kp_proc;
  struct eproc {
    void *e_paddr, *e_sess;
    char e_pcred[72], e_ucred[76], e_vm[64];
    pid_t e_ppid, e_pgid;
    short e_jobc;
    dev_t e_tdev;
    pid_t e_tpgid;
    void* e_tsess;
    char e_wmesg[8];
    int32_t e_xsize;
    short e_xrssize, e_xccount, e_xswrss;
    int32_t e_flag;
    char e_login[12];
    int32_t e_spare[4];
  } kp_eproc;
};
int sysctl(int*, unsigned int, void*, size_t*, void*, size_t);
int sysctlbyname(const char*, void*, size_t*, void*, size_t);
#ifdef __cplusplus
}
#endif
