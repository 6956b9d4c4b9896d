// Pictures of the column. Main thread.
#pragma once

#include <QtGui/QImage>

#include "app/ui/column/column_view.h"

namespace zelvane {

/// The column of the width with some room around it, transparent outside; two pixels a point.
QImage columnPicture(const std::shared_ptr<ZelvaneStore>& store,
                     const std::shared_ptr<ConnectionController>& connection,
                     const PanelSize& panelSize, const ColumnView::Options& options, int width);

}  // namespace zelvane
