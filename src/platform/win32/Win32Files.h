#pragma once

#include "platform/Files.h"

namespace platform::win32 {

class Win32Files : public Files {
 public:
  void Replace(const std::string& from, const std::string& to) override;
};

}  // namespace platform::win32
