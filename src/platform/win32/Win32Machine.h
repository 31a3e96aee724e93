#pragma once

#include <memory>

namespace platform::win32 {

/// Windows' answers to every service of platform::Machine. While it lives, COM is initialised on this thread.
class Win32Machine {
 public:
  /// Puts the answers into platform::TheMachine().
  Win32Machine();
  ~Win32Machine();

 private:
  struct Services;
  std::unique_ptr<Services> services_;
};

}  // namespace platform::win32
