#pragma once

#include <string>

#include "ui/Toolkit.h"

namespace ui::win32 {

class UtilityWindow;

/// Waits a bounded while when another program has the clipboard open; fails with base::Error after that.
class Win32Clipboard : public Clipboard {
 public:
  explicit Win32Clipboard(const UtilityWindow& owner) : owner_(owner) {}
  void Clear() override;
  void SetText(const std::string& text) override;

 private:
  const UtilityWindow& owner_;
};

}  // namespace ui::win32
