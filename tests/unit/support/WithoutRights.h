#pragma once

#ifdef __linux__

#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace support {

/// Nobody may write to the file or folder, or not even read it, while this lives. A user whom nothing is
/// forbidden runs the test as another one meanwhile.
class WithoutRights {
 public:
  enum class To { kWrite, kReadAndWrite };

  /// Everybody may write to the file `kept`, if there is one.
  WithoutRights(const std::string& path, To taken, const std::string& kept = {})
      : path_(path), before_(std::filesystem::status(path).permissions()) {
    using std::filesystem::perms;
    if (!kept.empty()) std::filesystem::permissions(kept, perms::all);
    constexpr perms write = perms::owner_write | perms::group_write | perms::others_write;
    constexpr perms read = perms::owner_read | perms::group_read | perms::others_read;
    std::filesystem::permissions(path_, taken == To::kWrite ? write : write | read,
                                 std::filesystem::perm_options::remove);
    if (isAnybody_ && seteuid(kNobody) != 0) throw std::runtime_error("can't be another user");
  }
  ~WithoutRights() {
    if (isAnybody_) static_cast<void>(!seteuid(0));
    std::error_code ignored;
    std::filesystem::permissions(path_, before_, ignored);
  }
  WithoutRights(const WithoutRights&) = delete;
  WithoutRights& operator=(const WithoutRights&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;

  std::filesystem::path path_;
  std::filesystem::perms before_;
  bool isAnybody_ = geteuid() == 0;
};

}  // namespace support

#endif
