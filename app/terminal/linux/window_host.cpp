#include "app/terminal/linux/window_host.h"

#include "app/terminal/linux/open_window.h"

namespace zelvane {

bool WindowHost::open(const OpenRequest& request, const Place& near) {
  return openWindowOf(near.owner().name, request);
}

Support WindowHost::support(const Place& place) {
  return {place.owner().name, false, false, false, canOpenWindowOf(place.owner().name), ""};
}

}  // namespace zelvane
