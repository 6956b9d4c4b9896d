#include "platform/thread_name.h"

#include <pthread.h>

namespace zelvane::platform {

void nameThisThread(const std::string& name) { pthread_setname_np(name.substr(0, 63).c_str()); }

}  // namespace zelvane::platform
