#include "app/ui/fonts_ahead.h"

#include <fontconfig/fontconfig.h>

namespace zelvane {

// The toolkit asks for the same thing later, and finds it done.
FontsAhead::FontsAhead() : reader_([] { (void)FcInit(); }) {}

}  // namespace zelvane
