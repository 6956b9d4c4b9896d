// One measurement of the column per run; column_figures.py runs them all and prints ratios.
//   column_bench bare       opens an empty window of the toolkit's, says when it is painted, stays
//   column_bench text       the same with one line of text, which has the fonts loaded
//   column_bench open N     the same with the column and N rows
//   column_bench frames N   milliseconds of the main thread for each frame while N rows are
//   scrolled and updated
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QScrollBar>
#include <cstdlib>
#include <ctime>
#include <iostream>

#include "platform/session_bus.h"

#include "core/bundle.h"

#include "app/model/store/samples.h"
#include "app/ui/application.h"
#include "app/ui/column/text_style.h"
#include "app/ui/fonts_ahead.h"

using namespace zelvane;

namespace {

/// Says so when the first window was painted.
class FirstFrame : public QObject {
 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || !widget->isWindow() || event->type() != QEvent::Paint) return false;
    qApp->removeEventFilter(this);
    QTimer::singleShot(0, [] { std::cout << "painted" << std::endl; });
    return false;
  }
};

int openBare(const QString& text) {
  QLabel window(text);
  window.setFont(columnFont(13, Weight::regular));
  window.resize(310, 600);
  window.show();
  return QApplication::exec();
}

int openColumn(int rows) {
  LaunchOptions options;
  options.sample = true;
  options.demo = rows;
  return AppDelegate(options).run([] {});
}

std::shared_ptr<ConnectionController> noConnection() {
  return ConnectionController::create({.state = [] { return Installer::State::connected; },
                                       .defaults = std::make_shared<MemoryDefaults>(),
                                       .mainThread = [](std::function<void()>) {}});
}

/// What the main thread has computed until now: other programs' work does not count.
double milliseconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// Between two frames every row gets a new subtitle, and the rows scroll on.
int printFrames(int count) {
  constexpr int frames = 200, step = 37;
  ZelvaneStore::Options options;
  options.defaults = std::make_shared<MemoryDefaults>();
  options.mainThread = [](std::function<void()>) {};
  options.clock = systemTime;
  const auto store = ZelvaneStore::create(std::move(options));
  auto rows = demoRows(count, static_cast<std::int64_t>(Family::all().size()), systemTime());
  store->showSamples(rows);
  PanelSize size(std::make_shared<MemoryDefaults>(), PanelSize::Mode::readOnly);
  ColumnPanel panel(size, {});
  auto* view = new ColumnView(store, noConnection(), size, {.maxHeight = 880},
                              {[&](int height) { panel.setContentHeight(height); }, [](QPoint) {}});
  panel.setContent(view);
  panel.setContentHeight(view->contentHeight());
  panel.appear();
  while (!panel.windowHandle()->isExposed()) QCoreApplication::processEvents();
  auto* bar = view->findChild<QScrollArea*>()->verticalScrollBar();
  for (int frame = 0; frame < frames; ++frame) {
    for (auto& row : rows) row.subtitle = "일하는 중 " + std::to_string(frame);
    const double before = milliseconds();
    store->showSamples(rows);
    bar->setValue((frame * step) % std::max(1, bar->maximum()));
    QCoreApplication::processEvents();
    std::cout << milliseconds() - before << '\n';
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string mode = argc > 1 ? argv[1] : "";
  const bool plain = mode == "bare" || mode == "text";  // as any program does it
  if (!plain) Bundle::useStringTable();
  if (!plain) prepareWindowSystem({});
  std::optional<platform::SilentBus> bus;
  std::optional<FontsAhead> fonts;
  if (mode == "open") {
    bus.emplace(std::chrono::seconds(2));
    fonts.emplace();
  }
  QApplication application(argc, argv);
  fonts.reset();
  if (!plain) QApplication::setStyle(QStringLiteral("Fusion"));
  FirstFrame firstFrame;
  const int rows = argc > 2 ? std::atoi(argv[2]) : 0;
  if (mode == "frames") return printFrames(rows);
  application.installEventFilter(&firstFrame);
  if (mode == "bare") return openBare("");
  if (mode == "text") return openBare(QStringLiteral("작업 중"));
  if (mode == "open") return openColumn(rows);
  std::cerr << "column_bench bare | text | open N | frames N\n";
  return 2;
}
