// refused: 'sys/eventfd.h' file not found
#include <sys/eventfd.h>
