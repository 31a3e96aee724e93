#include "platform/ReplacedTextFile.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <utility>

#include "base/Error.h"
#include "platform/FilePath.h"
#include "platform/Machine.h"

namespace platform {
namespace {

constexpr const char* kSuffix = ".harbourline-new";

/// False for a file that exists and can't be written, and for a folder. The folder around may let it be
/// replaced all the same, which isn't what its owner meant. A path without a name leads to no file.
bool MayBeReplaced(const std::string& path) {
  if (path.empty() || path.size() == FolderOf(path).size() + 1) return false;
  const std::unique_ptr<std::FILE, base::CloseFile> file(std::fopen(path.c_str(), "r+b"));
  return file || errno == ENOENT;
}

}  // namespace

ReplacedTextFile::ReplacedTextFile(std::string path) : path_(std::move(path)) {
  if (MayBeReplaced(path_)) {
    temporary_ = path_ + kSuffix;
    try {
      writer_.emplace(temporary_);
    } catch (const base::Error&) {
      temporary_.clear();
    }
  }
  if (!writer_) writer_.emplace(path_);
}

ReplacedTextFile::~ReplacedTextFile() {
  writer_.reset();
  if (!temporary_.empty()) std::remove(temporary_.c_str());
}

void ReplacedTextFile::Close() {
  writer_->Close();
  if (temporary_.empty()) return;
  TheMachine().files->Replace(temporary_, path_);
  temporary_.clear();
}

}  // namespace platform
