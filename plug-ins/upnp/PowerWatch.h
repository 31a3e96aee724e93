#pragma once

#include <windows.h>

#include <functional>

namespace upnp {

/// Windows' word that the computer woke up, for as long as one lives. It comes to the thread that made it,
/// which needs a message loop.
class PowerWatch {
 public:
  explicit PowerWatch(std::function<void()> onResume);
  ~PowerWatch();
  PowerWatch(const PowerWatch&) = delete;
  PowerWatch& operator=(const PowerWatch&) = delete;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  std::function<void()> onResume_;
  HWND window_ = nullptr;
};

}  // namespace upnp
