// refused: 'xpc_connection_set_peer_team_identity_requirement' is only available on macOS 14.4 or newer
#include <xpc/xpc.h>
int tooNew(xpc_connection_t connection) {
  return xpc_connection_set_peer_team_identity_requirement(connection, nullptr);
}
