#pragma once

#include "platform/SystemHelper.h"

namespace platform::win32 {

/// The current user's Run key. A command whose path has a blank stands in quotes there.
class Win32SystemHelper : public SystemHelper {
 public:
  void SetAutoStart(bool enable, std::string_view name, std::string_view command) override;
};

}  // namespace platform::win32
