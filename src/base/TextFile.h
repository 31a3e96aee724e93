#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace base {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
struct FreeBytes {
  void operator()(char* bytes) const { std::free(bytes); }
};

/// Reads an 8-bit text file in one pass, line by line, whatever its size. A line ends with CR LF or LF; the
/// last one may lack its end. Only the longest line so far is held in memory. Paths are 8-bit text. Every
/// failure names the path.
class TextFileReader {
 public:
  /// Fails when there is no such file or it can't be read; a folder is no file.
  explicit TextFileReader(const std::string& path);

  /// True when no line is left.
  bool AtEnd();
  /// The next line without its end, valid until the next call. Fails at the end of the file.
  std::string_view ReadLine();
  /// As many lines as `lines` has places, all valid until the next call. Fails when the file ends before.
  void ReadLines(std::span<std::string_view> lines);

 private:
  /// Moves what is left to the front of the buffer and reads behind it; false at the end of the file.
  bool Fill();
  void Grow();

  std::string path_;
  std::unique_ptr<std::FILE, CloseFile> file_;
  std::unique_ptr<char, FreeBytes> buffer_;
  std::size_t capacity_ = 0;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

/// Writes an 8-bit text file anew; lines end with CR LF. Failures name the path.
class TextFileWriter {
 public:
  /// Empties a file that is there; fails when the path can't be written.
  explicit TextFileWriter(const std::string& path);
  /// Writes what is left as far as that goes. Who must know whether the file is whole calls Close.
  ~TextFileWriter();
  TextFileWriter(const TextFileWriter&) = delete;
  TextFileWriter& operator=(const TextFileWriter&) = delete;

  void Write(std::string_view text) {
    if (text.size() > kCapacity - size_) {
      WriteThrough(text);
      return;
    }
    Copy(text, buffer_.get() + size_);
    size_ += text.size();
  }
  /// In decimal.
  void WriteNumber(std::int32_t number) {
    constexpr std::size_t kLongest = 11;
    if (kLongest > kCapacity - size_) Flush();
    char* const out = buffer_.get() + size_;
    size_ += static_cast<std::size_t>(std::to_chars(out, out + kLongest, number).ptr - out);
  }
  void WriteLine(std::string_view text = {}) {
    Write(text);
    Write("\r\n");
  }
  /// Writes several lines that stand side by side in `text`; ends[i] is where line i ends.
  void WriteLines(std::string_view text, std::span<const std::uint32_t> ends);
  /// Fails when not everything could be written. Nothing is written after it.
  void Close();

 private:
  static constexpr std::size_t kCapacity = 64 * 1024;

  /// Most texts are short. Such a one is copied by its first and its last bytes, a fixed number of each,
  /// which may overlap: that costs less than to call a copy for any length.
  static void Copy(std::string_view text, char* out) {
    if (text.size() > 32) {
      std::memcpy(out, text.data(), text.size());
    } else if (text.size() >= 16) {
      CopyEnds<16>(text, out);
    } else if (text.size() >= 8) {
      CopyEnds<8>(text, out);
    } else if (text.size() >= 4) {
      CopyEnds<4>(text, out);
    } else if (text.size() >= 2) {
      CopyEnds<2>(text, out);
    } else if (!text.empty()) {
      *out = text.front();
    }
  }
  template <std::size_t count>
  static void CopyEnds(std::string_view text, char* out) {
    std::memcpy(out, text.data(), count);
    std::memcpy(out + text.size() - count, text.data() + text.size() - count, count);
  }

  void WriteThrough(std::string_view text);
  void Flush();

  std::string path_;
  std::unique_ptr<std::FILE, CloseFile> file_;
  std::unique_ptr<char[]> buffer_;
  std::size_t size_ = 0;
};

}  // namespace base
