#include "cli/watch_command.h"

#include <csignal>

#include "core/run_loop.h"
#include "core/unicode.h"

#include "cli/listing_json.h"
#include "cli/listing_text.h"
#include "cli/output.h"
#include "cli/screen.h"
#include "cli/text_layout.h"

namespace zelvane::cli {
namespace {

using Show = std::function<Written(const Listing&)>;

/// Draws every listing in place: even an unchanged one has older times.
Show inPlace() {
  return [screen = std::make_shared<Screen>()](const Listing& listing) {
    const auto look = outputLook();
    auto lines = listingText(listing, look);
    if (listing.notesProblem) {
      // Standard error may be the same screen.
      auto told = wrapped(printable(*listing.notesProblem), look.columns.value_or(80));
      told.emplace_back();
      lines.insert(lines.begin(), told.begin(), told.end());
    }
    return screen->show(lines);
  };
}

/// Writes a listing only when it differs from the one before.
Show oneBelowTheOther(Format format) {
  return [format, last = std::optional<Listing>()](const Listing& listing) mutable {
    if (last && sameContent(*last, listing)) return Written::all;
    const bool first = !last;
    if (first || last->notesProblem != listing.notesProblem) tell(listing.notesProblem);
    last = listing;
    if (format == Format::json) return writeOut(listingJson(listing, JsonLayout::oneLine));
    return writeOut((first ? "" : "\n") + joined(listingText(listing, outputLook())));
  };
}

class Watch {
 public:
  explicit Watch(Show show) : show_(std::move(show)), store_(readOnlyStore(loop_.executor())) {}

  Written run() {
    store_->observe([this](ZelvaneStore::Change change) { changed(change); });
    loop_.onSignal([this](int signal) { signal == SIGWINCH ? requestShow() : loop_.stop(); });
    whenOutputCloses([loop = loop_.executor(), this] { loop([this] { loop_.stop(); }); });
    store_->start();
    loop_.run();
    return written_;
  }

 private:
  void changed(ZelvaneStore::Change change) {
    if (change == ZelvaneStore::Change::passed) passed_ = true;
    requestShow();
  }

  /// All changes of one pass are shown together, and nothing before the first has ended.
  void requestShow() {
    if (!passed_ || requested_) return;
    requested_ = true;
    loop_.post([this] { show(); });
  }

  void show() {
    requested_ = false;
    written_ = show_(listingOf(*store_, systemTime()));
    if (written_ != Written::all) loop_.stop();
  }

  Show show_;
  RunLoop loop_;
  std::shared_ptr<ZelvaneStore> store_;
  Written written_ = Written::all;
  bool passed_ = false;
  bool requested_ = false;
};

}  // namespace

ExitCode watch(Format format) {
  const bool live = format == Format::text && terminalIsCapable();
  const auto written = Watch(live ? inPlace() : oneBelowTheOther(format)).run();
  return exitCode(written);
}

}  // namespace zelvane::cli
