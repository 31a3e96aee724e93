#pragma once

#include <windows.h>

#include "ui/Toolkit.h"

namespace ui::win32 {

struct Surroundings;

/// Native peers and the message loop.
class Win32Toolkit : public Toolkit {
 public:
  explicit Win32Toolkit(Surroundings& surroundings) : surroundings_(surroundings) {}

  std::unique_ptr<Peer> CreatePeer(Control& control) override;
  /// Returns early when the thread is told to quit; the loops around it then return too, so that the program
  /// ends by its ordinary way and keeps its state.
  void RunWhile(const std::function<bool()>& condition) override;
  void ProcessPendingEvents() override;

 private:
  Surroundings& surroundings_;
  int depth_ = 0;
};

}  // namespace ui::win32
