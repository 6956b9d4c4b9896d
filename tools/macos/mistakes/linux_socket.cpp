// refused: undeclared identifier 'SOCK_CLOEXEC'
#include <sys/socket.h>
int linuxOnly() { return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0); }
