#pragma once

#ifdef __linux__

#include <signal.h>
#include <sys/resource.h>

#include <stdexcept>

namespace support {

/// No file of this process grows beyond so many bytes while this lives: what lies beyond can't be written.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) : signal_(signal(SIGXFSZ, SIG_IGN)) {
    if (getrlimit(RLIMIT_FSIZE, &before_) != 0) throw std::runtime_error("can't read the limit of files");
    const rlimit limit{bytes, before_.rlim_max};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("can't limit files");
  }
  ~FullDisk() {
    static_cast<void>(setrlimit(RLIMIT_FSIZE, &before_));
    signal(SIGXFSZ, signal_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  void (*signal_)(int);
  rlimit before_{};
};

}  // namespace support

#endif
