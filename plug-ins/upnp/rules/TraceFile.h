#pragma once

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <utility>

#include "rules/Trace.h"

namespace upnp {

/// The trace in a file. A file that is full becomes the older generation, in the place of the one before. Any
/// thread may write. A folder that can't be written to is no failure: there is no trace then.
class TraceFile final : public Trace {
 public:
  /// What a file may hold at most.
  static constexpr std::size_t kMost = 1024 * 1024;

  /// Nothing is written or made before it is switched on. The older generation bears ".1" before its
  /// extension.
  explicit TraceFile(std::filesystem::path path) : path_(std::move(path)) {}

  void SwitchOn(bool on);
  void Line(const std::string& text) override;

 private:
  void Open();
  void TurnOver();

  const std::filesystem::path path_;
  std::atomic<bool> on_{false};
  std::mutex mutex_;
  std::ofstream file_;
  std::size_t size_ = 0;
};

}  // namespace upnp
