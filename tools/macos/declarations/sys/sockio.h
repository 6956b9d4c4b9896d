/* Requests of sockets. */
#pragma once
#include <sys/ioctl.h>
#define SIOCATMARK 0x40047307UL
