#include "base/TextFile.h"

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

TextFileWriter::TextFileWriter(const std::string& path)
    : path_(path), file_(Open(path, "wb")), buffer_(std::make_unique<char[]>(kCapacity)) {}

TextFileWriter::~TextFileWriter() {
  if (file_) std::fwrite(buffer_.get(), 1, size_, file_.get());
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
