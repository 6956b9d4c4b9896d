// What the command line of the column asks for. Pure.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/model/records/theme_id.h"

namespace zelvane {

struct LaunchOptions {
  bool help = false;
  bool version = false;
  bool selfTestNotes = false;
  bool selfTestLoginItem = false;
  /// Sample mode: nothing of the user's is written but pins. On as soon as one of its options is
  /// given.
  bool sample = false;
  std::optional<std::string> renderPath;  ///< draw a picture into this file, and end
  std::optional<ThemeID> theme;           ///< of the picture
  bool dark = false;                      ///< the picture in dark colours
  bool showcase = false;                  ///< the picture with the fixed rows
  int width = 284;                        ///< of the picture's column, in points
  std::optional<int> demo;                ///< this many generated rows, in a live column
  std::string mistake;  ///< a sentence about the first argument that cannot be meant; mostly empty
};

/// Reads the arguments, without the program's name. Options may stand anywhere. A theme, a width or
/// a number of rows that is none counts as absent.
LaunchOptions launchOptions(const std::vector<std::string>& arguments);

/// The text of --help.
std::string usage();

}  // namespace zelvane
