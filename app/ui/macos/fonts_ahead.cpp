#include "app/ui/fonts_ahead.h"

namespace zelvane {

// The system has its fonts in a service that runs already.
FontsAhead::FontsAhead() = default;

}  // namespace zelvane
