#pragma once

#include <string>
#include <string_view>

/// Paths of files, read character by character: in some code pages the byte of "\\" can be the second one of
/// a character.
namespace platform {

/// Joins a folder and a file name by "\\", unless the folder ends with one. An empty folder counts as "\\".
std::string MakeFullPath(std::string_view folder, std::string_view file);

/// The part in front of the last "\\" or "/"; empty when there is none.
std::string FolderOf(std::string_view path);

}  // namespace platform
