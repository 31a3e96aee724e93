#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "ui/Control.h"

namespace support {

/// The control of that name on `root` or anywhere below it; null when there is none.
inline ui::Control* TryFindControl(ui::Control& root, std::string_view name) {
  if (root.Name() == name) return &root;
  for (ui::Control* child : root.Children()) {
    if (ui::Control* found = TryFindControl(*child, name)) return found;
  }
  return nullptr;
}

/// The same by its kind; a control that isn't there is a failure of the test.
template <typename Kind>
Kind& FindControl(ui::Control& root, std::string_view name) {
  auto* const found = dynamic_cast<Kind*>(TryFindControl(root, name));
  if (!found) throw std::logic_error("There is no such control: " + std::string(name));
  return *found;
}

}  // namespace support
