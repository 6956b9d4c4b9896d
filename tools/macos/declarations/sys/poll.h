#include <poll.h>
