#include "base/TextFile.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "base/Error.h"

namespace base {
namespace {

constexpr std::size_t kBlock = 64 * 1024;

std::unique_ptr<std::FILE, CloseFile> Open(const std::string& path, const char* mode) {
  std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), mode));
  if (!file) {
    throw Error(errno == ENOENT ? ErrorNumber::kFileNotFound : ErrorNumber::kPathAccess,
                "Unable to open file " + path);
  }
  // The classes below have buffers of their own.
  std::setvbuf(file.get(), nullptr, _IONBF, 0);
  return file;
}

}  // namespace

TextFileReader::TextFileReader(const std::string& path) : path_(path), file_(Open(path, "rb")) {
  Grow();
  // Some machines open a folder and fail only when it is read.
  end_ = std::fread(buffer_.get(), 1, capacity_, file_.get());
  if (std::ferror(file_.get())) throw Error(ErrorNumber::kPathAccess, "Unable to open file " + path_);
}

void TextFileReader::Grow() {
  const std::size_t wanted = capacity_ == 0 ? kBlock : capacity_ * 2;
  char* const grown = wanted > capacity_ ? static_cast<char*>(std::realloc(buffer_.get(), wanted)) : nullptr;
  if (!grown) throw Error(ErrorNumber::kOutOfMemory, "A line is too long for the memory in file " + path_);
  static_cast<void>(buffer_.release());
  buffer_.reset(grown);
  capacity_ = wanted;
}

bool TextFileReader::Fill() {
  if (begin_ > 0) {
    std::memmove(buffer_.get(), buffer_.get() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  if (end_ == capacity_) Grow();
  const std::size_t count = std::fread(buffer_.get() + end_, 1, capacity_ - end_, file_.get());
  if (std::ferror(file_.get())) throw Error(ErrorNumber::kFile, "Unable to read file " + path_);
  end_ += count;
  return count > 0;
}

bool TextFileReader::AtEnd() {
  return begin_ == end_ && !Fill();
}

std::string_view TextFileReader::ReadLine() {
  if (AtEnd()) throw Error(ErrorNumber::kPastEndOfFile, "Input past end of file " + path_);
  std::size_t searched = 0;
  for (;;) {
    const char* const line = buffer_.get() + begin_;
    const std::size_t available = end_ - begin_;
    const void* const found = std::memchr(line + searched, '\n', available - searched);
    if (found) {
      std::size_t length = static_cast<std::size_t>(static_cast<const char*>(found) - line);
      begin_ += length + 1;
      if (length > 0 && line[length - 1] == '\r') --length;
      return std::string_view(line, length);
    }
    searched = available;
    if (!Fill()) {
      begin_ = end_;
      return std::string_view(buffer_.get() + end_ - available, available);
    }
  }
}

void TextFileReader::ReadLines(std::span<std::string_view> lines) {
  for (bool more = true;; more = Fill()) {
    const char* at = buffer_.get() + begin_;
    const char* const end = buffer_.get() + end_;
    std::size_t taken = 0;
    while (taken < lines.size() && at != end) {
      const void* const found = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
      if (!found && more) break;
      const char* const lineEnd = found ? static_cast<const char*>(found) : end;
      const char* const textEnd = found && lineEnd != at && lineEnd[-1] == '\r' ? lineEnd - 1 : lineEnd;
      lines[taken++] = std::string_view(at, static_cast<std::size_t>(textEnd - at));
      at = found ? lineEnd + 1 : end;
    }
    if (taken == lines.size()) {
      begin_ = static_cast<std::size_t>(at - buffer_.get());
      return;
    }
    if (!more) throw Error(ErrorNumber::kPastEndOfFile, "Input past end of file " + path_);
  }
}

TextFileWriter::TextFileWriter(const std::string& path)
    : path_(path), file_(Open(path, "wb")), buffer_(std::make_unique<char[]>(kCapacity)) {}

TextFileWriter::~TextFileWriter() {
  if (file_) std::fwrite(buffer_.get(), 1, size_, file_.get());
}

void TextFileWriter::WriteLines(std::string_view text, std::span<const std::uint32_t> ends) {
  // Each short line is copied with what stands behind it, by a copy of a fixed length, which the next line
  // overwrites: the lengths of lines are hard to foresee, and a copy of just that length costs a wrong guess
  // for nearly each.
  constexpr std::size_t kShort = 16;
  std::array<char, 256 + kShort> lines;
  if (text.size() > lines.size() - kShort || text.size() + 2 * ends.size() + kShort > kCapacity - size_) {
    std::uint32_t begin = 0;
    for (const std::uint32_t end : ends) {
      WriteLine(text.substr(begin, end - begin));
      begin = end;
    }
    return;
  }
  text.copy(lines.data(), text.size());
  char* out = buffer_.get() + size_;
  const char* line = lines.data();
  for (const std::uint32_t end : ends) {
    const char* const next = lines.data() + end;
    const auto length = static_cast<std::size_t>(next - line);
    if (length <= kShort) {
      std::memcpy(out, line, kShort);
    } else {
      std::memcpy(out, line, length);
    }
    out[length] = '\r';
    out[length + 1] = '\n';
    out += length + 2;
    line = next;
  }
  size_ = static_cast<std::size_t>(out - buffer_.get());
}

void TextFileWriter::WriteThrough(std::string_view text) {
  Flush();
  while (text.size() > kCapacity) {
    text.copy(buffer_.get(), kCapacity);
    size_ = kCapacity;
    text.remove_prefix(kCapacity);
    Flush();
  }
  Write(text);
}

void TextFileWriter::Flush() {
  const std::size_t size = std::exchange(size_, 0);
  if (!file_ || std::fwrite(buffer_.get(), 1, size, file_.get()) != size) {
    throw Error(ErrorNumber::kFile, "Unable to write file " + path_);
  }
}

void TextFileWriter::Close() {
  Flush();
  if (std::fclose(file_.release()) != 0) throw Error(ErrorNumber::kFile, "Unable to write file " + path_);
}

}  // namespace base
