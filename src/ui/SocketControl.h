#pragma once

#include <string>

namespace ui {

/// Stands on a page to tell this computer's address. It never opens a connection.
class SocketControl {
 public:
  /// Dotted decimal.
  std::string LocalIP() const;
};

}  // namespace ui
