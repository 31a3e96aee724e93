#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "support/Program.h"

/// Answers every message box of the program as soon as it is up, and notes its text. A question is answered
/// with Yes, all others with OK.
class BoxReader {
 public:
  /// The program is started already.
  explicit BoxReader(const Program& program);
  ~BoxReader();
  BoxReader(const BoxReader&) = delete;
  BoxReader& operator=(const BoxReader&) = delete;

  /// The texts that came since the last call, once no box is up any more.
  std::vector<std::string> Take();

 private:
  void Read();

  const Program& program_;
  std::atomic<bool> enough_ = false;
  std::mutex mutex_;
  std::vector<std::string> texts_;
  std::thread thread_;
};
