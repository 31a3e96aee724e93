#pragma once

#include "platform/Shell.h"

namespace platform::win32 {

class Win32Shell : public Shell {
 public:
  std::intptr_t Open(const std::string& target) override;
  bool Show(std::uintptr_t window, const std::string& file) override;
};

}  // namespace platform::win32
