#include "platform/FilePath.h"

#include "platform/Machine.h"

namespace platform {
namespace {

/// The place of the last separator, npos when there is none.
std::size_t LastSeparator(std::string_view path, std::string_view separators) {
  std::size_t last = path.npos;
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (separators.find(path[i]) != separators.npos) {
      last = i;
    } else if (TheMachine().codePage->IsLeadByte(path[i])) {
      ++i;
    }
  }
  return last;
}

}  // namespace

std::string MakeFullPath(std::string_view folder, std::string_view file) {
  std::string path(folder);
  if (path.empty() || LastSeparator(path, "\\") != path.size() - 1) path += '\\';
  return path.append(file);
}

std::string FolderOf(std::string_view path) {
  const std::size_t separator = LastSeparator(path, "\\/");
  return separator == path.npos ? std::string() : std::string(path.substr(0, separator));
}

}  // namespace platform
