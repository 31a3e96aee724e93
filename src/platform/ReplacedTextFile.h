#pragma once

#include <optional>
#include <string>

#include "base/TextFile.h"

namespace platform {

/// Writes a text file anew and leaves the one that was there whole until the new one is: the text goes into a
/// second file in the same folder, which takes the place of the first in the end. Where the folder takes no
/// second file, the first one is written directly.
class ReplacedTextFile {
 public:
  /// Throws when the path can't be written, with the error of base::TextFileWriter.
  explicit ReplacedTextFile(std::string path);
  /// Without a Close, the file that was there stays.
  ~ReplacedTextFile();
  ReplacedTextFile(const ReplacedTextFile&) = delete;
  ReplacedTextFile& operator=(const ReplacedTextFile&) = delete;

  base::TextFileWriter& Writer() { return *writer_; }
  /// Throws when not everything could be written. Nothing is written after it.
  void Close();

 private:
  std::string path_;
  /// Empty when the path itself is written.
  std::string temporary_;
  std::optional<base::TextFileWriter> writer_;
};

}  // namespace platform
