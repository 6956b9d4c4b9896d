// The characters' pictures, drawn once and kept. Any thread.
#pragma once

#include <QtGui/QImage>
#include <optional>

#include "app/ui/friends/friend_art.h"

namespace zelvane::SpriteArt {

/// The character with the index in the pose, for a view of the size in points, with two pixels a
/// point; nothing for an unknown index or a size that is no picture's.
std::optional<QImage> image(std::int64_t index, Pose pose, bool big, QSizeF size);

}  // namespace zelvane::SpriteArt
