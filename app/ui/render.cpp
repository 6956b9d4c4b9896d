#include "app/ui/render.h"

namespace zelvane {

QImage columnPicture(const std::shared_ptr<ZelvaneStore>& store,
                     const std::shared_ptr<ConnectionController>& connection,
                     const PanelSize& panelSize, const ColumnView::Options& options, int width) {
  constexpr int padding = 8, scale = 2;
  ColumnView view(store, connection, panelSize, options, {[](int) {}, [](QPoint) {}});
  view.setAttribute(Qt::WA_DontShowOnScreen);
  view.setAttribute(Qt::WA_TranslucentBackground);
  view.resize(width, 1);
  view.refresh();
  view.resize(width,
              heightLimit(panelSize.chosen(), std::min(view.contentHeight(), options.maxHeight)));
  view.show();
  const QSize size = view.size() + QSize(2 * padding, 2 * padding);
  QImage picture(size * scale, QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  view.render(&picture, QPoint(padding, padding), QRegion(), QWidget::DrawChildren);
  return picture;
}

}  // namespace zelvane
