// WezTerm, through its command line.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/json_file.h"

#include "app/terminal/terminal_host.h"

namespace zelvane {

struct WezTermPane {
  std::int64_t id = 0;
  std::int64_t window = 0;
  std::string tty;
  std::string title;
  std::string windowTitle;
};

/// The panes in the output of `wezterm cli list --format json`; those without a tty are skipped.
std::vector<WezTermPane> weztermPanes(std::string_view output);

class WezTermHost : public TerminalHost {
 public:
  std::string name() const override { return "WezTerm"; }
  void beginCall() override { silent_ = false; }
  bool owns(const Place& place) const override { return place.owner().name == "wezterm-gui"; }
  Titles titles(const std::vector<Place>& places) override;
  /// It tells which pane had the keyboard last, not whether it has it now: with one window, that
  /// the desktop says is in front, this is the same.
  std::optional<std::string> front(const std::vector<Place>& places,
                                   const std::optional<DesktopWindow>& active) override;
  std::optional<SelectedTab> select(const Place& place) override;
  bool open(const OpenRequest& request, const Place& near) override;
  Support support(const Place& place) override;

 private:
  std::optional<std::string> ask(const Place& near, const std::vector<std::string>& words);
  std::vector<WezTermPane> list(const Place& near);
  std::optional<WezTermPane> paneOf(const Place& place);

  bool silent_ = false;
};

}  // namespace zelvane
