// refused: 'posix_spawn_file_actions_addchdir' is only available on macOS 26.0 or newer
#include <spawn.h>
int tooNew(posix_spawn_file_actions_t* actions) {
  return posix_spawn_file_actions_addchdir(actions, "/");
}
