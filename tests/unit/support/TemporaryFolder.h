#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace support {

/// A folder for the files of one test, gone when the test ends. Like the program, it joins its path and a
/// file's name by "\", which is a plain character of the name where folders are joined otherwise.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::random_device random;
    do {
      outer_ = std::filesystem::temp_directory_path() / ("harbourline-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(outer_));
    std::filesystem::create_directory(outer_ / "files");
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(outer_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string Path() const { return (outer_ / "files").string(); }
  std::string PathOf(std::string_view file) const { return Path() + "\\" + std::string(file); }

  bool Contains(std::string_view file) const { return std::filesystem::exists(PathOf(file)); }
  void Write(std::string_view file, std::string_view bytes) const {
    std::ofstream stream(PathOf(file), std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream.flush()) throw std::runtime_error("Unable to write " + PathOf(file));
  }
  /// All bytes; nothing for a file that isn't there.
  std::string Read(std::string_view file) const {
    std::ifstream stream(PathOf(file), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }
  /// The names of all files, in order.
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    const std::filesystem::path path(PathOf({}));
    const std::filesystem::path folder = path.has_filename() ? path.parent_path() : path;
    const std::string prefix = path.filename().string();
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      const std::string name = entry.path().filename().string();
      if (entry.is_regular_file() && name.starts_with(prefix)) names.push_back(name.substr(prefix.size()));
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  /// A folder in the place of a file.
  void MakeFolder(std::string_view file) const { std::filesystem::create_directory(PathOf(file)); }
  void Remove(std::string_view file) const { std::filesystem::remove_all(PathOf(file)); }

 private:
  std::filesystem::path outer_;
};

}  // namespace support
