/* Terminals. */
#pragma once
#include <bits/alltypes.h>
#ifdef __cplusplus
extern "C" {
#endif
typedef unsigned long tcflag_t;
typedef unsigned char cc_t;
typedef unsigned long speed_t;
struct termios {
  tcflag_t c_iflag, c_oflag, c_cflag, c_lflag;
  cc_t c_cc[20];
  speed_t c_ispeed, c_ospeed;
};
#define ECHO 0x00000008
#define ISIG 0x00000080
#define ICANON 0x00000100
#define VMIN 16
#define VTIME 17
#define TCSANOW 0
#define TCSADRAIN 1
#define TCSAFLUSH 2
int tcgetattr(int, struct termios*);
int tcsetattr(int, int, const struct termios*);
#ifdef __cplusplus
}
#endif
