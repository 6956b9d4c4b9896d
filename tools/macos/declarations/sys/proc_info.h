/* What the kernel tells of a process. */
#pragma once
#include <bits/alltypes.h>
#include <sys/socket.h>
#include <sys/un.h>
#ifdef __cplusplus
extern "C" {
#endif
#define PROC_PIDLISTFDS 1
#define PROC_PIDTBSDINFO 3
#define PROC_PIDPATHINFO_MAXSIZE (4 * 1024)
#define PROC_PIDFDSOCKETINFO 3
#define PROX_FDTYPE_SOCKET 2
struct proc_bsdinfo {
  uint32_t pbi_flags, pbi_status, pbi_xstatus, pbi_pid, pbi_ppid;
  uid_t pbi_uid;
  gid_t pbi_gid;
  uid_t pbi_ruid;
  gid_t pbi_rgid;
  uid_t pbi_svuid;
  gid_t pbi_svgid;
  uint32_t rfu_1;
  char pbi_comm[16], pbi_name[32];
  uint32_t pbi_nfiles, pbi_pgid, pbi_pjobc, e_tdev, e_tpgid;
  int32_t pbi_nice;
  uint64_t pbi_start_tvsec, pbi_start_tvusec;
};
struct proc_fdinfo {
  int32_t proc_fd;
  uint32_t proc_fdtype;
};
struct proc_fileinfo {
  uint32_t fi_openflags, fi_status;
  off_t fi_offset;
  int32_t fi_type;
  uint32_t fi_guardflags;
};
struct vinfo_stat {
  char opaque[136];
};
struct sockbuf_info {
  uint32_t sbi_cc, sbi_hiwat, sbi_mbcnt, sbi_mbmax, sbi_lowat;
  short sbi_flags, sbi_timeo;
};
struct un_sockinfo {
  uint64_t unsi_conn_so, unsi_conn_pcb;
  union {
    struct sockaddr_un ua_sun;
    char ua_dummy[255];
  } unsi_addr, unsi_caddr;
};
enum { SOCKINFO_GENERIC = 0, SOCKINFO_IN = 1, SOCKINFO_TCP = 2, SOCKINFO_UN = 3 };
struct socket_info {
  struct vinfo_stat soi_stat;
  uint64_t soi_so, soi_pcb;
  int soi_type, soi_protocol, soi_family;
  short soi_options, soi_linger, soi_state, soi_qlen, soi_incqlen, soi_qlimit, soi_timeo;
  unsigned short soi_error;
  uint32_t soi_oobmark;
  struct sockbuf_info soi_rcv, soi_snd;
  int soi_kind;
  uint32_t rfu_1;
  union {
    struct un_sockinfo pri_un;
  } soi_proto;
};
struct socket_fdinfo {
  struct proc_fileinfo pfi;
  struct socket_info psi;
};
#ifdef __cplusplus
}
#endif
