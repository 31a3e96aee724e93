#pragma once

#include <cstdint>
#include <string>

namespace ui {

/// What the machine's dialog for choosing a file is asked, and what it answers in `fileName`.
struct FileDialog {
  bool save = false;
  std::string fileName;
  /// Where the dialog begins, in place of the folder of `fileName`; empty for that one.
  std::string folder;
  std::string title;
  /// Pairs of a text and a pattern, all separated by "|".
  std::string filter;
  /// Counts from 1.
  std::int16_t filterIndex = 1;
  std::string defaultExtension;
  /// The machine's flags of its file dialog.
  std::uint32_t flags = 0;
};

}  // namespace ui
